#include "Problems.h"
#include "exporters/ColourValues.h"
#include "exporters/JsonWriter.h"
#include "exporters/LongText.h"
#include "exporters/NumberText.h"
#include "exporters/PathData.h"

#include <Kernel/Consolidated.h>
#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/ColourRegistration.h>

#include <gmock/gmock.h>

#include <cmath>
#include <utility>

namespace Host::Test {
namespace {

using Geometry::CurveDbl;
using Params = Raster::AffineTransform::Params;

std::string MakePathData(const Geometry::PolyCurveDbl& path, const Params& toPage)
{
    LongText text;
    AppendPathData(text, path, toPage);
    return text.Join();
}

TEST(NumberText, IsShortAndPlain)
{
    const auto make = [](double value, int decimals) {
        std::string text;
        AppendNumber(text, value, decimals);
        return text;
    };
    const std::pair<double, const char*> rows[] = {{0, "0"},       {-0.0, "0"},      {1.5, "1.5"},   {0.0004, "0"},
                                                   {-0.0004, "0"}, {0.05, "0.05"},   {-0.5, "-0.5"}, {100, "100"},
                                                   {0.9996, "1"},  {99.9996, "100"}, {NAN, "0"},     {-INFINITY, "0"}};
    for (const auto& [value, text] : rows)
        EXPECT_EQ(make(value, 3), text) << value;
    EXPECT_EQ(make(1e20, 3), "100000000000000000000");
    EXPECT_EQ(make(-1.25, 1), "-1.3");
    EXPECT_EQ(make(100, 0), "100");
    EXPECT_EQ(make(1e-15, 15), "0.000000000000001");
    EXPECT_EQ(make(123456.789, 6), "123456.789");
    EXPECT_EQ(make(-1e16 - 2, 2), "-10000000000000002");
}

TEST(NumberText, HasTheDecimalsThatShowOnThePage)
{
    EXPECT_EQ(GetDecimals(1, 1e-4), 4);
    EXPECT_EQ(GetDecimals(1000, 1e-4), 7);
    EXPECT_EQ(GetDecimals(1e-4, 1e-4), 0);
    EXPECT_EQ(GetDecimals(1e-9, 1e-4), 0);
    EXPECT_EQ(GetDecimals(1e300, 1e-4), 15);
    for (const double scale : {0.0, -1.0, double{NAN}, double{INFINITY}})
        EXPECT_EQ(GetDecimals(scale, 1e-4), 6) << scale;
}

TEST(NumberText, IsShortestWhereItMustReadBack)
{
    // The second is 292.08088299999997 to the last bit.
    const std::pair<double, const char*> rows[] = {{0, "0.0"},
                                                   {292.080883, "292.080883"},
                                                   {-0.5, "-0.5"},
                                                   {100, "100.0"},
                                                   {1e-4, "0.0001"},
                                                   {9.9e-5, "9.9e-05"},
                                                   {6.123233995736766e-17, "6.123233995736766e-17"},
                                                   {1e15, "1e+15"},
                                                   {-1.5e300, "-1.5e+300"},
                                                   {999999999999999, "999999999999999.0"}};
    for (const auto& [value, expected] : rows) {
        LongText text;
        AppendShortest(text, value);
        EXPECT_EQ(text.Join(), expected);
    }
}

TEST(NumberText, TidiesWhatArithmeticLeaves)
{
    EXPECT_EQ(Tidy(0.1 + 0.2), 0.3);
    EXPECT_EQ(Tidy(1.23e-7), 1.23e-7);
    EXPECT_EQ(Tidy(NAN), 0);
    EXPECT_FALSE(std::signbit(Tidy(-0.0)));
}

TEST(JsonWriter, WritesWhatReadsBack)
{
    LongText text;
    JsonWriter json(text);
    json.BreakLine();
    json.BeginObject();
    json.Key("flags").BeginArray();
    json.Flag(true);
    json.Null();
    json.Integer(-7);
    json.EndArray();
    json.BreakLine();
    json.Key("escapes").Text("\" \\ / \b\f\n\r\t \x01\x1f \x7f \u00E9\U0001F600");
    // An overlong form, a lone byte, half a character before a whole one, and another at the end.
    json.Key("broken").Text("\xC0\xAF|\x80|\xE2\x82|\u20AC|\xF0\x9F\x98");
    LongText inner;
    JsonWriter(inner).Number(0.1 + 0.2);
    json.Key("inner").Take(std::move(inner));
    json.EndObject();
    EXPECT_EQ(text.Join(), "{\"flags\":[true,null,-7],\n"
                           "\"escapes\":\"\\\" \\\\ / \\b\\f\\n\\r\\t \\u0001\\u001f \x7f \u00E9\U0001F600\","
                           "\"broken\":\"\uFFFD\uFFFD|\uFFFD|\uFFFD|\u20AC|\uFFFD\",\"inner\":0.3}");
}

TEST(PathData, WritesCurvesAsSvgDoes)
{
    const auto line = Kernel::MakeCounted<CurveDbl>();
    line->AddLine({0, 0}, {1.00004, -2});
    line->AddLine({1.00004, -2}, {3, 4});
    const auto arc = Kernel::MakeCounted<CurveDbl>();
    arc->AddNode({0, 0});
    arc->AddBezierCurve({3, 3}, {1, 0}, {3, 1.5});
    arc->AddBezierCurve({0, 0}, {4, 4}, {5, 5});
    arc->MakeClosed();
    const auto triangle = Kernel::MakeCounted<CurveDbl>();
    for (const CurveDbl::Point point : {CurveDbl::Point{0, 0}, {2, 0}, {2, 2}, {0, 0}})
        triangle->AddNode(point);
    triangle->MakeClosed();
    const auto implied = triangle->nodes;
    const auto open = Kernel::MakeCounted<CurveDbl>();
    open->nodes.assign(implied.begin(), implied.begin() + 7);
    open->MakeClosed();

    const struct
    {
        Kernel::Counted<CurveDbl> curve;
        const char* data;
    } rows[] = {
        {line, "M 0 0 L 1 -2 3 4"},  {arc, "M 0 0 C 1 0 3 1.5 3 3 4 4 5 5 0 0 Z"}, {triangle, "M 0 0 L 2 0 2 2 Z"},
        {open, "M 0 0 L 2 0 2 2 Z"}, {Kernel::MakeCounted<CurveDbl>(), ""},
    };
    Geometry::PolyCurveDbl all;
    std::string allData;
    for (const auto& row : rows) {
        Geometry::PolyCurveDbl path;
        path.AddCurve(row.curve);
        EXPECT_EQ(MakePathData(path, Params()), row.data);
        all.AddCurve(row.curve);
        allData += (allData.empty() || !*row.data ? "" : " ") + std::string(row.data);
    }
    EXPECT_EQ(MakePathData(all, Params()), allData);
}

TEST(PathData, KeepsDetailThatATransformMagnifies)
{
    const Geometry::PolyCurveDbl path(Kernel::RectT<double>{0, 0, 0.00001234, 1234.56789});
    EXPECT_EQ(MakePathData(path, Params::FromPdf(1e4, 0, 0, 1e-4, 0, 0)),
              "M 0 0 L 0.00001234 0 0.00001234 1234.56789 0 1234.56789 Z");
    EXPECT_EQ(MakePathData(path, Params::FromPdf(0.01, 0, 0, 0.01, 0, 0)), "M 0 0 L 0 0 0 1234.57 0 1234.57 Z");
}

TEST(ColourValues, AreThoseOfTheModel)
{
    using namespace Renderer;
    using testing::DoubleNear;
    const auto make = [](const auto& colour) -> Kernel::Consolidated<Colour> {
        return Kernel::ConsolidateObjectPostAlloc(colour);
    };
    const auto gray = ColourGrayscale::Create(0.25, 1, 1, "");
    const struct
    {
        Kernel::Consolidated<Colour> colour;
        const char* model;
        std::vector<double> values;
    } rows[] = {
        {gray, "gray", {0.25}},
        {make(ColourRGB(Raster::PixelRgbF{1, 0.5F, 0, 1})), "rgb", {1, 0.5, 0}},
        {make(ColourCMYK(Raster::PixelCmykF{0, 0.25F, 0.5F, 1, 1})), "cmyk", {0, 0.25, 0.5, 1}},
        {make(ColourLAB(Raster::PixelLab16{65535, 0x8000, 0, 65535})), "lab", {100, -0.498, -128}},
        {make(ColourNamed("Gold", true, gray, 0.4)), "named", {0.4}},
        {ColourRegistration::Create(0.75), "registration", {0.75}},
    };
    for (const auto& row : rows) {
        const ColourValues found(*row.colour);
        EXPECT_EQ(found.model, row.model);
        EXPECT_THAT(found.values, testing::Pointwise(testing::DoubleNear(1e-3), row.values)) << row.model;
    }
}

TEST(Problems, AreOneLineEach)
{
    using namespace Quillet;
    EXPECT_EQ(FormatProblem("a b.pdf", 3, Error::XRefTable), "quillet: a b.pdf: page 3: XRef table (5)");
    EXPECT_EQ(FormatProblem("a.pdf", 0, Error::General, 7), "quillet: a.pdf: general (12), 7 times");
    for (int type = 0; type < Error::None; ++type) {
        EXPECT_EQ(FormatProblem("", 0, static_cast<Error::Type>(type)).find(":  ("), std::string::npos) << type;
    }
    EXPECT_FALSE(HasFatal({{Error::Password, 1}, {Error::General, 2}}));
    EXPECT_TRUE(HasFatal({{Error::PageTree, 1}, {Error::General, 2}}));
}

} // namespace
} // namespace Host::Test
