#include "CommandLine.h"

#include "CommandRun.h"
#include "ExitStatus.h"
#include "support/PdfBuilder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace Host::Test {
namespace {

using Json = nlohmann::json;
using Quillet::MakePageBuilder;
using Quillet::PdfBuilder;
using testing::HasSubstr;
using testing::StartsWith;

/// A red clipped square in a layer, and a dashed line with a width that its transform squeezes.
constexpr const char* c_content = "/OC /L BDC q 10 10 20 20 re W n 1 0 0 rg 10 10 40 40 re f Q EMC "
                                  "q 2 0 0 1 0 0 cm 3 w [6 3] 0 d 1 j 5 80 m 40 80 l 40 90 l S Q";

PdfBuilder MakeSample(const std::string& content = c_content)
{
    return MakePageBuilder(content,
                           {.resources = "/Properties << /L 5 0 R >>",
                            .objects = {"<< /Type /OCG /Name (Ground <&> \\001floor) >>",
                                        "<< /Title (A <title>) /Author <FEFF004E000A0076001B005B0031006D009B> >>"},
                            .catalog = "/OCProperties << /OCGs [5 0 R] /D << /OFF [5 0 R] >> >>"});
}

/// A page for each number, which places a square; those with a negative one have no size.
std::string MakePages(const std::vector<int>& pages, const std::string& count)
{
    PdfBuilder builder = MakeSample();
    std::string kids;
    for (const int page : pages) {
        const int content = builder.AddStream(std::to_string(page) + " 0 10 10 re f (x) x");
        kids +=
            std::to_string(builder.Add(page < 0 ? "<< /Type /Page /Parent 2 0 R >>"
                                                : "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Contents " +
                                                      std::to_string(content) + " 0 R >>")) +
            " 0 R ";
    }
    builder.Set(2, "<< /Type /Pages /Kids [" + kids + "] /Count " + count + " >>");
    return builder.Build();
}

using CommandLineTest = CommandRun;

TEST_F(CommandLineTest, TellsByTheStatusWhatHappened)
{
    folder.Put("FILE", MakeSample().Build());
    folder.Put("FILE.txt", "no document");
    folder.Put("FILE.0", MakePages({}, "0"));
    mkfifo(folder.Get("FILE.fifo").c_str(), 0600);
    const struct
    {
        std::vector<std::string> words;
        int status;
        const char* problem;
    } rows[] = {
        {{}, ExitCommandLine, "subcommand"},
        {{"paint"}, ExitCommandLine, "paint: no such verb"},
        {{"convert", "FILE"}, ExitCommandLine, "--output is required"},
        {{"convert", "FILE", "-o", "OUT"}, ExitCommandLine, "names no format"},
        {{"convert", "FILE", "-o", "OUT.json", "--format", "doc"}, ExitCommandLine, "doc: no such format"},
        {{"convert", "FILE", "-o", "OUT.json", "--clip", "5"}, ExitCommandLine, "5 is none of none|media|"},
        {{"convert", "FILE", "-o", "OUT.json", "--pages", "2"}, ExitCommandLine, "no such pages; the document has 1"},
        {{"convert", "FILE", "-o", "OUT.json", "--jobs", "0"}, ExitCommandLine, "--jobs"},
        {{"convert", "FILE", "-o", "FILE", "--format", "json"}, ExitCommandLine, "is the document itself"},
        {{"info", "FILE", "--password-file", "FILE.none"}, ExitCommandLine, "cannot read"},
        {{"info", "FILE.none"}, ExitNotOpened, ".none: fopen (0)"},
        {{"info", "FILE.fifo"}, ExitNotOpened, ".fifo: fopen (0)"},
        {{"info", "FILE.txt"}, ExitNotOpened, ".txt: PDF header (3)"},
        {{"convert", "/", "-o", "OUT.json"}, ExitNotOpened, "/: fopen (0)"},
        {{"convert", "FILE", "-o", "OUT/a.json"}, ExitNotWritten, "a.json: cannot be written: No such file"},
        {{"convert", "FILE", "-o", "OUT/a.svg"}, ExitNotWritten, "a.svg: cannot be written: No such file"},
        {{"convert", "FILE", "-o", "/dev/full", "--format", "json"}, ExitNotWritten, "No space left"},
        {{"convert", "FILE", "-o", "/dev/null", "--format", "svg"}, ExitDone, ""},
        {{"convert", "FILE.0", "-o", "/dev/null", "--format", "svg"}, ExitDone, "no pages"},
    };
    const auto fileCount = folder.CountFiles();
    for (const auto& row : rows) {
        EXPECT_EQ(Run(row.words), row.status) << row.problem << problems;
        EXPECT_THAT(problems, HasSubstr(row.problem));
        EXPECT_LE(std::ranges::count(problems, '\n'), 1) << problems;
    }
    EXPECT_EQ(folder.CountFiles(), fileCount);
}

TEST_F(CommandLineTest, InfoObeysNothingThatAFileSays)
{
    PdfBuilder builder = MakeSample();
    builder.trailer += " /Info 6 0 R";
    builder.Set(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /CropBox [10 10 90 90] /Rotate 90 >>");
    folder.Put("FILE", builder.Build());
    EXPECT_EQ(Run({"info", "FILE"}), ExitDone);
    EXPECT_THAT(output, HasSubstr("\nauthor       N v [1m \n"));
    EXPECT_THAT(output, HasSubstr("\n  page 1       80 x 80 pt, turned by 90, media 0 0 100 200\n"));

    EXPECT_EQ(Run({"info", "FILE", "--json"}), ExitDone);
    const Json json = Json::parse(output);
    EXPECT_EQ(json["document"]["title"], "A <title>");
    EXPECT_EQ(json["document"]["version"], "PDF-1.7");
    EXPECT_EQ(json["pages"][0]["boxes"]["crop"], Json({10, 10, 90, 90}));
}

TEST_F(CommandLineTest, WritesTheTreeAsJson)
{
    folder.Put("FILE", MakeSample().Build());
    ASSERT_EQ(Run({"convert", "FILE", "--raw", "-o", "OUT.json"}), ExitDone) << problems;
    const Json json = Json::parse(folder.Read("OUT.json"));
    EXPECT_EQ(json["document"]["pageCount"], 1);
    EXPECT_EQ(json["styles"], Json::array());
    const Json& page = json["pages"][0];
    EXPECT_EQ(page["size"], Json({100, 100}));
    EXPECT_EQ(page["errors"], Json::array());

    const Json& layer = page["root"]["children"][0];
    EXPECT_EQ(layer["type"], "layer");
    EXPECT_EQ(layer["visible"], false);
    EXPECT_FALSE(layer.contains("editable"));
    EXPECT_FALSE(layer.contains("opacity"));
    EXPECT_EQ(layer["box"], Json({10, 70, 30, 90}));
    const Json& clip = layer["children"][0];
    EXPECT_EQ(clip["type"], "group");
    EXPECT_THAT(clip["clip"]["path"], StartsWith("M "));
    EXPECT_EQ(clip["clip"]["winding"], "nonzero");
    const Json& square = clip["children"][0];
    EXPECT_EQ(square["type"], "path");
    EXPECT_EQ(square["shape"], "rectangle");
    EXPECT_EQ(square["box"], Json({10, 50, 50, 90}));
    EXPECT_EQ(square["fill"], Json::parse(R"({"kind": "solid", "colour":
        {"model": "rgb", "values": [1, 0, 0], "alpha": 1, "name": ""}})"));
    EXPECT_TRUE(square["stroke"].is_null());

    const Json& line = page["root"]["children"][1];
    EXPECT_TRUE(line["fill"].is_null());
    EXPECT_EQ(line["line"]["join"], "round");
    EXPECT_EQ(line["line"]["cap"], "butt");
    EXPECT_FALSE(line.contains("shape"));
    const double width = line["line"]["width"];
    EXPECT_GT(width, 3);
    EXPECT_NEAR(line["line"]["dashes"][0].get<double>() / width, 2, 1e-5);
}

TEST_F(CommandLineTest, WritesHowNamedColoursLook)
{
    folder.Put("FILE", MakePageBuilder("/C cs 1 scn 10 10 40 40 re f /R cs 1 scn 10 10 40 40 re f",
                                       {.resources = "/ColorSpace << /C [/Separation /Gold /DeviceCMYK 5 0 R] "
                                                     "/R [/Separation /All /DeviceCMYK 5 0 R] >>",
                                        .objects = {"<< /FunctionType 2 /N 1 /Domain [0 1] /C0 [0 0 0 0] "
                                                    "/C1 [0 0.25 1 0.5] >>"}})
                           .Build());
    ASSERT_EQ(Run({"convert", "FILE", "--raw", "-o", "OUT.json"}), ExitDone) << problems;
    const Json paths = Json::parse(folder.Read("OUT.json"))["pages"][0]["root"]["children"];
    EXPECT_EQ(paths[0]["fill"]["colour"], Json::parse(R"({"model": "named", "values": [1], "alpha": 1, "name": "Gold",
        "alternate": {"model": "cmyk", "values": [0, 0.25, 1, 0.5], "alpha": 1, "name": ""}})"));
    EXPECT_FALSE(paths[1]["fill"]["colour"].contains("alternate"));
}

TEST_F(CommandLineTest, WritesSvgThatEditorsOpenWithItsStructure)
{
    folder.Put("FILE", MakeSample().Build());
    ASSERT_EQ(Run({"convert", "FILE", "--raw", "-o", "OUT.svg"}), ExitDone) << problems;
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(folder.Read("OUT.svg").c_str()));
    const auto svg = document.child("svg");
    EXPECT_STREQ(svg.attribute("viewBox").value(), "0 0 100 100");
    const auto layer = svg.child("g");
    EXPECT_STREQ(layer.attribute("inkscape:groupmode").value(), "layer");
    EXPECT_STREQ(layer.attribute("inkscape:label").value(), "Ground <&> floor");
    EXPECT_STREQ(layer.attribute("style").value(), "display:none");
    const auto clip = layer.child("g");
    const auto shape = svg.child("defs").child("clipPath");
    EXPECT_EQ(clip.attribute("clip-path").value(), "url(#" + std::string(shape.attribute("id").value()) + ")");
    EXPECT_STREQ(clip.child("path").attribute("fill").value(), "#ff0000");
    const auto line = layer.next_sibling("path");
    EXPECT_STREQ(line.attribute("fill").value(), "none");
    EXPECT_STREQ(line.attribute("stroke").value(), "#000000");
    EXPECT_STREQ(line.attribute("stroke-linejoin").value(), "round");
    EXPECT_EQ(std::string(line.attribute("stroke-dasharray").value()).find("nan"), std::string::npos);
}

TEST_F(CommandLineTest, WritesTheSameWithAnyNumberOfJobs)
{
    folder.Put("FILE", MakePages({1, 2, -3, 4, 5, -6, 7, 8, 9, 10}, "10"));
    std::string first;
    std::string firstProblems;
    for (const char* jobs : {"1", "1", "2", "7"}) {
        EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.json", "--jobs", jobs}), ExitPageFailed) << jobs;
        const std::string text = folder.Read("OUT.json");
        if (first.empty()) {
            first = text;
            firstProblems = problems;
        }
        EXPECT_EQ(text, first) << jobs;
        EXPECT_EQ(problems, firstProblems) << jobs;
    }
    const Json json = Json::parse(first);
    ASSERT_EQ(json["pages"].size(), 8u);
    EXPECT_EQ(json["pages"][7]["index"], 9);
    std::set<int> ids;
    for (const Json& page : json["pages"])
        ids.insert(page["root"]["children"][0]["id"].get<int>());
    EXPECT_EQ(ids.size(), 8u);
    EXPECT_THAT(firstProblems, HasSubstr(GetProblem("page 3: page tree (6)")));
    EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.json", "--quiet", "--pages", "1"}), ExitDone);
    EXPECT_EQ(problems, "");
}

TEST_F(CommandLineTest, NumbersTheFilesOfSeveralPages)
{
    folder.Put("FILE", MakePages({1, 2, 3}, "3"));
    EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.svg", "--pages", "3,1"}), ExitDone);
    EXPECT_EQ(folder.CountFiles(), 3);
    EXPECT_TRUE(exists(folder.Get("OUT-1.svg")) && exists(folder.Get("OUT-3.svg")));
}

TEST_F(CommandLineTest, NeverWritesOverTheDocument)
{
    const std::string file = MakePages({1, 2, 3}, "3");
    folder.Put("FILE", file);
    folder.Put("OUT-1.svg", file);
    create_symlink(folder.Get("FILE"), folder.Get("OUT-2.svg"));
    create_hard_link(folder.Get("FILE"), folder.Get("OUT-3.svg"));
    const struct
    {
        std::vector<std::string> words;
        int status;
        const char* name;
    } rows[] = {
        {{"convert", "OUT-1.svg", "-o", "OUT.svg"}, ExitCommandLine, "OUT-1.svg"},
        {{"convert", "FILE", "-o", "OUT.svg", "--pages", "1-2"}, ExitCommandLine, "OUT-2.svg"},
        {{"convert", "FILE", "-o", "OUT.svg", "--pages", "1,3"}, ExitCommandLine, "OUT-3.svg"},
        {{"convert", "FILE", "-o", "OUT-2.svg", "--pages", "1"}, ExitCommandLine, "OUT-2.svg"},
        {{"convert", "FILE", "-o", "OUT-03.svg", "--pages", "1-2"}, ExitDone, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Run(row.words), row.status);
        if (row.status != ExitDone) {
            EXPECT_EQ(problems, "quillet: " + folder.Get(row.name).string() + ": is the document itself\n");
        }
        EXPECT_EQ(folder.Read("OUT-1.svg"), file);
        EXPECT_EQ(folder.Read("FILE"), file);
    }
    EXPECT_EQ(Run({"convert", "OUT-1.svg", "-o", "OUT.svg", "--pages", "2-3"}), ExitDone);
    EXPECT_EQ(folder.Read("OUT-1.svg"), file);
}

TEST_F(CommandLineTest, StopsWherePagesAreOnlyClaimed)
{
    folder.Put("FILE", MakePages({1}, "2147483647"));
    EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.json", "--jobs", "2"}), ExitPageFailed);
    EXPECT_THAT(problems, HasSubstr("100 pages in a row are missing"));
    EXPECT_EQ(Json::parse(folder.Read("OUT.json"))["pages"].size(), 1u);
}

TEST_F(CommandLineTest, ListsThePagesAroundThoseThatAreMissing)
{
    PdfBuilder builder = MakeSample();
    builder.Set(2, "<< /Type /Pages /Kids [3 0 R 3 0 R 9 0 R 7 0 R 8 0 R] /Count 4 >>");
    builder.Add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] >>");
    builder.Add("<< /Type /Page /Parent 2 0 R >>");
    folder.Put("FILE", builder.Build());
    EXPECT_EQ(Run({"info", "FILE"}), ExitPageFailed);
    EXPECT_THAT(output, HasSubstr("\n  page 1       100 x 100 pt\n  page 3       100 x 100 pt\n"));
    EXPECT_EQ(problems.find(GetProblem("page 2: page tree (6)")), 0u) << problems;
    // A page without boxes is none either.
    EXPECT_EQ(Run({"info", "FILE", "--json"}), ExitPageFailed);
    EXPECT_EQ(Json::parse(output)["pages"].size(), 2u);
    EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.json"}), ExitPageFailed);
    EXPECT_EQ(problems.find(GetProblem("page 2: page tree (6)")), 0u) << problems;
    const Json pages = Json::parse(folder.Read("OUT.json"))["pages"];
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[1]["index"], 2);
}

TEST_F(CommandLineTest, WritesTreesOfAnyDepth)
{
    std::string content;
    for (int i = 0; i < 20000; ++i)
        content += "0 0 50 50 re W n\n";
    folder.Put("FILE", MakeSample(content + "0 0 9 9 re f").Build());
    for (const char* name : {"OUT.json", "OUT.svg"}) {
        EXPECT_EQ(Run({"convert", "FILE", "--raw", "-o", name, "--quiet"}), ExitDone) << name;
        EXPECT_GT(file_size(folder.Get(name)), 1000u) << name;
    }
}

} // namespace
} // namespace Host::Test
