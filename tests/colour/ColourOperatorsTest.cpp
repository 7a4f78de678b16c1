#include "content/ColourOperators.h"

#include "colour/TestProfile.h"

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/PathObject.h>
#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourRGB.h>

#include <gmock/gmock.h>

#include <sstream>

namespace Quillet {
namespace {

/// The colour of a paint as its model and components; "none" for an empty one.
std::string Print(const Renderer::FillDescriptor& descriptor)
{
    if (descriptor.IsEmpty()) return "none";
    const auto colour = descriptor.fill->GetColour();
    std::ostringstream out;
    if (const auto* gray = dynamic_cast<const Renderer::ColourGrayscale*>(colour.Get())) {
        out << "gray " << gray->pixel.intensity;
    } else if (const auto* rgb = dynamic_cast<const Renderer::ColourRGB*>(colour.Get())) {
        out << "rgb " << rgb->pixel.red << " " << rgb->pixel.green << " " << rgb->pixel.blue;
    } else if (const auto* cmyk = dynamic_cast<const Renderer::ColourCMYK*>(colour.Get())) {
        out << "cmyk " << cmyk->pixel.cyan << " " << cmyk->pixel.magenta << " " << cmyk->pixel.yellow << " "
            << cmyk->pixel.black;
    }
    return out.str();
}

struct Case
{
    const char* content;
    const char* fill;
    const char* stroke;
    std::vector<int> errors = {};
};

void CheckCase(const Case& c, const std::string& spaces)
{
    SCOPED_TRACE(c.content);
    PageParts parts;
    parts.resources = "/ColorSpace << " + spaces + " >>";
    parts.objects = {PdfBuilder::MakeStream(MakeTestProfile(), "/N 3 /Alternate /DeviceRGB"), "/DeviceCMYK"};
    TestDocument document(MakePagePdf(std::string(c.content) + " 0 0 10 10 re B", parts));
    const auto root = document.Build();
    ASSERT_TRUE(root);
    ASSERT_EQ(root->children.size(), 1u);
    const auto& path = dynamic_cast<const PathObject&>(*root->children[0]);
    EXPECT_EQ(Print(*path.GetBrushDescriptor()), c.fill);
    EXPECT_EQ(Print(*path.GetPenDescriptor()), c.stroke);
    EXPECT_EQ(document.GetErrors(), c.errors);
}

TEST(ColourOperatorsTest, SetColours)
{
    const int general = Error::General;
    const int unimplementedFill = Error::UnimplementedFill;
    const Case cases[] = {
        {"", "gray 0", "gray 0"},
        {"0.5 g 0.25 G", "gray 0.5", "gray 0.25"},
        {"1 0.5 0 rg 0 0.5 1 RG", "rgb 1 0.5 0", "rgb 0 0.5 1"},
        {"0 0.25 0.5 1 k 1 0 0 0 K", "cmyk 0 0.25 0.5 1", "cmyk 1 0 0 0"},
        // Nothing is clamped here.
        {"-1 2 7 rg", "rgb -1 2 7", "gray 0"},
        // The default of each space is all zeros: no ink.
        {"1 g /DeviceCMYK cs /DeviceRGB CS", "cmyk 0 0 0 0", "rgb 0 0 0"},
        {"1 g /Cmyk cs", "cmyk 0 0 0 0", "gray 0"},
        {"/DeviceRGB cs 1 0 1 sc /DeviceCMYK CS 1 0 1 0 SCN", "rgb 1 0 1", "cmyk 1 0 1 0"},
        {"/Icc cs 1 0.5 0 scn", "rgb 1 0.5 0", "gray 0"},
        {"/Cal cs 1 0.5 0 sc", "rgb 1 0.5 0", "gray 0"},
        // A fixed operator sets the space, too.
        {"1 0 0 rg 0 1 0 sc", "rgb 0 1 0", "gray 0"},
        {"1 0 0 rg /Unknown cs 0 1 0 sc", "rgb 0 1 0", "gray 0"},
        // "sc" in a palette of four takes a fraction of 255 and no entry number.
        {"/Palette cs", "rgb 1 0 0", "gray 0"},
        {"/Palette cs 0.004 sc", "rgb 0 1 0", "gray 0"},
        {"/Palette cs 1 sc", "rgb 0 0 0", "gray 0"},
        // Operands that are too few, too many, or none.
        {"1 0.5 rg", "rgb 1 0.5 0", "gray 0", {general, general}},
        {"1 0.5 0 0.25 rg", "rgb 1 0.5 0", "gray 0", {general}},
        {"/Name g", "gray 0", "gray 0", {general}},
        {"1 g cs", "gray 1", "gray 0", {general, general}},
        {"/DeviceRGB cs 0.5 g 1 0 0 sc", "gray 1", "gray 0", {general}},
        // A pattern that is not there paints nothing.
        {"1 g /Pattern cs", "none", "gray 0"},
        {"1 g /Pattern cs /P1 scn", "none", "gray 0", {unimplementedFill}},
        {"/Pattern cs /P1 scn 0.5 g", "gray 0.5", "gray 0", {unimplementedFill}},
        {"/Pattern cs 0.5 scn", "none", "gray 0", {general, unimplementedFill}},
        {"/Pattern cs scn", "none", "gray 0", {general, unimplementedFill}},
        {"/Uncoloured cs 1 0 0 /P1 scn", "none", "gray 0", {unimplementedFill}},
        {"/Uncoloured cs /P1 scn", "none", "gray 0", {general, general, general, general, unimplementedFill}},
    };
    for (const Case& c : cases) {
        CheckCase(
            c,
            "/Icc [/ICCBased 5 0 R] /Cmyk 6 0 R /Cal [/CalRGB << /Gamma [2 2 2] >>] /Uncoloured [/Pattern /DeviceRGB] "
            "/Palette [/Indexed /DeviceRGB 3 <FF0000 00FF00 0000FF FFFFFF>]");
    }
}

TEST(ColourOperatorsTest, FollowDefaultSpaces)
{
    // The initial space is gray's, too, and its colour all zeros.
    const Case cases[] = {
        {"", "cmyk 0 0 0 0", "cmyk 0 0 0 0"},
        {"0 0 0 1 g", "cmyk 0 0 0 1", "cmyk 0 0 0 0"},
        {"1 0 0 rg", "rgb 1 0 0", "cmyk 0 0 0 0"},
        {"/DeviceGray cs 0 0 0 1 sc", "cmyk 0 0 0 1", "cmyk 0 0 0 0"},
    };
    for (const Case& c : cases)
        CheckCase(c, "/DefaultGray /DeviceCMYK /DefaultRGB [/ICCBased 5 0 R]");
}

} // namespace
} // namespace Quillet
