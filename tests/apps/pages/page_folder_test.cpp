#include "apps/pages/page_folder.h"

#include "apps/common/failure.h"
#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

/// A folder for one test, removed at its end.
class PageFolderTest : public testing::Test {
protected:
    PageFolderTest() { fs::remove_all(path); }
    ~PageFolderTest() override { fs::remove_all(path); }

    /// Writes pages of the aircraft of these lines.
    void write(const std::vector<std::string>& lines, bool force = false) const {
        const TrackedLines tracked(lines);
        PageFolder(path, force)
            .write(
                {"x.csv", {tracked.tracking.now()}, tracked.tracking.aircraft(), TrackHistory()});
    }

    /// Empty without a failure.
    std::string failureOf(const std::vector<std::string>& lines, bool force = false) const {
        try {
            write(lines, force);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "";
    }

    Names names() const {
        Names found;
        for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
            found.insert(entry.path().filename().string());
        }
        return found;
    }

    void put(const std::string& name, const std::string& text) const {
        fs::create_directories(path);
        std::ofstream(path + "/" + name) << text;
    }

    std::string textOf(const std::string& name) const {
        std::stringstream text;
        text << std::ifstream(path + "/" + name).rdbuf();
        return text.str();
    }

    const std::string path = testing::TempDir() +
                             testing::UnitTest::GetInstance()->current_test_info()->name() +
                             ".pages";
    const std::vector<std::string> first = {"1,8D40621D58C382D690C8AC2863A7"};
    const std::vector<std::string> second = {"1,8D4840D6202CC371C32CE0576098"};
};

TEST_F(PageFolderTest, RemovesWhatAnEarlierRunMadeAndNothingElse) {
    write(first);
    EXPECT_EQ(names(), (Names{"index.html", "40621D.html"}));
    fs::copy_file(path + "/40621D.html", path + "/kept.html");
    fs::copy_file(path + "/40621D.html", path + "/40621d.html");
    put("notes.txt", "mine");
    put(".ondrel-12", "killed while it wrote");
    put(".ondrel-config", "mine");
    write(second);
    EXPECT_EQ(names(), (Names{"index.html", "4840D6.html", "kept.html", "40621d.html", "notes.txt",
                              ".ondrel-config"}));
    EXPECT_NE(textOf("index.html").find("4840D6.html"), std::string::npos);
}

TEST_F(PageFolderTest, LeavesForeignFilesAlone) {
    for (const std::string name : {"index.html", "4840D6.html"}) {
        fs::remove_all(path);
        put(name, "mine");
        const Names before = names();
        EXPECT_EQ(failureOf(second), "will not replace " + path + "/" + name +
                                         ", which ondrel did not make; choose another folder, or "
                                         "replace it with --force");
        EXPECT_EQ(names(), before);
        EXPECT_EQ(textOf(name), "mine");
        write(second, true);
        EXPECT_NE(textOf(name), "mine");
    }
    put("40621D.html", "mine");
    write(second, true); // has no page of that name
    EXPECT_EQ(textOf("40621D.html"), "mine");
}

TEST_F(PageFolderTest, LooksAgainBeforeItWrites) {
    const TrackedLines tracked(second);
    const PageFolder folder(path, false);
    put("4840D6.html", "put there later");
    EXPECT_THROW(folder.write({"", {0}, tracked.tracking.aircraft(), TrackHistory()}), Failure);
    EXPECT_EQ(names(), (Names{"4840D6.html"}));
    EXPECT_EQ(textOf("4840D6.html"), "put there later");
}

TEST_F(PageFolderTest, WritesThroughNoLinkAndIntoNoDirectory) {
    write(first);
    put("mine", "mine");
    fs::remove(path + "/index.html");
    fs::create_symlink("mine", path + "/index.html");
    EXPECT_NE(failureOf(first), "");
    write(first, true);
    EXPECT_EQ(textOf("mine"), "mine");
    EXPECT_FALSE(fs::is_symlink(path + "/index.html"));

    fs::remove(path + "/index.html");
    fs::create_directory(path + "/index.html");
    for (const bool force : {false, true}) {
        EXPECT_EQ(failureOf(first, force),
                  "cannot write " + path +
                      "/index.html: it is a directory; move it away or choose another folder");
    }
    EXPECT_EQ(names(), (Names{"index.html", "40621D.html", "mine"}));
}

TEST_F(PageFolderTest, LeavesLinksToPagesAlone) {
    write(first);
    fs::create_directory(path + "/elsewhere");
    fs::rename(path + "/40621D.html", path + "/elsewhere/40621D.html");
    const std::string page = textOf("elsewhere/40621D.html");
    fs::create_symlink("elsewhere/40621D.html", path + "/40621D.html");
    EXPECT_EQ(failureOf(first), "will not replace " + path +
                                    "/40621D.html, which ondrel did not make; choose another "
                                    "folder, or replace it with --force");
    write(second, true); // has no page of that name
    EXPECT_TRUE(fs::is_symlink(path + "/40621D.html"));
    write(first, true);
    EXPECT_FALSE(fs::is_symlink(path + "/40621D.html"));
    EXPECT_EQ(textOf("elsewhere/40621D.html"), page);
}

TEST_F(PageFolderTest, MayItselfBeALink) {
    fs::create_directory(path);
    const std::string link = path + ".link";
    fs::remove(link);
    fs::create_directory_symlink(path, link);
    const TrackedLines tracked(first);
    PageFolder(link, false).write({"", {0}, tracked.tracking.aircraft(), TrackHistory()});
    EXPECT_EQ(names(), (Names{"index.html", "40621D.html"}));
    EXPECT_TRUE(fs::remove(link));
}

TEST_F(PageFolderTest, NeedsAFolder) {
    std::ofstream(path) << "a file";
    EXPECT_EQ(failureOf(first), "cannot create " + path + ": Not a directory");
}

} // namespace

} // namespace tolvarin::ondrel::client
