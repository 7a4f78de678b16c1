#include <Quillet/Budget.h>

#include "colour/ColourSpace.h"
#include "document/Resources.h"
#include "filters/MultiStream.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <gmock/gmock.h>

#include <thread>

namespace Quillet {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Share = Budget::Share;

constexpr int c_cutShort = Error::CutShort;

/// Entries of a dictionary that is long.
std::string MakeKeys(int count)
{
    std::string keys;
    for (int i = 0; i < count; ++i)
        keys += "/K" + std::to_string(i) + " 0 ";
    return keys;
}

/// Two pages with the contents of objects 4 and 6 and the same resources, with a function in object 7.
std::string MakeTwoPages(const std::string& first, const std::string& second, const std::string& resources)
{
    PdfBuilder builder = MakePageBuilder(first);
    builder.Set(2, "<< /Kids [3 0 R 5 0 R] /Count 2 /MediaBox [0 0 9 9] /Resources << " + resources + " >> >>");
    builder.Set(3, "<< /Type /Page /Contents 4 0 R >>");
    builder.Add("<< /Type /Page /Contents 6 0 R >>");
    builder.AddStream(second);
    builder.Add("<< /FunctionType 2 /Domain [0 1] /N 1 >>");
    return builder.Build();
}

Kernel::Counted<Budget> MakeBudget(long long units)
{
    return Kernel::MakeCounted<Budget>(units);
}

TEST(BudgetTest, IsSharedByScopesWithinEachOther)
{
    const auto account = MakeBudget(64'000);
    {
        const Budget::Scope page(account, Share::Page, nullptr);
        {
            const Budget::Scope builder(account, Share::Page, nullptr);
            EXPECT_TRUE(Budget::Spend(37'500));
            EXPECT_FALSE(Budget::Spend(1));
            EXPECT_TRUE(builder.WasCut());
        }
        // The page has its rest, less what the builder asked for.
        EXPECT_FALSE(page.WasCut());
        EXPECT_TRUE(Budget::Spend(20'000));
        {
            // What the document keeps for all pages is not cut by the share of one, nor paid by it.
            const Budget::Scope document(account, Share::All, nullptr);
            EXPECT_TRUE(Budget::Spend(3'000));
        }
        EXPECT_FALSE(Budget::IsSpent());
        EXPECT_FALSE(Budget::Spend(3'000));
        {
            const Budget::Reprieve reprieve;
            EXPECT_TRUE(Budget::Spend(1'000'000'000));
        }
        EXPECT_TRUE(Budget::IsSpent());
    }
    EXPECT_TRUE(Budget::Spend(1'000'000'000));
    EXPECT_TRUE(account->WasCut());
    // What was refused is there for others.
    EXPECT_EQ(account->GetLeft(), 1000);
    const Budget::Scope next(account, Share::Page, nullptr);
    EXPECT_FALSE(Budget::Spend(1000));
}

TEST(BudgetTest, IsSharedByThreads)
{
    const auto account = MakeBudget(8'000'000);
    const auto spend = [&account] {
        const Budget::Scope scope(account, Share::All, nullptr);
        while (Budget::Spend(10)) {
        }
    };
    std::thread other(spend);
    spend();
    other.join();
    EXPECT_EQ(account->GetLeft(), 0);
}

TEST(BudgetTest, RefusesWhatTheHostStopped)
{
    bool isAborted = false;
    const auto account = MakeBudget(1000);
    const Budget::Scope scope(account, Share::All, &isAborted);
    EXPECT_TRUE(Budget::Spend(1));
    isAborted = true;
    EXPECT_FALSE(Budget::Spend(1));
    EXPECT_TRUE(Budget::IsSpent());
    EXPECT_FALSE(scope.WasCut());
    EXPECT_FALSE(account->WasCut());
}

TEST(BudgetTest, GrowsWithTheFile)
{
    const long long small = Budget::ForFile(1000)->GetLeft();
    EXPECT_LT(small, Budget::ForFile(1'000'000)->GetLeft());
    EXPECT_LT(Budget::ForFile(1'000'000)->GetLeft(), 2 * small);
    EXPECT_GT(Budget::ForFile(50'000'000)->GetLeft(), 100 * small);
    EXPECT_GT(Budget::ForFile(~0ull)->GetLeft(), 0);
}

/// Pages on which something is done again and again that costs more than it looks.
TEST(BudgetTest, CutsPagesThatTakeTooLong)
{
    std::string ranges;
    for (int code = 0; code < 200; ++code)
        ranges += "<" + std::to_string(1000 + 2 * code) + "> <0061> endbfchar ";
    const std::string longName(60'000, 'N');
    std::vector<std::string> cmaps{PdfBuilder::MakeStream(ranges)};
    for (int i = 0; i < 60; ++i)
        cmaps.push_back(PdfBuilder::MakeStream("", "/UseCMap " + std::to_string(5 + i) + " 0 R"));
    cmaps.emplace_back("<< /Type /Font /Subtype /Type0 /BaseFont /X /Encoding 65 0 R /DescendantFonts [] >>");

    const std::tuple<const char*, std::string, PageParts> cases[] = {
        {"a long parameter dictionary",
         Repeat("/G gs ", 5000),
         {.resources = "/ExtGState << /G << " + MakeKeys(2000) + ">> >>"}},
        {"a long name for each layer",
         Repeat("/OC /P BDC 0 0 1 1 re f EMC ", 500),
         {.resources = "/Properties << /P 5 0 R >>", .objects = {"<< /Type /OCG /Name (" + longName + ") >>"}}},
        {"clips in clips", Repeat("0 0 9 9 re W n ", 5000), {}},
        {"saved states", Repeat("q ", 50'000), {}},
        {"long dashes", "[" + Repeat("1 ", 5000) + "] 0 d " + Repeat("0 0 m 9 9 l S ", 500), {}},
        {"paths that are thrown away", Repeat("0 0 9 9 re n ", 10'000), {}},
        {"colours", Repeat("1 0 0 rg ", 50'000), {}},
        {"text", "BT /F 9 Tf (" + std::string(50'000, 'a') + ") Tj ET", {}},
        {"operands", Repeat("1 ", 50'000), {}},
        {"maps that use maps", "BT /F 9 Tf (a) Tj ET", {.resources = "/Font << /F 66 0 R >>", .objects = cmaps}},
    };
    for (const auto& [name, content, parts] : cases) {
        TestDocument document(MakePagePdf(content, parts));
        ASSERT_TRUE(document.isOpen);
        document->SetBudget(MakeBudget(2'000'000));
        EXPECT_TRUE(document.Build()) << name;
        EXPECT_THAT(document.GetErrors(), Contains(c_cutShort)) << name;
    }
}

TEST(BudgetTest, LeavesTheNextPageWhole)
{
    // The pages share their resources, which the first one only begins to read.
    const std::string ink = "/C cs 1 scn 0 0 9 9 re f";
    TestDocument document(
        MakeTwoPages(Repeat("q ", 50'000) + ink, ink, "/ColorSpace << /C [/Separation /Ink /DeviceGray 7 0 R] >>"));
    document->SetBudget(MakeBudget(2'000'000));
    EXPECT_TRUE(document.Build(0));
    EXPECT_THAT(document.GetErrors(), ElementsAre(c_cutShort));
    ASSERT_TRUE(document.Build(1));
    EXPECT_EQ(document.Build(1)->children.size(), 1U);
    EXPECT_THAT(document.GetErrors(), ElementsAre(c_cutShort));
}

TEST(BudgetTest, LeavesNoEmptyColourSpaceBehind)
{
    // The first page has its end within the dictionary that every run looks the default spaces up in.
    const std::string gray = "0.5 g 0 0 9 9 re f";
    TestDocument document(MakeTwoPages(
        gray, gray, "/ColorSpace << " + MakeKeys(20'000) + "/DefaultGray [/Separation /Ink /DeviceGray 7 0 R] >>"));
    const auto isNamed = [&document](int page) {
        return static_cast<bool>(document->GetPage(page)->GetResources()->GetColourSpace("DefaultGray"));
    };
    document->SetBudget(MakeBudget(500'000));
    document.Build(0);
    EXPECT_THAT(document.GetErrors(), Contains(c_cutShort));
    document->SetBudget(nullptr);
    EXPECT_TRUE(isNamed(0));
    EXPECT_TRUE(isNamed(1));
}

TEST(BudgetTest, BuildsAgainWhatTheHostStopped)
{
    const PageParts parts{
        .resources = "/ColorSpace << /C [/Separation /Ink /DeviceGray << /FunctionType 2 /Domain [0 1] /N 1 >>] >>"};
    TestDocument document(MakePageBuilder("/C cs 1 scn 0 0 9 9 re f", parts).BuildCompressed());
    bool isAborted = true;
    document->SetAbortPointer(&isAborted);
    // A page that was not there yet cannot be had, and that is no fault.
    EXPECT_FALSE(document->GetPage(0));
    isAborted = false;
    const auto root = document.Build();
    ASSERT_TRUE(root);
    EXPECT_EQ(root->children.size(), 1U);
    EXPECT_THAT(document.GetErrors(), IsEmpty());
}

/// A file that costs too much to open does not open, and says why.
TEST(BudgetTest, CutsOpening)
{
    const std::pair<std::string, std::string> cases[] = {
        {"/OutputIntents [" + Repeat("<< /DestOutputProfile 5 0 R >> ", 500) + "]", std::string(5000, 'x')},
        {"/Junk [" + Repeat("<< /A [ 0 ] >> ", 100'000) + "]", ""},
        {"/Metadata 5 0 R", std::string(2'000'000, ' ')},
    };
    for (const auto& [catalog, data] : cases) {
        const std::string file =
            MakePagePdf("", {.objects = {PdfBuilder::MakeStream(data, "/N 3")}, .catalog = catalog});
        const auto document = Kernel::MakeCounted<PdfDocument>();
        const ErrorRecorder errors;
        document->SetErrorHandler(&errors);
        document->SetBudget(MakeBudget(1'000'000));
        EXPECT_FALSE(document->OpenMemory(file.data(), file.size()));
        EXPECT_THAT(errors.kinds, Contains(c_cutShort));
        document->SetBudget(nullptr);
        EXPECT_TRUE(document->OpenMemory(file.data(), file.size()));
    }
}

TEST(BudgetTest, CutsLists)
{
    std::string fonts;
    for (int i = 0; i < 100; ++i)
        fonts += "/F" + std::to_string(i) + " " + std::to_string(5 + i) + " 0 R ";
    const std::vector<std::string> objects(100, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>");
    PdfBuilder builder = MakePageBuilder("", {.resources = "/Font << " + fonts + " >>", .objects = objects});
    builder.Add("<< /Keywords (" + Repeat("a ", 20'000) + ") >>");
    builder.trailer += " /Info 105 0 R";
    TestDocument document(builder.Build());
    EXPECT_EQ(document->GetFontInfos().size(), 100U);
    EXPECT_EQ(document->GetKeywords().size(), 20'001U);
    EXPECT_THAT(document.GetErrors(), IsEmpty());

    document->SetFontMap(nullptr);
    document->SetBudget(MakeBudget(1'000'000));
    EXPECT_LT(document->GetFontInfos().size(), 100U);
    EXPECT_THAT(document.GetErrors(), ElementsAre(c_cutShort));
    document->SetBudget(MakeBudget(1'000'000));
    EXPECT_LT(document->GetKeywords().size(), 20'001U);
    EXPECT_THAT(document.GetErrors(), ElementsAre(c_cutShort, c_cutShort));
}

TEST(BudgetTest, JoinedStreamsAreOpenedWhenTheyAreReached)
{
    TestDocument document(MakePagePdf("0 0 1 1 re f"));
    const std::vector<Ref> refs(20'000, document.GetRef(4));
    const auto joined = MultiStream::Make(document.document.Get(), refs);
    std::vector<char> bytes;
    const Budget::Scope scope(MakeBudget(1'000'000), Share::All, nullptr);
    joined->ReadAll(bytes);
    EXPECT_TRUE(scope.WasCut());
    EXPECT_GT(bytes.size(), 100U);
    EXPECT_LT(bytes.size(), 20'000U);
}

} // namespace
} // namespace Quillet
