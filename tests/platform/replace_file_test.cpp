#include "platform/replace_file.h"

#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/resource.h>
#include <csignal>
#endif

namespace {

namespace fs = std::filesystem;
using platform::replace_file;

class ReplaceFile : public testing::Test {
protected:
    ReplaceFile()
        : folder_(fs::temp_directory_path() /
                  ("selvane_replace_test_" + std::to_string(std::random_device()()))) {
        fs::create_directories(folder_);
    }
    ~ReplaceFile() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    [[nodiscard]] fs::path PathOf(const char* name) const { return folder_ / fs::u8path(name); }
    static std::string Contents(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    [[nodiscard]] std::size_t FileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }

private:
    fs::path folder_;
};

TEST_F(ReplaceFile, MakesAFile) {
    const std::string contents("a\0b\r\n", 5);
    const fs::path path = PathOf("\xC3\xA4.bin");
    EXPECT_FALSE(replace_file(path, contents));
    EXPECT_EQ(Contents(path), contents);
    EXPECT_EQ(FileCount(), 1U);
}

TEST_F(ReplaceFile, TakesThePlaceOfAFile) {
    const fs::path path = PathOf("file");
    EXPECT_FALSE(replace_file(path, "a long text"));
    EXPECT_FALSE(replace_file(path, "short"));
    EXPECT_EQ(Contents(path), "short");
    EXPECT_EQ(FileCount(), 1U);
}

TEST_F(ReplaceFile, LeavesEverythingAsItIsWhenItFails) {
    const fs::path path = PathOf("folder");
    fs::create_directories(path / "inside");
    EXPECT_TRUE(replace_file(path, "text"));
    EXPECT_TRUE(fs::is_directory(path / "inside"));
    EXPECT_TRUE(replace_file(PathOf("nowhere") / "file", "text"));
    EXPECT_EQ(FileCount(), 1U);

    const fs::path file = PathOf("protected");
    EXPECT_FALSE(replace_file(file, "kept"));
    fs::permissions(file, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    EXPECT_TRUE(replace_file(file, "text"));
    EXPECT_EQ(Contents(file), "kept");
    EXPECT_EQ(FileCount(), 2U);
    fs::permissions(file, fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(ReplaceFile, WritesNoFileThatIsThere) {
    const fs::path path = PathOf("file");
    EXPECT_FALSE(platform::write_new_file(path, "first"));
    EXPECT_TRUE(platform::write_new_file(path, "second"));
    EXPECT_EQ(Contents(path), "first");
}

#ifndef _WIN32

TEST_F(ReplaceFile, TakesThePlaceOfALinkAndLeavesWhatItLedTo) {
    const fs::path other = PathOf("other");
    const fs::path link = PathOf("link");
    ASSERT_FALSE(replace_file(other, "untouched"));
    fs::create_symlink(other, link);
    EXPECT_FALSE(replace_file(link, "text"));
    EXPECT_EQ(Contents(other), "untouched");
    EXPECT_FALSE(fs::is_symlink(link));
    EXPECT_EQ(Contents(link), "text");
}

TEST_F(ReplaceFile, WritesNothingThroughALinkThatLeadsNowhere) {
    const fs::path link = PathOf("link");
    fs::create_symlink(PathOf("not there"), link);
    EXPECT_TRUE(platform::write_new_file(link, "text"));
    EXPECT_FALSE(replace_file(link, "text"));
    EXPECT_FALSE(fs::exists(PathOf("not there")));
    EXPECT_EQ(Contents(link), "text");
}

TEST_F(ReplaceFile, LeavesDevicesAlone) {
    EXPECT_EQ(replace_file("/dev/null", "text"), std::errc::not_supported);
    const fs::path link = PathOf("link");
    fs::create_symlink("/dev/null", link);
    EXPECT_EQ(replace_file(link, "text"), std::errc::not_supported);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(FileCount(), 1U);
}

TEST_F(ReplaceFile, KeepsWhoMayReadAFile) {
    const fs::path path = PathOf("file");
    ASSERT_FALSE(replace_file(path, "mine"));
    constexpr fs::perms mine = fs::perms::owner_read | fs::perms::owner_write;
    fs::permissions(path, mine);
    EXPECT_FALSE(replace_file(path, "mine still"));
    EXPECT_EQ(fs::status(path).permissions(), mine);
}

#endif

#ifndef _WIN32

// Files of this process take no more bytes than that while it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before_ = {};
    void (*signal_)(int);
};

TEST_F(ReplaceFile, WithoutRoomTheFormerContentsStay) {
    const fs::path path = PathOf("kept");
    ASSERT_FALSE(replace_file(path, "former"));
    {
        const FileSizeLimit limit(4);
        EXPECT_EQ(replace_file(path, "longer than that"), std::errc::file_too_large);
        EXPECT_EQ(replace_file(PathOf("new"), "longer than that"), std::errc::file_too_large);
    }
    EXPECT_EQ(Contents(path), "former");
    EXPECT_EQ(FileCount(), 1U);
}

#endif

}  // namespace
