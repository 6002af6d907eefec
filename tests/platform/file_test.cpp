#include "platform/file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

class FileTest : public testing::Test {
protected:
    FileTest() { std::filesystem::create_directories(folder); }
    ~FileTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::string Write(const char* name, const std::string& contents) const {
        const std::filesystem::path file = folder / std::filesystem::u8path(name);
        std::ofstream(file, std::ios::binary) << contents;
        return file.u8string();
    }

    std::filesystem::path folder = std::filesystem::temp_directory_path() / "selvane_file_test";
};

TEST_F(FileTest, IsReadAsItIs) {
    for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 100000U}) {
        std::string contents(size, 'x');
        if (size > 2) contents[1] = '\n', contents[2] = '\0';
        std::string read = "before";
        ASSERT_TRUE(platform::read_file(Write("\xE6\xBC\xA2.txt", contents), read));
        EXPECT_EQ(read, contents);
    }
}

TEST_F(FileTest, ThatIsNotThereOrAFolderIsNotRead) {
    std::string read;
    EXPECT_FALSE(platform::read_file((folder / "missing").u8string(), read));
    EXPECT_FALSE(platform::read_file(folder.u8string(), read));
}

}  // namespace
