#include <ondrel/ondrel.h>

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel {
namespace {

TEST(Ondrel, NamesTheVersionOfTheProject) {
    EXPECT_EQ(Ondrel::version(), ONDREL_PROJECT_VERSION);
}

bool matches(const std::string& text, const char* form) {
    return testing::Matcher<std::string>(testing::MatchesRegex(form)).Matches(text);
}

TEST(Ondrel, NamesTheDayOfTheBuild) {
    const char* months = "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 1-3][0-9] 20[0-9]{2}";
    EXPECT_TRUE(matches(Ondrel::build(), months)) << Ondrel::build();
}

TEST(Ondrel, NamesItsMakersOnOneLine) {
    EXPECT_TRUE(matches(Ondrel::about(), "[ -~]+")) << Ondrel::about();
    EXPECT_TRUE(matches(Ondrel::contact(), "https?://[!-~]+")) << Ondrel::contact();
}

} // namespace
} // namespace tolvarin::ondrel
