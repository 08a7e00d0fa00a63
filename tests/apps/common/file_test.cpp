#include "apps/common/file.h"

#include "apps/common/failure.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

namespace fs = std::filesystem;

/// A folder for one test.
class ReplaceFile : public testing::Test {
protected:
    ReplaceFile() { createFolder(folder); }
    ~ReplaceFile() override { fs::remove_all(folder); }

    static std::string textOf(const fs::path& path) {
        std::ifstream file(path);
        std::string line;
        std::getline(file, line);
        return line;
    }

    fs::path folder = fs::path(testing::TempDir()) /
                      testing::UnitTest::GetInstance()->current_test_info()->name() / "below";
    fs::path file = folder / "a.json";
    fs::path begun = folder / (".ondrel-" + std::to_string(::getpid()));
};

TEST_F(ReplaceFile, LeavesOneFileThatOthersCanRead) {
    const mode_t mask = ::umask(0022);
    replaceFile(file, "first, and longer");
    replaceFile(file, "second");
    ::umask(mask);
    EXPECT_EQ(textOf(file), "second");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0644));
    EXPECT_FALSE(fs::exists(begun));
}

TEST_F(ReplaceFile, WritesThroughNoLink) {
    const fs::path other = folder / "other";
    std::ofstream(other) << "mine";
    fs::create_symlink(other, begun); // as a run might find that has the number of a killed one
    fs::create_symlink(other, file);
    replaceFile(file, "new");
    EXPECT_EQ(textOf(other), "mine");
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(textOf(file), "new");
}

TEST_F(ReplaceFile, LeavesNothingWhenItFails) {
    fs::create_directories(file / "inside");
    EXPECT_THROW(replaceFile(file, "new"), Failure);
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_FALSE(fs::exists(begun));
    EXPECT_THROW(replaceFile(folder / "nowhere" / "a.json", "new"), Failure);
}

} // namespace

} // namespace tolvarin::ondrel::client
