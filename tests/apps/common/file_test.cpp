#include "apps/common/file.h"

#include "apps/common/failure.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
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

TEST_F(ReplaceFile, IsToldOnlyTheStartOfRegularFiles) {
    std::ofstream(file) << "a page";
    EXPECT_EQ(startOfFile(file, 3), "a p");
    EXPECT_EQ(startOfFile(file, 99), "a page");
    fs::create_symlink(file, folder / "link");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const fs::path& other :
         {folder / "link", folder / "pipe", folder / "nowhere", folder, fs::path("/dev/zero")}) {
        EXPECT_EQ(startOfFile(other, 3), "") << other;
    }
}

/// So a program that is killed leaves no part of a line.
TEST_F(ReplaceFile, AnOutputWritesWholeLinesUntilItIsFlushed) {
    Output output(file);
    const std::string line(99, 'x');
    for (int i = 0; i < 5000; ++i) {
        output << line << '\n';
        ASSERT_EQ(fs::file_size(file) % 100, 0U) << i;
    }
    EXPECT_GT(fs::file_size(file), 100000U);
    output << "begun";
    output.flush();
    EXPECT_EQ(fs::file_size(file), 500005U);
}

/// A file whose close() fails, since its descriptor was closed behind its back.
class FailingClose : public ReplaceFile {
protected:
    /// Opens what `open` opens, and takes its descriptor away.
    template <class Open>
    auto broken(Open open) const {
        const int next = ::dup(STDIN_FILENO); // open() gives the lowest number that is free
        ::close(next);
        auto opened = open();
        EXPECT_EQ(::close(next), 0);
        return opened;
    }

    /// What the action throws.
    static std::string failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "none";
    }

    std::string expected = "cannot write " + file.string() + ": Bad file descriptor";
};

TEST_F(FailingClose, IsTold) {
    auto begunFile = broken([this] { return File::openForWriting(file); });
    EXPECT_EQ(failureOf([&] { begunFile.close(); }), expected);
    EXPECT_EQ(failureOf([&] { begunFile.close(); }), "none") << "it is closed, whatever came of it";
    auto output = broken([this] { return std::make_unique<Output>(file); });
    EXPECT_EQ(failureOf([&] { output->close(); }), expected);
}

// The system may have given the number to another file by then.
TEST_F(FailingClose, ClosesNoOtherFileThen) {
    int other = -1;
    {
        auto begunFile = broken([this] { return File::openForWriting(file); });
        EXPECT_EQ(failureOf([&] { begunFile.close(); }), expected);
        other = ::open("/dev/null", O_RDONLY);
    }
    EXPECT_EQ(::close(other), 0);
}

} // namespace

} // namespace tolvarin::ondrel::client
