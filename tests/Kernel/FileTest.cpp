#include <Kernel/File.h>
#include <Kernel/FileSystem.h>
#include <Kernel/MemoryInStream.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>

namespace fs = std::filesystem;
using Kernel::File;
using Kernel::FileSystem;

namespace {

/// A folder of its own for each test, gone at its end.
class FileTest : public testing::Test
{
public:
    void SetUp() override
    {
        std::string pattern = fs::temp_directory_path() / "quillet-XXXXXX";
        ASSERT_TRUE(mkdtemp(pattern.data()));
        folder = fs::canonical(pattern);
    }
    void TearDown() override { fs::remove_all(folder); }

    void Write(const std::string& path, std::string_view text)
    {
        File file;
        ASSERT_TRUE(file.Open(path, "wb"));
        ASSERT_EQ(std::fwrite(text.data(), 1, text.size(), file.GetHandle()), text.size());
        ASSERT_TRUE(file.Close());
    }

    fs::path folder;
};

TEST_F(FileTest, ReadsWhatItWrote)
{
    const std::string path = folder / "grüße.pdf";
    Write(path, "a longer text");
    Write(path, "short");
    EXPECT_EQ(File::GetSize(path), 5) << "writing starts from an empty file";

    File first;
    ASSERT_TRUE(first.Open(path, "rb"));
    File file(std::move(first));
    std::array<char, 8> buffer{};
    EXPECT_EQ(std::fread(buffer.data(), 1, buffer.size(), file.GetHandle()), 5u);
    EXPECT_STREQ(buffer.data(), "short");

    EXPECT_FALSE(file.Open(folder / "missing", "rb"));
    EXPECT_FALSE(file.IsOpen()) << "the file from before is closed";
}

TEST_F(FileTest, OpensRegularFilesOnly)
{
    const std::string fifo = folder / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string file = folder / "file";
    Write(file, "text");

    const std::string notOpened[] = {
        folder, fifo, "/dev/null", folder / "missing", file + std::string(1, '\0') + ".pdf", ""};
    for (const std::string& path : notOpened) {
        SCOPED_TRACE(path);
        File opened;
        EXPECT_FALSE(opened.Open(path, "rb"));
        EXPECT_EQ(File::GetSize(path), -1);
    }
    File opened;
    EXPECT_FALSE(opened.Open(fifo, "wb"));
    EXPECT_FALSE(opened.Open(file, "x"));

    fs::create_symlink(file, folder / "link");
    EXPECT_TRUE(opened.Open(folder / "link", "rb"));
}

TEST_F(FileTest, ReachesBeyondFourGigabytes)
{
    const std::string path = folder / "sparse";
    Write(path, "");
    constexpr long long c_size = (5LL << 30) + 1;
    fs::resize_file(path, c_size);
    EXPECT_EQ(File::GetSize(path), c_size);
    File file;
    ASSERT_TRUE(file.Open(path, "rb"));
    EXPECT_EQ(fseeko(file.GetHandle(), c_size - 1, SEEK_SET), 0);
    EXPECT_EQ(std::fgetc(file.GetHandle()), 0);
}

TEST_F(FileTest, FindsResourcesBesideTheLibrary)
{
    const fs::path resources = folder / "share" / "quillet";
    fs::create_directories(folder / "lib" / "some-architecture");
    EXPECT_EQ(FileSystem::FindResourcesDirectory(folder / "lib"), "");
    fs::create_directories(resources);
    EXPECT_EQ(FileSystem::FindResourcesDirectory(folder / "lib" / "some-architecture"), resources);
}

TEST(MemoryInStreamTest, GivesEachByteOnce)
{
    Kernel::MemoryInStream stream("abcde");
    std::array<char, 8> buffer{};
    EXPECT_EQ(stream.Read(buffer.data(), 3), 3);
    EXPECT_FALSE(stream.AtEnd());
    EXPECT_EQ(stream.Read(buffer.data() + 3, -1), 0);
    EXPECT_EQ(stream.Read(buffer.data() + 3, 5), 2);
    EXPECT_TRUE(stream.AtEnd());
    EXPECT_STREQ(buffer.data(), "abcde");
}

} // namespace
