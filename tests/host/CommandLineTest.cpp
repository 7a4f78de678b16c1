#include "CommandLine.h"

#include "CommandRun.h"
#include "ExitStatus.h"
#include "PageRange.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <algorithm>
#include <climits>
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
        {{"convert", "FILE", "-o", "/", "--format", "json"}, ExitNotWritten, "Is a directory"},
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
    const Json json = Json::parse(Convert("json", {"--raw"}));
    const auto get = [&](const std::string& path) { return json.value(Json::json_pointer(path), Json("absent")); };
    const std::string layer = "/pages/0/root/children/0";
    const std::string square = layer + "/children/0/children/0";
    const std::string line = "/pages/0/root/children/1";
    const Json red{{"model", "rgb"}, {"values", {1, 0, 0}}, {"alpha", 1}, {"name", ""}};
    const std::pair<std::string, Json> rows[] = {
        {"/document/pageCount", 1},
        {"/styles", Json::array()},
        {"/pages/0/size", {100, 100}},
        {"/pages/0/errors", Json::array()},
        {layer + "/type", "layer"},
        {layer + "/visible", false},
        {layer + "/editable", "absent"},
        {layer + "/opacity", "absent"},
        {layer + "/box", {10, 70, 30, 90}},
        {layer + "/children/0/type", "group"},
        {layer + "/children/0/clip/winding", "nonzero"},
        {square + "/type", "path"},
        {square + "/shape", "rectangle"},
        {square + "/box", {10, 50, 50, 90}},
        {square + "/fill", {{"kind", "solid"}, {"colour", red}}},
        {square + "/stroke", nullptr},
        {line + "/fill", nullptr},
        {line + "/line/join", "round"},
        {line + "/line/cap", "butt"},
        {line + "/shape", "absent"},
    };
    for (const auto& [path, value] : rows)
        EXPECT_EQ(get(path), value) << path;
    EXPECT_THAT(get(layer + "/children/0/clip/path"), StartsWith("M "));
    const double width = get(line + "/line/width");
    EXPECT_GT(width, 3);
    EXPECT_NEAR(get(line + "/line/dashes/0").get<double>() / width, 2, 1e-5);
}

TEST_F(CommandLineTest, WritesHowNamedColoursLook)
{
    folder.Put("FILE", MakePageBuilder("/C cs 1 scn 10 10 40 40 re f /R cs 1 scn 10 10 40 40 re f",
                                       {.resources = "/ColorSpace << /C [/Separation /Gold /DeviceCMYK 5 0 R] "
                                                     "/R [/Separation /All /DeviceCMYK 5 0 R] >>",
                                        .objects = {"<< /FunctionType 2 /N 1 /Domain [0 1] /C0 [0 0 0 0] "
                                                    "/C1 [0 0.25 1 0.5] >>"}})
                           .Build());
    const Json paths = Json::parse(Convert("json", {"--raw"}))["pages"][0]["root"]["children"];
    EXPECT_EQ(paths[0]["fill"]["colour"], Json::parse(R"({"model": "named", "values": [1], "alpha": 1, "name": "Gold",
        "alternate": {"model": "cmyk", "values": [0, 0.25, 1, 0.5], "alpha": 1, "name": ""}})"));
    EXPECT_FALSE(paths[1]["fill"]["colour"].contains("alternate"));
}

TEST_F(CommandLineTest, WritesSvgThatEditorsOpenWithItsStructure)
{
    folder.Put("FILE", MakeSample().Build());
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(Convert("svg", {"--raw"}).c_str()));
    const std::pair<const char*, const char*> rows[] = {
        {"/svg/@viewBox", "0 0 100 100"},
        {"/svg/g/@inkscape:groupmode", "layer"},
        {"/svg/g/@inkscape:label", "Ground <&> floor"},
        {"/svg/g/@style", "display:none"},
        {"/svg/g/g/path/@fill", "#ff0000"},
        {"/svg/path/@fill", "none"},
        {"/svg/path/@stroke", "#000000"},
        {"/svg/path/@stroke-linejoin", "round"},
    };
    const auto get = [&](const char* path) { return std::string(document.select_node(path).attribute().value()); };
    for (const auto& [path, value] : rows)
        EXPECT_EQ(get(path), value) << path;
    EXPECT_EQ(get("/svg/g/g/@clip-path"), "url(#" + get("/svg/defs/clipPath/@id") + ")");
    EXPECT_EQ(get("/svg/path/@stroke-dasharray").find("nan"), std::string::npos);
}

TEST_F(CommandLineTest, WritesTheSameWithAnyNumberOfJobs)
{
    folder.Put("FILE", MakePages({1, 2, -3, 4, 5, -6, 7, 8, 9, 10}, "10"));
    std::string first;
    std::string firstProblems;
    for (const char* jobs : {"1", "1", "2", "7"}) {
        EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.json", "--jobs", jobs}), ExitPageFailed) << jobs;
        if (first.empty()) {
            first = folder.Read("OUT.json");
            firstProblems = problems;
        }
        EXPECT_EQ(folder.Read("OUT.json"), first) << jobs;
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
    folder.Put("FILE", MakeSample(Quillet::Repeat("0 0 50 50 re W n\n", 20000) + "0 0 9 9 re f").Build());
    for (const char* suffix : {"json", "svg"})
        EXPECT_GT(Convert(suffix, {"--raw", "--quiet"}).size(), 1000u) << suffix;
}

using GradientExportTest = CommandRun;

TEST_F(GradientExportTest, WritesRecognisedGradients)
{
    // Strips of red turning to blue, 40 points high, from (10, 20) on.
    std::string content;
    for (int i = 0; i <= 20; ++i) {
        content += std::to_string(1 - i * 0.05) + " 0 " + std::to_string(i * 0.05) + " rg " +
                   std::to_string(10 + 4 * i) + " 20 4 40 re f\n";
    }
    folder.Put("FILE", Quillet::MakePagePdf(content));
    Json object = Json::parse(Convert("json"))["pages"][0]["root"];
    while (object.contains("children")) {
        ASSERT_EQ(object["children"].size(), 1);
        const Json child = object["children"][0];
        object = child;
    }
    const Json fill = object["fill"];
    EXPECT_EQ(fill["kind"], "linear");
    ASSERT_GE(fill["stops"].size(), 2);
    EXPECT_EQ(fill["stops"].front()["position"], 0);
    EXPECT_EQ(fill["stops"].front()["colour"]["values"], Json({1, 0, 0}));
    EXPECT_EQ(fill["stops"].back()["position"], 1);
    EXPECT_EQ(fill["stops"].back()["colour"]["values"], Json({0, 0, 1}));
    // From the unit square to the page, y downward.
    EXPECT_EQ(fill["transform"], Json({84, 0, 0, 40, 10, 40}));

    pugi::xml_document svg;
    const std::string text = Convert("svg");
    ASSERT_TRUE(svg.load_string(text.c_str())) << text;
    const auto gradient = svg.select_node("//linearGradient").node();
    EXPECT_STREQ(gradient.attribute("x2").value(), "1");
    EXPECT_STREQ(gradient.attribute("gradientTransform").value(), "matrix(84 0 0 40 10 40)");
    EXPECT_STREQ(gradient.first_child().attribute("stop-color").value(), "#ff0000");
    EXPECT_STREQ(gradient.last_child().attribute("stop-color").value(), "#0000ff");
    EXPECT_EQ(svg.select_node("//path").node().attribute("fill").value(),
              "url(#" + std::string(gradient.attribute("id").value()) + ")");
}

/// The indices with blanks between, or "none" for a text that is refused.
std::string List(const std::string& text, int pageCount)
{
    const auto range = PageRange::Parse(text, pageCount);
    if (!range) return "none";
    std::string list;
    for (long long place = 0; place < range->GetLength(); ++place)
        list += std::to_string(range->GetIndex(place)) + " ";
    return list;
}

TEST(PageRange, ListsIndicesInTheOrderGiven)
{
    const struct
    {
        const char* text;
        int pageCount;
        const char* indices;
    } rows[] = {
        {"", 3, "0 1 2 "},   {"", 0, ""},         {"2", 3, "1 "},    {"1-3,7", 7, "0 1 2 6 "},   {"3,1", 3, "2 0 "},
        {"2,2", 3, "1 1 "},  {"2-", 4, "1 2 3 "}, {"4-4", 4, "3 "},  {"0", 3, "none"},           {"4", 3, "none"},
        {"1-4", 3, "none"},  {"3-1", 3, "none"},  {"-2", 3, "none"}, {"1,", 3, "none"},          {",1", 3, "none"},
        {"1--2", 3, "none"}, {"1 2", 3, "none"},  {"+1", 3, "none"}, {"one", 3, "none"},         {"1-2-3", 3, "none"},
        {"-", 3, "none"},    {"1", 0, "none"},    {"1-", 0, "none"}, {"99999999999", 3, "none"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(List(row.text, row.pageCount), row.indices) << row.text;
}

TEST(PageRange, TakesNoMemoryForAClaimedPageCount)
{
    const auto range = PageRange::Parse("1-,1-", INT_MAX);
    ASSERT_TRUE(range);
    EXPECT_EQ(range->GetLength(), 2LL * INT_MAX);
    EXPECT_EQ(range->GetIndex(INT_MAX - 1LL), INT_MAX - 1);
    EXPECT_EQ(range->GetIndex(INT_MAX), 0);
}

} // namespace
} // namespace Host::Test
