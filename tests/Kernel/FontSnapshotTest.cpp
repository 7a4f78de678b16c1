#include <Kernel/FontSnapshot.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include <unistd.h>

namespace {

using namespace Kernel;
namespace fs = std::filesystem;

class FontSnapshotTest : public testing::Test
{
protected:
    FontSnapshotTest()
    {
        fs::remove_all(directory);
        fs::create_directories(directory);
    }
    ~FontSnapshotTest() override { fs::remove_all(directory); }

    FontSnapshot Open(const std::string& environment = "LANG=C") const { return {directory / "kept", environment}; }

    static FontFace MakeFace(const std::string& name, int index)
    {
        FontFace face;
        face.font.SetPostscriptName(name);
        face.font.SetFamily("Fami\nly: " + name);
        face.font.SetWeight(700);
        face.font.SetWidth(FontWidth::Condensed);
        face.font.SetIsItalic(true);
        face.font.panose.SetIsMonospaced();
        face.font.isVariable = true;
        face.file = "/fonts/" + name;
        face.index = index;
        return face;
    }

    const fs::path directory = fs::temp_directory_path() / ("quillet-snapshot-" + std::to_string(getpid()));
    const std::string missing = (directory / "missing").string();
    /// What changed a moment ago is not trusted to be still; the root of the machine did not.
    const std::vector<std::string> sources = {"/", missing};
};

TEST_F(FontSnapshotTest, KeepsFacesAndAnswers)
{
    EXPECT_FALSE(Open().Read());
    FontSnapshot first = Open();
    first.Write({MakeFace("One", 0), FontFace(), MakeFace("Two", 65537)}, sources);
    first.Add("Helvetica\n400", 2);
    first.Add("Nothing", -1);
    FontSnapshot second = Open();
    auto answers = second.Read();
    ASSERT_TRUE(answers);
    second.Add("Times", 0);
    ASSERT_EQ(answers->faces.size(), 3U);
    for (const auto& [i, expected] :
         {std::pair(0U, MakeFace("One", 0)), {1U, FontFace()}, {2U, MakeFace("Two", 65537)}}) {
        EXPECT_EQ(answers->faces[i].font, expected.font);
        EXPECT_EQ(answers->faces[i].file, expected.file);
        EXPECT_EQ(answers->faces[i].index, expected.index);
    }
    answers = Open().Read();
    ASSERT_TRUE(answers);
    const std::unordered_map<std::string, int> expected = {{"Helvetica\n400", 2}, {"Nothing", -1}, {"Times", 0}};
    EXPECT_EQ(answers->matches, expected);
}

TEST_F(FontSnapshotTest, HoldsOnlyWhileTheMachineIsAsItWas)
{
    FontSnapshot written = Open();
    written.Write({MakeFace("One", 0)}, sources);
    EXPECT_TRUE(Open().Read());
    EXPECT_FALSE(Open("LANG=de").Read());
    std::ofstream(missing) << "a font";
    EXPECT_FALSE(Open().Read());
    // It is too new to be told from what may come within the same moment.
    fs::remove_all(directory / "kept");
    Open().Write({}, sources);
    EXPECT_FALSE(Open().Read());
}

TEST_F(FontSnapshotTest, OutlivesDamageAndManyQuestions)
{
    FontSnapshot written = Open();
    written.Write({MakeFace("One", 0)}, sources);
    for (int i = 0; i < 2000; ++i)
        written.Add("Question " + std::to_string(i), 0);
    EXPECT_EQ(Open().Read()->matches.size(), 500U);

    const fs::path file = fs::directory_iterator(directory / "kept")->path();
    std::string text(fs::file_size(file), ' ');
    std::ifstream(file, std::ios::binary).read(text.data(), static_cast<std::streamsize>(text.size()));
    const auto keep = [&](const std::string& content) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
        return Open().Read();
    };
    for (std::size_t size = 0; size < 600; ++size) {
        // As far as the faces go it is nothing; behind them, what is whole counts.
        const auto answers = keep(text.substr(0, size));
        if (answers) EXPECT_EQ(answers->faces.size(), 1U);
    }
    EXPECT_EQ(keep(text + "3:abc1:9")->matches.size(), 500U);
    EXPECT_FALSE(keep("Quillet fonts 1\n99999999999999999999:"));
}

} // namespace
