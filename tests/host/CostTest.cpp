#include "CommandRun.h"
#include "ExitStatus.h"
#include "Guarded.h"
#include "OpenDocument.h"
#include "PageQueue.h"
#include "exporters/Format.h"
#include "exporters/JsonExporter.h"
#include "exporters/JsonWriter.h"
#include "exporters/SvgExporter.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <chrono>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace Host::Test {
namespace {

using namespace Quillet;
using Json = nlohmann::json;

const std::string c_longName(60'000, '&');

/// All that a page can have, and much of it.
std::string MakeRichPage()
{
    const std::string dashes = "[" + Repeat("1 2 ", 50) + "] 0 d ";
    return MakePagePdf(
        "/OC /L BDC q 10 10 20 20 re W* n 1 0 0 rg " + Repeat("10 10 40 40 re f ", 20) + "Q EMC " +
            Repeat("q 0 0 60 60 re W n ", 20) + dashes + Repeat("5 80 m 40 80 l 40 90 l S ", 5) + Repeat("Q ", 20) +
            "/G gs 1 .5 0 1 0 0 cm 0 0 m " + Repeat("1.2 3.4 5.6 7.8 9 1 c ", 200) + "B BT /F 9 Tf " +
            Repeat("1 0 0 rg (a word and) Tj 0 g ( another) Tj ", 20) + "7 Tr (clip) Tj ET BT 0 Tr (a) Tj ET",
        {.resources = "/Properties << /L 5 0 R >> /Font << /F 6 0 R >> /ExtGState << /G << /BM /Multiply >> >>",
         .objects = {"<< /Type /OCG /Name (Ground <&> floor) >>",
                     "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"},
         .catalog = "/OCProperties << /OCGs [5 0 R] /D << >> >>"});
}

/// Pages whose names are long, and used often.
std::string MakeNamePage(const std::string& content, const std::string& resources, const std::string& object)
{
    return MakePagePdf(
        Repeat(content, 500),
        {.resources = resources, .objects = {object}, .catalog = "/OCProperties << /OCGs [5 0 R] /D << >> >>"});
}

/// Writes a page of which there is the tree, for so many units; both formats.
class PageWriter
{
public:
    explicit PageWriter(const std::string& file)
        : document(file), root(document.Build()), page(document->GetPage(0)), profiles(document->GetICCProfiles(-1))
    {}

    std::string Write(bool isSvg, long long units)
    {
        problems = {{Error::General, 2}};
        const Budget::Scope scope(Kernel::MakeCounted<Budget>(units), Budget::Share::All, nullptr);
        const PageView view = GetView(*root);
        return (isSvg ? MakeSvg(view) : MakePageJson(view)).Join();
    }

    PageView GetView(const GroupObject& tree) { return {*page, 0, tree, problems, 0, styleNames, title, profiles}; }

    TestDocument document;
    Kernel::Counted<GroupObject> root;
    Kernel::Counted<const Page> page;
    Raster::ICCManager::ICCProfileSet profiles;
    StyleNames::Names styleNames;
    std::string title = "A <title>";
    Problems problems;
};

bool IsXml(const std::string& text)
{
    pugi::xml_document document;
    return static_cast<bool>(document.load_string(text.c_str()));
}

TEST(CostTest, WhatIsCutCanBeRead)
{
    PageWriter writer(MakeRichPage());
    ASSERT_TRUE(writer.root);
    for (const bool isSvg : {false, true}) {
        const std::string whole = writer.Write(isSvg, 1'000'000'000);
        EXPECT_FALSE(writer.problems.contains(Error::CutShort));
        long long cutCount = 0;
        std::size_t lengthBefore = 0;
        for (long long units = 1; units < 1'000'000; units += 1 + units / 8) {
            const std::string text = writer.Write(isSvg, units);
            const bool isCut = writer.problems.contains(Error::CutShort);
            ASSERT_EQ(isCut, text != whole) << units;
            cutCount += isCut && text.size() > lengthBefore;
            lengthBefore = text.size();
            // The header and the elements that stand for the page come in any case.
            EXPECT_LT(text.size(), static_cast<std::size_t>(units) + 1500);
            if (isSvg) {
                ASSERT_TRUE(IsXml(text)) << units << text;
                continue;
            }
            const Json json = Json::parse(text, nullptr, false);
            ASSERT_FALSE(json.is_discarded()) << units << text;
            EXPECT_EQ(json["errors"].size(), isCut ? 2 : 1);
            EXPECT_EQ(json["errors"].back()["kind"], isCut ? 25 : 12);
        }
        EXPECT_GT(cutCount, 20) << isSvg;
        EXPECT_EQ(lengthBefore, whole.size()) << isSvg;
    }
}

TEST(CostTest, ANestCostsWhatARowOfItsLengthDoes)
{
    // Of as many groups, one holds the next or all hold nothing: what a pass does by the depth shows.
    const auto measure = [](const PageWriter& writer, const std::function<void(GroupObject&)>& pass, bool isNest) {
        const auto root = Kernel::MakeCounted<GroupObject>(writer.page);
        GroupObject* place = root.Get();
        for (int i = 0; i < 100'000; ++i) {
            const auto group = Kernel::MakeCounted<GroupObject>(writer.page);
            place->Add(group);
            if (isNest) place = group.Get();
        }
        const auto start = std::chrono::steady_clock::now();
        pass(*root);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    PageWriter writer(MakePagePdf(""));
    const std::pair<const char*, std::function<void(GroupObject&)>> rows[] = {
        {"boxes", [](GroupObject& root) { root.UpdateBBoxes(); }},
        {"search", [](GroupObject& root) { EXPECT_FALSE(root.HasText()); }},
        {"JSON", [&](GroupObject& root) { MakePageJson(writer.GetView(root)); }},
        {"SVG", [&](GroupObject& root) { MakeSvg(writer.GetView(root)); }},
    };
    for (const auto& [name, pass] : rows)
        EXPECT_LT(measure(writer, pass, true), 10 * measure(writer, pass, false) + 0.1) << name;
}

TEST(CostTest, LongNamesArePaidForWhereverTheyAreUsed)
{
    const std::pair<const char*, std::string> rows[] = {
        {"a layer", MakeNamePage("/OC /P BDC 0 0 1 1 re f EMC ", "/Properties << /P 5 0 R >>",
                                 "<< /Type /OCG /Name (" + c_longName + ") >>")},
        {"a font", MakeNamePage("BT /F 5 Tf (a) Tj ET ", "/Font << /F 5 0 R >>",
                                "<< /Type /Font /Subtype /Type1 /BaseFont /" + std::string(60'000, 'N') + " >>")},
    };
    for (const auto& [name, file] : rows) {
        PageWriter writer(file);
        ASSERT_TRUE(writer.root) << name;
        for (const bool isSvg : {false, true}) {
            // A name of these is twenty megabytes in all.
            const std::string text = writer.Write(isSvg, 4'000'000);
            EXPECT_TRUE(writer.problems.contains(Error::CutShort)) << name << isSvg;
            EXPECT_LT(text.size(), 4'100'000u) << name << isSvg;
            EXPECT_TRUE(isSvg ? IsXml(text) : Json::accept(text)) << name << isSvg;
        }
    }
}

TEST(CostTest, WhatIsToldOfADocumentIsPaidFor)
{
    const auto makeFile = [](const std::string& info) {
        PdfBuilder builder = MakePageBuilder("", {.objects = {"<< " + info + " >>"}});
        builder.trailer += " /Info 5 0 R";
        return builder.Build();
    };
    const TestDocument document(
        makeFile("/Title (" + std::string(20'000, '\1') + ") /Keywords (" + Repeat("a,", 2000) + ")"));
    const std::vector<FontInfo> fonts(500, FontInfo{c_longName, "Type1", false, false, {}});
    const auto measure = [&](long long units, bool isOfFonts) {
        const Budget::Scope scope(Kernel::MakeCounted<Budget>(units), Budget::Share::All, nullptr);
        LongText text;
        JsonWriter json(text);
        if (isOfFonts) {
            WriteFonts(json, fonts);
        } else {
            WriteDocument(json, *document.document);
        }
        EXPECT_TRUE(Json::accept(text.Join())) << units;
        EXPECT_EQ(Budget::IsSpent(), units < 1'000'000'000) << units;
        return text.Join().size();
    };
    EXPECT_GT(measure(1'000'000'000, false), 126'000u);
    EXPECT_LT(measure(100'000, false), 100'000u);
    EXPECT_LT(measure(5'000'000, true), 5'000'000u);

    // A title of several blocks, whose characters lie across their ends.
    const TestDocument titled(makeFile("/Title (a" + std::string(90'000, '\xE9') + ")"));
    LongText text;
    JsonWriter json(text);
    WriteDocument(json, *titled.document);
    EXPECT_EQ(Json::parse(text.Join())["title"], "a" + Repeat("\u00E9", 90'000));
}

using CommandCostTest = CommandRun;

TEST_F(CommandCostTest, TellsOfAPageThatIsNotWhole)
{
    // Each line copies its dashes; a page of such lines uses up what a small file may cost, and the next is small.
    PdfBuilder builder = MakePageBuilder("[" + Repeat("1 2 ", 20'000) + "] 0 d " + Repeat("1 1 m 2 3 l S ", 1000));
    const int content = builder.AddStream("0 0 9 9 re f");
    builder.Add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents " + std::to_string(content) + " 0 R >>");
    builder.Set(2, "<< /Type /Pages /Kids [3 0 R 6 0 R] /Count 2 >>");
    folder.Put("FILE", builder.Build());
    EXPECT_EQ(Run({"convert", "FILE", "-o", "OUT.json", "--quiet", "--jobs", "2"}), ExitPageFailed);
    EXPECT_EQ(problems, GetProblem("page 1: cut short (25)"));
    const Json pages = Json::parse(folder.Read("OUT.json"))["pages"];
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0]["errors"].back(), Json({{"kind", 25}, {"name", "cut short"}, {"count", 1}}));
    EXPECT_FALSE(pages[0]["root"]["children"].empty());
    EXPECT_EQ(pages[1]["errors"], Json::array());
    EXPECT_EQ(pages[1]["root"]["children"].size(), 1u);
}

TEST_F(CommandCostTest, DocumentsOfOneFileShareAnAccount)
{
    folder.Put("FILE", MakePagePdf(""));
    InputOptions input;
    input.file = folder.Get("FILE").string();
    const OpenedDocument first(input);
    const long long left = first.document->GetBudget()->GetLeft();
    const OpenedDocument second(input, first.document->GetBudget());
    EXPECT_EQ(second.status, ExitDone);
    EXPECT_EQ(second.document->GetBudget(), first.document->GetBudget());
    EXPECT_LT(first.document->GetBudget()->GetLeft(), left);
}

TEST(CostTest, NothingThatIsThrownGoesFurther)
{
    const std::pair<std::function<void()>, const char*> rows[] = {
        {[] { throw std::bad_alloc(); }, "quillet: a.pdf: out of memory\n"},
        {[] { std::string().resize(~0ull); }, "quillet: a.pdf: out of memory\n"},
        {[] { throw Error::Catalog; }, "quillet: a.pdf: catalog (8)\n"},
    };
    for (const auto& [work, line] : rows) {
        const Outcome outcome = Guarded(work);
        ASSERT_FALSE(outcome.IsDone());
        testing::internal::CaptureStderr();
        PrintFailure("a.pdf", outcome);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
    }
    EXPECT_TRUE(Guarded([] {}).IsDone());

    // A turn that fails is over: others wait for it.
    PageQueue queue(2, 2);
    EXPECT_FALSE(Guarded([&] { queue.InTurn(queue.TakePlace(), [] { throw std::bad_alloc(); }); }).IsDone());
    bool hasRun = false;
    queue.InTurn(queue.TakePlace(), [&] { hasRun = true; });
    EXPECT_TRUE(hasRun);
}

} // namespace
} // namespace Host::Test
