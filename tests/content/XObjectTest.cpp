#include "content/TransparencyXObject.h"

#include "TreeText.h"
#include "colour/ColourSpace.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"
#include "support/TestDocument.h"

#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include <gmock/gmock.h>

namespace Quillet::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string MakeForm(const std::string& content, const std::string& entries = "")
{
    return PdfBuilder::MakeStream(ExpandContent(content), "/Subtype /Form /BBox [0 0 300 100] " + entries);
}

/// The objects from number 5 on are the forms /X5, /X6 and so on of the page.
std::string MakeFile(const std::string& content, const std::vector<std::string>& objects,
                     const std::string& resources = "")
{
    std::string names;
    for (std::size_t i = 5; i < 5 + objects.size(); ++i)
        names += "/X" + std::to_string(i) + " " + std::to_string(i) + " 0 R ";
    return MakePagePdf(
        ExpandContent(content),
        {.resources = resources + "/XObject << " + names + ">>", .entries = c_pageEntries, .objects = objects});
}

TEST(XObjectTest, DrawsFormsIntoGroups)
{
    constexpr int c_fill = Error::UnimplementedFill;
    constexpr int c_general = Error::General;
    const std::string half(4000, ' ');
    const struct
    {
        std::string content;
        std::vector<std::string> objects;
        const char* tree;
        std::vector<int> errors = {};
    } rows[] = {
        {"<a> /X5 Do <c>", {MakeForm("<b>")}, "(a F({b}) c)"},
        {"<a> /X5 Do <c>", {MakeForm("")}, "(a F({}) c)"},
        // States that the form leaves open, or closes too often: that ends its own clip and nothing of the caller's.
        {"q 1 0 0 1 10 0 cm /X5 Do <a> Q <a>", {MakeForm("Q Q Q <b>")}, "(F({} c) b a)"},
        {"q 1 0 0 1 10 0 cm /X5 Do <a> Q <a>", {MakeForm("q q 1 0 0 1 10 0 cm q <clip> <b>")}, "(F({{d}}) b a)"},
        // A path, a text object or a clip left open inside ends with the form.
        {"/X5 Do <a>", {MakeForm("BT")}, "(F({}) a)"},
        {"/X5 Do <a>", {MakeForm("Q BT /X5 Do")}, "(F({}) a)", {c_general, c_fill}},
        // Forms short and long, each time alike.
        {"/X5 Do /X5 Do /X5 Do", {MakeForm("<a> <b>")}, "(F({a b}) F({a b}) F({a b}))"},
        {"/X5 Do /X5 Do /X5 Do", {MakeForm("<a> " + half + "<b>")}, "(F({a b}) F({a b}) F({a b}))"},
        {"/X5 Do /X5 Do /X5 Do", {MakeForm(half + "<a> " + half + half + "<b>")}, "(F({a b}) F({a b}) F({a b}))"},
        // Forms that draw themselves, or each other.
        {"/X5 Do <z>", {MakeForm("<a> /X5 Do <b>")}, "(F({a b}) z)", {c_fill}},
        {"/X5 Do <z>", {MakeForm("<a> /X6 Do <b>"), MakeForm("<c> /X5 Do <d>")}, "(F({a F({c d}) b}) z)", {c_fill}},
        {"/X5 Do <z>", {MakeForm("<a> /X5 Do <b>", "/Group << >>")}, "(F({a b}) z)", {c_fill}},
        // What cannot be drawn.
        {"/X5 Do <a>", {"<< >>"}, "(a)", {c_fill}},
        {"/X5 Do <a>", {"<< /Subtype /Other >>"}, "(a)", {c_fill}},
        {"/X5 Do <a>", {"(no dictionary)"}, "(a)", {c_general, c_fill}},
        {"/X5 Do /Gone Do <a>", {PdfBuilder::MakeStream("", "/Subtype /PS")}, "(a)", {c_fill, c_fill}},
        {"Do /X5 1 Do", {MakeForm("<a>")}, "(F({a}))", {c_general, c_general, c_fill, c_general}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content + " | " + row.objects[0]);
        TestDocument document(MakeFile(row.content, row.objects));
        const auto root = document.Build();
        ASSERT_TRUE(root);
        EXPECT_EQ(PrintTree(*root), row.tree);
        EXPECT_EQ(document.GetErrors(), row.errors);
    }
}

TEST(XObjectTest, PlacesFormsByMatrixAndBox)
{
    const struct
    {
        const char* entries;
        Kernel::RectT<double> clip;
        const char* tree;
        std::vector<int> errors;
    } rows[] = {
        {"/BBox [0 0 50 60]", {0, 40, 50, 100}, "(F({a}))", {}},
        {"/BBox [50 60 0 0] /Matrix [1 0 0 1 20 10]", {20, 30, 70, 90}, "(F({c}))", {}},
        {"/BBox [0 0 50 60] /Matrix 6 0 R", {30, 40, 80, 100}, "(F({d}))", {}},
        {"/BBox [0 0 50 60] /Matrix [1 0 0 1 20]", {20, 40, 70, 100}, "(F({c}))", {Error::General}},
        {"/BBox [0 0 50 60] /Matrix [1 0 0 1 20 0 7 8]", {20, 40, 70, 100}, "(F({c}))", {Error::General}},
        {"/BBox [0 0 50 60] /Matrix /None", {0, 40, 50, 100}, "(F({a}))", {}},
        {"", {0, -900, 1000, 100}, "(F({a}))", {Error::General}},
    };
    for (const auto& c : rows) {
        SCOPED_TRACE(c.entries);
        const std::string form =
            PdfBuilder::MakeStream(ExpandContent("<a>"), std::string("/Subtype /Form ") + c.entries);
        TestDocument document(MakeFile("/X5 Do", {form, "[1 0 0 1 30 0]"}));
        const auto root = document.Build();
        ASSERT_EQ(PrintTree(*root), c.tree);
        const GroupObject& clipGroup = *root->children[0]->AsGroup()->children[0]->AsGroup();
        EXPECT_EQ(clipGroup.clipPath->GetApproxBBox(), c.clip);
        EXPECT_EQ(document.GetErrors(), c.errors);
    }
}

TEST(XObjectTest, ComposesTransparencyGroupsAsOne)
{
    const std::string resources = "/ExtGState << /G << /ca 0.5 /CA 0.25 /BM /Multiply >> >> ";
    TestDocument document(
        MakeFile("/G gs /X5 Do <a>", {MakeForm("<b>", "/Group << /S /Transparency /I true >>")}, resources));
    const auto root = document.Build();
    ASSERT_EQ(PrintTree(*root), "(F({b}) a)");
    const GroupObject& group = *root->children[0]->AsGroup();
    EXPECT_EQ(group.opacity, 0.5);
    EXPECT_EQ(group.blendMode, Renderer::FillBlendMode::Multiply);
    EXPECT_TRUE(group.isIsolated);
    EXPECT_FALSE(group.isKnockout);
    // The group carries alpha and blend mode, so its content starts without; what follows has them still.
    const auto& inner = dynamic_cast<const PathObject&>(*group.children[0]->AsGroup()->children[0]);
    EXPECT_EQ(inner.blendMode, Renderer::FillBlendMode::Normal);
    EXPECT_EQ(inner.GetBrushDescriptor()->fill->GetColour()->GetAlpha(), 1);
    const auto& outer = dynamic_cast<const PathObject&>(*root->children[1]);
    EXPECT_EQ(outer.blendMode, Renderer::FillBlendMode::Multiply);
    EXPECT_EQ(outer.GetBrushDescriptor()->fill->GetColour()->GetAlpha(), 0.5f);
    EXPECT_THAT(document.GetErrors(), IsEmpty());
}

TEST(XObjectTest, ReportsKnockoutAndKeepsIt)
{
    TestDocument document(MakeFile("/X5 Do /X5 Do", {MakeForm("<b>", "/Group << /K true /CS /DeviceCMYK >>")}));
    const auto root = document.Build();
    ASSERT_EQ(PrintTree(*root), "(F({b}) F({b}))");
    EXPECT_TRUE(root->children[1]->AsGroup()->isKnockout);
    EXPECT_THAT(document.GetErrors(), ElementsAre(Error::UnimplementedTransparency));

    const auto form = document.GetRef(5).GetCache<TransparencyXObject>();
    ASSERT_TRUE(form);
    ASSERT_TRUE(form->groupColourSpace);
    EXPECT_EQ(PrintTree(*form->MakeObjects(document->GetPage(0))), "(F({b}))");
}

TEST(XObjectTest, InheritsResourcesOfTheFirstUse)
{
    // Both outer forms draw /X7, which has no resources and draws /Y: it finds the /Y of whoever drew it first.
    const std::vector<std::string> objects = {
        MakeForm("/X7 Do", "/Resources << /XObject << /X7 7 0 R /Y 8 0 R >> >>"),
        MakeForm("/X7 Do", "/Resources << /XObject << /X7 7 0 R /Y 9 0 R >> >>"),
        MakeForm("/Y Do"),
        MakeForm("<a>"),
        MakeForm("<b>"),
    };
    TestDocument document(MakeFile("/X5 Do /X6 Do", objects));
    EXPECT_EQ(PrintTree(*document.Build()), "(F({F({F({a})})}) F({F({F({a})})}))");
    TestDocument reversed(MakeFile("/X6 Do /X5 Do", objects));
    EXPECT_EQ(PrintTree(*reversed.Build()), "(F({F({F({b})})}) F({F({F({b})})}))");
}

TEST(XObjectTest, EndsFormsNestedBeyondTheCap)
{
    std::vector<std::string> objects;
    for (int i = 0; i < Limits::c_maxDescent + 50; ++i)
        objects.push_back(MakeForm("/X" + std::to_string(i + 6) + " Do"));
    TestDocument document(MakeFile("/X5 Do <a>", objects));
    const auto root = document.Build();
    ASSERT_TRUE(root);
    ASSERT_EQ(root->children.size(), 2u);
    int depth = 0;
    for (const GroupObject* group = root->children[0]->AsGroup(); group; ++depth)
        group = group->children.empty() ? nullptr : group->children[0]->AsGroup();
    EXPECT_GT(depth, 100);
    EXPECT_EQ(document.GetErrors().size(), 1u);
}

TEST(XObjectTest, StopsFormsThatMultiply)
{
    // Ten levels of ten: ten thousand million forms in theory.
    std::vector<std::string> objects;
    for (int level = 0; level < 10; ++level)
        objects.push_back(MakeForm(Repeat("/X" + std::to_string(level + 6) + " Do ", 10)));
    objects.push_back(MakeForm("<a>"));
    TestDocument document(MakeFile("/X5 Do", objects));
    // Small, so that the test is quick.
    document->SetBudget(Kernel::MakeCounted<Budget>(1'000'000));
    EXPECT_TRUE(document.Build());
    EXPECT_THAT(document.GetErrors(), ElementsAre(static_cast<int>(Error::CutShort)));
}

TEST(ResourcesTest, LooksThingsUpByName)
{
    TestDocument document(MakePagePdf(
        "", {.resources = "/ExtGState << /G 5 0 R >> /Properties << /P << /K 7 >> >> /XObject << /B 5 0 R /A 5 0 R >> "
                          "/ColorSpace << /Bad [/DeviceRGB /Junk] >>",
             .objects = {"<< >>"}}));
    const auto resources = document->GetPage(0)->GetResources();
    ASSERT_TRUE(resources);
    EXPECT_EQ(resources->GetExtGStateRef("G"), document.GetRef(5));
    EXPECT_TRUE(resources->GetExtGStateRef("H").IsNull());
    EXPECT_FALSE(resources->GetProperties("Q"));
    EXPECT_THAT(resources->GetXObjectKeys(), ElementsAre("A", "B"));
    EXPECT_EQ(resources->GetXObjects(), resources->GetXObjects());
    // What cannot be built is reported once, not at each use.
    EXPECT_FALSE(resources->GetColourSpace("Bad"));
    EXPECT_FALSE(resources->GetColourSpace("Bad"));
    EXPECT_THAT(document.GetErrors(), ElementsAre(Error::General));

    const Resources none{Ref()};
    EXPECT_FALSE(none.GetColourSpace("A"));
    EXPECT_FALSE(none.GetXObject("A", XObjectType::Do));
    EXPECT_FALSE(none.GetProperties("A"));
}

} // namespace
} // namespace Quillet::Test
