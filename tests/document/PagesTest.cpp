#include "document/DocumentState.h"
#include "document/Pages.h"

#include "document/Resources.h"
#include "document/SequentialSource.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/Page.h>

#include <gmock/gmock.h>

namespace Quillet {
namespace {

using Rect = Kernel::RectT<double>;
using testing::Contains;

/// A document whose page tree root is object 2.
std::string MakeTree(const std::vector<std::string>& nodes)
{
    PdfBuilder builder;
    builder.Add("<< /Type /Catalog /Pages 2 0 R >>");
    for (const std::string& node : nodes)
        builder.Add(node);
    return builder.Build();
}

TEST(PagesTest, InheritsFromTheNearestNode)
{
    TestDocument document(MakeTree(
        {"<< /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 10 20] /CropBox [1 1 9 9] /Rotate 90 "
         "/Resources << /Font << >> >> >>",
         "<< /Type /Page >>", "<< /Type /Page /MediaBox [5 5 0 0] /Rotate 0 /TrimBox [2 2 3 3] /Resources << >> >>"}));
    const auto first = document->GetPage(0);
    EXPECT_EQ(first->GetMediaBox(), (Rect{0, 0, 10, 20}));
    EXPECT_EQ(first->GetTrimBox(), (Rect{1, 1, 9, 9}));
    EXPECT_EQ(first->GetRotate(), 90);
    EXPECT_EQ(first->GetResources().Get(), document->GetState().pages->GetResources().Get());

    const auto second = document->GetPage(1);
    EXPECT_EQ(second->GetMediaBox(), (Rect{0, 0, 5, 5}));
    EXPECT_EQ(second->GetCropBox(), (Rect{1, 1, 9, 9}));
    EXPECT_EQ(second->GetArtBox(), (Rect{1, 1, 9, 9}));
    EXPECT_EQ(second->GetTrimBox(), (Rect{2, 2, 3, 3}));
    EXPECT_EQ(second->GetRotate(), 0);
    EXPECT_NE(second->GetResources().Get(), document->GetState().pages->GetResources().Get());
    EXPECT_EQ(document->GetPageIndex(second), 1);

    EXPECT_TRUE(second->GetClipBox().IsEmpty());
    document->SetPageClipArea(PageClipTrim);
    EXPECT_EQ(second->GetClipBox(), (Rect{2, 2, 3, 3}));
    document->SetPageClipArea(static_cast<PageClipArea>(6));
    EXPECT_TRUE(second->GetClipBox().IsEmpty());
}

TEST(PagesTest, PagesThatAreHeldKeepWhatTheyInherit)
{
    TestDocument document(
        MakeTree({"<< /Kids [3 0 R] /Count 1 /Rotate 90 >>",
                  "<< /Kids [4 0 R] /Count 1 /MediaBox [0 0 10 20] /Resources << >> >>", "<< /Type /Page >>"}));
    const auto page = document->GetPage(0);
    const auto expectInherited = [&page] {
        EXPECT_EQ(page->GetMediaBox(), (Rect{0, 0, 10, 20}));
        EXPECT_EQ(page->GetRotate(), 90);
        EXPECT_TRUE(page->GetResources());
    };
    document->SetFontMap(nullptr);
    expectInherited();
    document->Close();
    expectInherited();
}

TEST(PagesTest, NormalisesRotation)
{
    const std::pair<const char*, int> cases[] = {{"450", 90},   {"-90", 270}, {"-360", 360}, {"-1", 0},
                                                 {"-450", 270}, {"720", 0},   {"45", 45},    {"-2147483648", 232}};
    for (const auto& [value, expected] : cases) {
        TestDocument document(MakePagePdf("", {.entries = "/Rotate " + std::string(value)}));
        EXPECT_EQ(document->GetPage(0)->GetRotate(), expected) << value;
    }
    EXPECT_EQ(PageBase::ApplyRotate({1, 2, 3, 4}, 270), (Rect{2, 1, 4, 3}));
    EXPECT_EQ(PageBase::ApplyRotate({1, 2, 3, 4}, 180), (Rect{1, 2, 3, 4}));
}

TEST(PagesTest, FaultsAreThrown)
{
    const std::pair<std::vector<std::string>, int> cases[] = {
        {{"<< /Kids [3 0 R] /Count 5 >>", "<< /Type /Page >>"}, 3},            // fewer leaves than claimed
        {{"<< /Kids [3 0 R] /Count 1 >>", "<< /Count 1 >>"}, 0},               // a node without kids
        {{"<< /Kids [2 0 R 2 0 R] /Count 4 >>"}, 2},                           // a node in itself
        {{"<< /Kids [3 0 R] /Count 4 >>", "<< /Kids [2 0 R] /Count 4 >>"}, 1}, // two in each other
        {{"<< /Kids [77 0 R] /Count 1 >>"}, 0},                                // a kid that is not there
    };
    for (const auto& [nodes, index] : cases) {
        TestDocument document(MakeTree(nodes));
        ASSERT_TRUE(document.isOpen);
        EXPECT_THROW(document->GetPage(index), Error::Type);
        EXPECT_THAT(document.GetErrors(), Contains(Error::PageTree));
    }
    const std::string one = "<< /Kids [3 0 R] /Count 1 >>";
    EXPECT_THROW(TestDocument(MakeTree({one, "<< /Type /Page >>"}))->GetPage(0)->GetMediaBox(), Error::Type);
    EXPECT_THROW(TestDocument(MakeTree({one, "<< /Type /Font >>"}))->GetPage(0)->GetContents(), Error::Type);
    EXPECT_FALSE(TestDocument(MakeTree({"<< /Kids [] /Count -1 >>"})).isOpen);
}

TEST(PagesTest, PagesBehindABadKidAreFound)
{
    TestDocument missing(MakeTree({"<< /Kids [77 0 R 3 0 R] /Count 1 >>", "<< /Type /Page /MediaBox [0 0 1 1] >>"}));
    EXPECT_EQ(missing->GetPage(0)->GetMediaBox(), (Rect{0, 0, 1, 1}));
    TestDocument document(
        MakeTree({"<< /Kids [3 0 R 4 0 R 5 0 R] /Count 3 >>", "<< /Kids [6 0 R] /Count 1 /Rotate (left) >>",
                  "<< /Rotate (right) >>", "<< /Type /Page /MediaBox [0 0 1 1] >>", "<< /Type /Page >>"}));
    EXPECT_EQ(document->GetPage(2)->GetMediaBox(), (Rect{0, 0, 1, 1}));
    for (const int damaged : {0, 1, 3})
        EXPECT_THROW(document->GetPage(damaged), Error::Type) << damaged;
    EXPECT_EQ(document->GetPage(2)->firstPage, 2);
}

TEST(PagesTest, JoinsContentsWithOneBlank)
{
    const std::pair<std::string, std::string> cases[] = {{"[5 0 R 4 0 R 6 0 R]", "ab  cd"},
                                                         {"5 0 R", "ab"},
                                                         {"[6 0 R]", "cd"},
                                                         {"[]", ""},
                                                         {"7 0 R", "cd ab"},
                                                         {"null", ""}};
    PdfBuilder builder =
        MakePageBuilder("", {.objects = {PdfBuilder::MakeStream("ab"), PdfBuilder::MakeStream("cd"), "[6 0 R 5 0 R]"}});
    for (const auto& [contents, expected] : cases) {
        builder.Set(3, "<< /Type /Page /MediaBox [0 0 1 1] /Contents " + contents + " >>");
        TestDocument document(builder.Build());
        std::vector<char> bytes;
        document->GetPage(0)->GetContentsStream()->ReadAll(bytes);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), expected) << contents;
    }
}

TEST(PagesTest, LongFlatTreesStayQuick)
{
    std::vector<std::string> nodes(1);
    std::string kids;
    for (int i = 0; i < 20'000; ++i) {
        nodes.push_back("<< /Type /Page /MediaBox [0 0 " + std::to_string(i) + " 1] >>");
        kids += std::to_string(3 + i) + " 0 R ";
    }
    nodes[0] = "<< /Kids [" + kids + "] /Count 20000 >>";
    TestDocument document(MakeTree(nodes));
    for (int i = 19'999; i >= 0; --i)
        ASSERT_EQ(document->GetPage(i)->GetMediaBox().right, i);
}

} // namespace
} // namespace Quillet
