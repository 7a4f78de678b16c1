#include "document/DocumentState.h"
#include "document/OCProperties.h"

#include "TreeText.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/LayerObject.h>
#include <Renderer/ColourRGB.h>

#include <gmock/gmock.h>

namespace Quillet::Test {
namespace {

using testing::IsEmpty;

/// A page with the groups A (object 5) and B (object 6), a membership dictionary M and a nameless group N.
PageParts MakeParts()
{
    const auto makeForm = [](const char* content) {
        return PdfBuilder::MakeStream(ExpandContent(content), "/Subtype /Form /BBox [0 0 300 100]");
    };
    return {.resources = "/Properties << /A 5 0 R /B 6 0 R /M 7 0 R /N << /Type /OCG >> /Gone 99 0 R >> "
                         "/XObject << /Open 8 0 R /Inner 9 0 R /Surplus 10 0 R /Close 11 0 R >>",
            .entries = c_pageEntries,
            .objects = {"<< /Type /OCG /Name (A) >>", "<< /Type /OCG /Name (B) >>", "<< /Type /OCMD /OCGs [5 0 R] >>",
                        makeForm("/OC /A BDC"), makeForm("<b>"), makeForm("<b> Q EMC"), makeForm("<a> EMC <b>")}};
}

TEST(MarkedContentTest, CutsLayersOutOfTheTree)
{
    const std::pair<const char*, const char*> rows[] = {
        {"/OC /A BDC <a> <b> EMC", "([A: a b])"},
        {"<a> /OC /A BDC <b> <c> EMC <d>", "(a [A: b c] d)"},
        {"<a> q /OC /A BDC <b> <c> EMC Q <d>", "(a [A: b c] d)"},
        // A clip goes whole, with what it clips.
        {"<a> /OC /A BDC q <clip> <b> Q EMC <c>", "(a [A: {b}] c)"},
        {"<a> q <clip> /OC /A BDC <b> Q <c> EMC <d>", "(a [A: {b} c] d)"},
        {"<a> q <clip> <b> /OC /A BDC <c> EMC <d> Q <e>", "(a {b [A: c] d} e)"},
        // The clip was closed before anything came: it holds only what is older.
        {"<a> q <clip> <b> /OC /A BDC Q <c> EMC", "(a {b} [A: c])"},
        // Taking the rest of the clip and what follows would need two places.
        {"<a> q <clip> <b> /OC /A BDC <c> Q <d> EMC", "(a {b c} d)"},
        {"<a> /OC /A BDC EMC <b>", "(a [A: ] b)"},
        {"q <clip> /OC /A BDC EMC <b> Q", "({[A: ] b})"},
        {"/OC /A BDC <a> /OC /B BDC <b> EMC <c> EMC <d>", "([A: a [B: b] c] d)"},
        {"/OC /A BDC <a> /Span BMC <b> EMC <c> EMC <d>", "([A: a b c] d)"},
        {"/OC /A BDC <a> EMC /OC /A BDC <b> EMC", "([A: a] [A: b])"},
        // Left open, or opened in a form and closed outside it.
        {"/OC /A BDC <a>", "(a)"},
        {"<a> /Open Do <b> EMC <c>", "(a F({}) [A: b] c)"},
        {"<a> /OC /A BDC /Inner Do EMC", "(a [A: F({b})])"},
        // A layer that takes the clip it stands in leaves one like it to what follows, whatever state that is in.
        {"<a> q <clip> /OC /A BDC <b> EMC <c> Q <d>", "(a [A: {b}] {c} d)"},
        {"q <clip> /OC /A BDC <b> EMC <c> /OC /B BDC <d> EMC <e> Q", "([A: {b}] {c [B: d] e})"},
        {"q <clip> /OC /A BDC <b> EMC /OC /B BDC <d> EMC <e> Q", "([A: {b}] [B: {d}] {e})"},
        {"q <clip> /OC /A BDC <clip> <b> EMC <c> Q", "([A: {{b}}] {{c}})"},
        {"/OC /A BDC q <clip> <b> EMC <c> Q <d>", "([A: {b}] {c} d)"},
        {"q <clip> q /OC /A BDC <b> q <clip> <c> EMC <d> Q <e> Q <f> Q <g>", "([A: {b {c}}] {{d} e f} g)"},
        {"q <clip> /OC /A BDC /Close Do <b> Q <c>", "([A: {F({a})}] {F({b}) b} c)"},
        // Nothing that makes a layer; all of it in balance.
        {"/OC /A BDC /OC /M BDC <a> EMC /OC /N BDC <b> EMC /OC /Gone BDC <c> EMC /OC /No BDC <d> EMC EMC",
         "([A: a b c d])"},
        // A form that leaves its own state closes the layer in its caller's; what follows is not lost.
        {"<a> /OC /A BDC /Surplus Do <c> <d>", "(a [A: F({b})] F() c d)"},
        {"/OC /A BDC /Surplus Do <clip> <c>", "([A: F({b})] F() {c})"},
        {"/OC /A BDC /Other /B BDC <a> EMC /OC << /Type /OCG /Name (X) >> BDC <b> EMC EMC", "([A: a b])"},
    };
    for (const auto& [content, tree] : rows)
        EXPECT_EQ(PrintTree(*TestDocument(MakePagePdf(ExpandContent(content), MakeParts())).Build()), tree) << content;
}

TEST(MarkedContentTest, WhatStandsBesideALayerIsPaintedAsInIt)
{
    const PageParts parts{
        .resources =
            "/Properties << /A 5 0 R >> /XObject << /T 6 0 R >> /ExtGState << /G << /ca .5 /BM /Multiply >> >>",
        .objects = {"<< /Type /OCG /Name (A) >>",
                    PdfBuilder::MakeStream("1 0 0 1 5 5 cm 0 0 9 9 re W* n 0 0 5 5 re f EMC 1 1 5 5 re f",
                                           "/Subtype /Form /BBox [0 0 50 50] /Group << /S /Transparency /I true >>")}};
    TestDocument document(MakePagePdf("/OC /A BDC /G gs /T Do", parts));
    const auto root = document.Build();
    ASSERT_EQ(root->children.size(), 2);
    // The group, the clip to the form's box, and that of the content.
    const GroupObject* taken = root->children[0]->AsGroup()->children.at(0)->AsGroup();
    const GroupObject* twin = root->children[1]->AsGroup();
    for (int depth = 0; depth < 3; ++depth) {
        ASSERT_TRUE(taken && twin) << depth;
        EXPECT_NE(taken, twin);
        EXPECT_EQ(twin->clipPath, taken->clipPath) << depth;
        EXPECT_EQ(twin->clipWinding, taken->clipWinding) << depth;
        EXPECT_EQ(twin->opacity, taken->opacity) << depth;
        EXPECT_EQ(twin->opacity, depth == 0 ? 0.5 : 1.0);
        EXPECT_EQ(twin->blendMode, taken->blendMode) << depth;
        EXPECT_EQ(twin->isIsolated, taken->isIsolated) << depth;
        EXPECT_EQ(twin->isXObject, taken->isXObject) << depth;
        ASSERT_EQ(twin->children.size(), 1) << depth;
        taken = taken->children[0]->AsGroup();
        twin = twin->children[0]->AsGroup();
    }
}

TEST(MarkedContentTest, ReportsOnlyBadCalls)
{
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"EMC EMC <a>", {}},
        {"BT /OC /A BDC EMC ET", {}},
        {"/OC << /Name (X) >> BDC EMC /Foo /Bar BDC EMC", {}},
        {"1 EMC", {Error::General}},
        {"/OC BDC EMC", {Error::General}},
        {"1 /A BDC EMC", {Error::General}},
        {"0 0 m /OC /A BDC EMC n", {Error::General, Error::General}},
    };
    for (const auto& [content, errors] : rows) {
        TestDocument document(MakePagePdf(ExpandContent(content), MakeParts()));
        ASSERT_TRUE(document.Build()) << content;
        EXPECT_EQ(document.GetErrors(), errors) << content;
    }
}

Kernel::Counted<LayerObject> BuildLayer(const std::string& tag, const std::string& properties,
                                        const std::string& catalog = "")
{
    TestDocument document(MakePagePdf(
        tag + " /A BDC EMC",
        {.resources = "/Properties << /A 5 0 R >>", .objects = {"<< " + properties + " >>"}, .catalog = catalog}));
    const auto root = document.Build();
    return root->children.empty() ? nullptr : Kernel::DynamicCast<LayerObject>(root->children.front());
}

/// "v", "p" and "e": visible, printable, editable.
std::string GetFlags(const LayerObject& layer)
{
    return std::string(layer.isVisible ? "v" : "") + (layer.isPrintable ? "p" : "") + (layer.isEditable ? "e" : "");
}

TEST(MarkedContentTest, TakesFlagsFromUsageAndConfiguration)
{
    const struct
    {
        std::string usage;
        std::string config;
        const char* flags;
    } rows[] = {
        {"", "", "vpe"},
        {"/View << /ViewState /oFf >>", "", "pe"},
        {"/View << /ViewState /OFFICE >> /Print << /PrintState /OFF >>", "", "ve"},
        {"", "/OFF [6 0 R 5 0 R]", "pe"},
        {"", "/OFF [5 0 R] /ON [5 0 R]", "vpe"},
        {"", "/BaseState /OFF", "pe"},
        {"", "/BaseState /OFF /ON [5 0 R] /Locked [5 0 R]", "vp"},
        {"", "/BaseState /Unchanged /Locked 5 0 R", "vp"},
        // The configuration does not show what usage hides.
        {"/View << /ViewState /OFF >>", "/ON [5 0 R]", "pe"},
    };
    for (const auto& row : rows) {
        const std::string usage = row.usage.empty() ? "" : " /Usage << " + row.usage + " >>";
        const auto layer =
            BuildLayer("/OC", "/Type /OCG /Name (A)" + usage, "/OCProperties << /D << " + row.config + " >> >>");
        ASSERT_TRUE(layer) << row.usage << row.config;
        EXPECT_EQ(GetFlags(*layer), row.flags) << row.usage << row.config;
    }
}

TEST(MarkedContentTest, ReadsPrivateLayers)
{
    const auto layer =
        BuildLayer("/Layer", "/Title (Roads) /Visible false /Printed false /Editable false /Color [65535 0 13107]");
    ASSERT_TRUE(layer);
    EXPECT_EQ(layer->name, "Roads");
    EXPECT_EQ(GetFlags(*layer), "");
    EXPECT_EQ(layer->colour, Renderer::ColourRGB::Create(1.0f, 0.0f, 0.2f, 1.0f, ""));

    const auto plain = BuildLayer("/Layer", "/Title (Roads) /Color [1 2]");
    ASSERT_TRUE(plain);
    EXPECT_EQ(GetFlags(*plain), "vpe");
    EXPECT_FALSE(plain->colour);

    EXPECT_FALSE(BuildLayer("/Layer", "/Name (Roads)"));
}

TEST(OCPropertiesTest, WithoutAConfigurationHidesNothing)
{
    TestDocument document(MakePagePdf("", {.catalog = "/OCProperties << /OCGs [5 0 R] >>"}));
    ASSERT_TRUE(document->GetState().ocProperties);
    EXPECT_FALSE(document->GetState().ocProperties->IsHidden(document.GetRef(5)));
    EXPECT_FALSE(OCProperties(Ref()).IsLocked(document.GetRef(5)));
    EXPECT_THAT(document.GetErrors(), IsEmpty());
}

TEST(OCPropertiesTest, KeepsItsAnswersApart)
{
    TestDocument document(
        MakePagePdf("", {.objects = {"<< >>", "<< >>", "<< >>"},
                         .catalog = "/OCProperties << /D << /OFF [5 0 R 6 0 R] /Locked [6 0 R] >> >>"}));
    const OCProperties& properties = *document->GetState().ocProperties;
    for (const int number : {5, 6, 7, 5, 6, 7}) {
        EXPECT_EQ(properties.IsHidden(document.GetRef(number)), number != 7);
        EXPECT_EQ(properties.IsLocked(document.GetRef(number)), number == 6);
    }
}

} // namespace
} // namespace Quillet::Test
