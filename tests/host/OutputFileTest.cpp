#include "Folder.h"
#include "OutputFile.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace Host::Test {
namespace {

using std::filesystem::path;

class OutputFileTest : public testing::Test
{
public:
    static bool Put(const path& place, const std::string& text)
    {
        OutputFile file(place.string());
        file.Write(text);
        return file.Commit();
    }

    Folder folder;
};

TEST_F(OutputFileTest, AppearsOnlyWhole)
{
    {
        OutputFile file(folder.Get("a").string());
        file.Write(std::string(1 << 20, 'x'));
        EXPECT_EQ(folder.CountFiles(), 1); // The temporary one.
        EXPECT_FALSE(exists(folder.Get("a")));
    }
    EXPECT_EQ(folder.CountFiles(), 0);

    EXPECT_TRUE(Put(folder.Get("a"), std::string(1 << 20, 'y')));
    EXPECT_EQ(folder.Read("a"), std::string(1 << 20, 'y'));
    EXPECT_EQ(folder.CountFiles(), 1);
}

TEST_F(OutputFileTest, LeavesWhatWasThereUntilItIsWhole)
{
    folder.Put("a", "old");
    chmod(folder.Get("a").c_str(), 0640);
    {
        OutputFile file(folder.Get("a").string());
        file.Write("new");
    }
    EXPECT_EQ(folder.Read("a"), "old");
    EXPECT_TRUE(Put(folder.Get("a"), "new"));
    EXPECT_EQ(folder.Read("a"), "new");
    EXPECT_EQ(static_cast<int>(status(folder.Get("a")).permissions()), 0640);
}

TEST_F(OutputFileTest, FollowsLinks)
{
    create_directory(folder.Get("sub"));
    create_symlink("sub/link", folder.Get("link"));
    create_symlink("file", folder.Get("sub/link"));
    for (const char* text : {"fresh", "again"}) {
        EXPECT_TRUE(Put(folder.Get("link"), text));
        EXPECT_TRUE(is_symlink(folder.Get("link")));
        EXPECT_TRUE(is_symlink(folder.Get("sub/link")));
        EXPECT_EQ(folder.Read("sub/file"), text);
    }
    create_symlink("loop", folder.Get("loop"));
    EXPECT_FALSE(Put(folder.Get("loop"), "x"));
    EXPECT_TRUE(is_symlink(folder.Get("loop")));
}

TEST_F(OutputFileTest, WritesIntoWhatCannotBeReplaced)
{
    EXPECT_TRUE(Put("/dev/null", "x"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_TRUE(OutputFile::IsStream("/dev/null"));
    EXPECT_TRUE(OutputFile::IsStream("/dev/stdout"));
    EXPECT_FALSE(OutputFile::IsStream(folder.Get("").string()));
    EXPECT_FALSE(OutputFile::IsStream(folder.Get("new").string()));
}

} // namespace
} // namespace Host::Test
