#include "ContentRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using testing::ElementsAre;

/// What follows an inline image is read right, whatever bytes the image has.
TEST(InterpreterInlineImageTest, GoesOnBehindTheEndMarker)
{
    constexpr int c_general = Error::General;
    // Whatever could be drawn is missed.
    constexpr int c_fill = Error::UnimplementedFill;
    const std::pair<std::string, std::vector<int>> rows[] = {
        // Data that holds the marker.
        {"BI /W 4 /H 1 /BPC 8 /CS /G ID EI Q EI", {c_fill}},
        {"BI /Width 2 /H 1 /BitsPerComponent 8 /ColorSpace /RGB ID (EI Q \nEI", {c_fill}},
        // One bit by default; two rows of nine bits take four bytes.
        {"BI /W 9 /H 2 /IM true ID  EI (EI", {c_fill}},
        {"BI /W 2 /H 1 /BPC 8 /I true /D [0 1] ID\r\nEI EI", {c_fill}},
        {"BI /W 2 /H 1 /BPC 8 /F [/AHx /AHx] /DP [null null] ID 3435 3439 3E>EI", {c_fill}},
        // Keys that mean nothing here.
        {"BI /Foo << /A [1] >> /Bar [1 [2]] 3 /W 2 /H 1 /BPC 8 ID EI EI", {c_fill}},
        // A coding that is not known: the marker has to stand alone.
        {"BI /W 1 /H 1 /BPC 8 /F /Foo ID xEI yEIz E\nEI", {Error::UnimplementedFilter, c_fill}},
        // Without a size, the first marker counts.
        {"BI /H 1 ID EI", {c_general}},
        // No white space, no data at all, no "ID".
        {"BI /W 1 /H 1 /BPC 8 ID(EI EI", {c_general, c_fill}},
        {"BI /W 1 5 Q", {c_general, c_general}},
        {"0 0 m BI /W 1 /H 1 /BPC 8 ID a EI n", {c_general, c_fill}},
    };
    for (const auto& [image, errors] : rows) {
        std::vector<double> widths;
        const ContentRun run(image + "\n7 w probe", {}, [&](GraphicsStateStack& stack, const ArgVec&) {
            widths.push_back(stack.GetTop().lineStyle->width);
        });
        EXPECT_THAT(widths, ElementsAre(7)) << image;
        EXPECT_EQ(run.GetErrors(), errors) << image;
    }
}

TEST(InterpreterInlineImageTest, EndsTheRunWhereTheDataEnds)
{
    const std::string images[] = {
        "BI /W 2147483647 /H 2147483647 /BPC 32 /CS /CMYK ID short EI 7 w",
        "BI /W 2 /H 1 /BPC 8 ID abc",
        "BI /W 2 /H 1 /BPC 8 ID",
    };
    for (const std::string& image : images) {
        const ContentRun run("0 0 1 1 re f " + image);
        EXPECT_EQ(run.GetCount(), 1U) << image;
        EXPECT_FALSE(run.GetErrors().empty()) << image;
    }
}

} // namespace
} // namespace Quillet::Test
