#include <Renderer/FontMetrics.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace Renderer;
using Metrics = Kernel::Counted<const FontMetrics>;

Metrics MakeMetrics(const std::string& name)
{
    Kernel::Font font;
    font.SetPostscriptName(name);
    return FontMetrics::Make(font);
}

double GetKerning(const FontMetrics& metrics, char32_t left, char32_t right)
{
    return metrics.GetAutoKerning(metrics.GetGlyphMetrics(left).id, metrics.GetGlyphMetrics(right).id);
}

TEST(FontMetrics, NimbusSansMeasuresLikeHelvetica)
{
    const Metrics metrics = MakeMetrics("NimbusSans-Regular");
    const std::pair<char32_t, double> rows[] = {{' ', 0.278}, {'A', 0.667},       {'i', 0.222},      {'W', 0.944},
                                                {'0', 0.556}, {U'\u20AC', 0.556}, {U'\u00E9', 0.556}};
    for (const auto& [character, advance] : rows) {
        const GlyphMetrics glyph = metrics->GetGlyphMetrics(character);
        EXPECT_GT(glyph.id, 0) << static_cast<unsigned>(character);
        EXPECT_NEAR(glyph.advance, advance, 1e-9) << static_cast<unsigned>(character);
        EXPECT_EQ(metrics->GetGlyphIndexMetrics(glyph.id).advance, glyph.advance);
        EXPECT_EQ(metrics->GetGlyphIndexMetrics(glyph.id).box, glyph.box);
    }
}

TEST(FontMetrics, SpacesAreEmpty)
{
    for (const char* font : {"NimbusSans-Regular", "DejaVuSans"}) {
        const Metrics metrics = MakeMetrics(font);
        const GlyphMetrics space = metrics->GetGlyphMetrics(U' ');
        EXPECT_TRUE(space.box.IsEmpty()) << font;
        EXPECT_GT(space.advance, 0.2) << font;
        EXPECT_FALSE(metrics->GetOutline(space.id)) << font;
        EXPECT_EQ(metrics->GetGlyphMetrics(U'\u4E00').id, 0) << font;
        EXPECT_GT(metrics->GetGlyphMetrics(U'\u4E00').advance, 0) << font;
        // Numbers beyond the font's glyphs do no harm.
        for (const int id : {-1, 1 << 20, 0x7FFFFFFF}) {
            EXPECT_TRUE(metrics->GetGlyphIndexMetrics(id).box.IsEmpty()) << font << id;
            EXPECT_TRUE(std::isfinite(metrics->GetGlyphIndexMetrics(id).advance)) << font << id;
            EXPECT_FALSE(metrics->GetOutline(id)) << font << id;
            EXPECT_EQ(metrics->GetAutoKerning(id, 40), 0) << font << id;
            EXPECT_EQ(metrics->GetAutoKerning(40, id), 0) << font << id;
        }
    }
}

TEST(FontMetrics, KernsPairs)
{
    for (const char* font : {"NimbusSans-Regular", "NimbusRoman-Bold", "DejaVuSans"}) {
        const Metrics metrics = MakeMetrics(font);
        EXPECT_LT(GetKerning(*metrics, 'A', 'V'), -0.02) << font;
        EXPECT_GT(GetKerning(*metrics, 'A', 'V'), -0.3) << font;
        EXPECT_EQ(GetKerning(*metrics, 'n', 'n'), 0) << font;
        // Not a ligature's difference.
        EXPECT_NEAR(GetKerning(*metrics, 'f', 'i'), 0, 0.05) << font;
        EXPECT_EQ(GetKerning(*metrics, U'\u4E00', 'A'), 0) << font;
    }
    EXPECT_EQ(GetKerning(*MakeMetrics("NimbusMonoPS-Regular"), 'A', 'V'), 0);
    // Numbers of glyphs are no characters, though many would be ones without a width, or marks.
    const Metrics metrics = MakeMetrics("DejaVuSans");
    const int next = metrics->GetGlyphMetrics(U'x').id;
    for (int id = 0; id < 1200; ++id)
        EXPECT_LT(std::abs(metrics->GetAutoKerning(id, next)), 0.4) << id;
}

/// Cubic outlines as well as quadratic ones.
TEST(FontMetrics, OutlinesFillTheirBoxes)
{
    for (const char* font : {"NimbusSans-Regular", "DejaVuSans"}) {
        const Metrics metrics = MakeMetrics(font);
        for (const char32_t character : U"Ag8%@&") {
            if (character == 0) continue;
            const GlyphMetrics glyph = metrics->GetGlyphMetrics(character);
            const auto outline = metrics->GetOutline(glyph.id);
            ASSERT_TRUE(outline) << font << static_cast<char>(character);
            EXPECT_TRUE(outline->GetAllCurvesClosed());
            const auto box = outline->GetExactBBox();
            // Boxes are in whole units of the font.
            EXPECT_NEAR(box.left, glyph.box.left, 1e-3) << font << static_cast<char>(character);
            EXPECT_NEAR(box.top, glyph.box.top, 1e-3) << font << static_cast<char>(character);
            EXPECT_NEAR(box.right, glyph.box.right, 1e-3) << font << static_cast<char>(character);
            EXPECT_NEAR(box.bottom, glyph.box.bottom, 1e-3) << font << static_cast<char>(character);
            EXPECT_EQ(metrics->GetOutline(glyph.id), outline);
        }
        EXPECT_EQ(metrics->GetOutline(metrics->GetGlyphMetrics(U'o').id)->curves.size(), 2U) << font;
    }
}

TEST(FontMetrics, LinesLieWhereTheyBelong)
{
    for (const char* font : {"NimbusSans-Regular", "NimbusRoman-Italic", "DejaVuSans", "D050000L", "Nofont"}) {
        const Metrics metrics = MakeMetrics(font);
        EXPECT_GT(metrics->GetAscent(), 0.5) << font;
        EXPECT_LT(metrics->GetAscent(), 1.3) << font;
        EXPECT_GT(metrics->GetDescent(), 0.1) << font;
        EXPECT_LT(metrics->GetDescent(), 0.5) << font;
        EXPECT_GT(metrics->GetTypographicAscent(), 0.5) << font;
        EXPECT_LE(metrics->GetTypographicAscent(), metrics->GetAscent()) << font;
        EXPECT_GT(metrics->GetUnderlinePosition(), 0.01) << font;
        EXPECT_LT(metrics->GetUnderlinePosition(), 0.25) << font;
        EXPECT_LT(metrics->GetStrikeoutPosition(), -0.15) << font;
        EXPECT_GT(metrics->GetStrikeoutPosition(), -0.4) << font;
        for (const double thickness : {metrics->GetUnderlineThickness(), metrics->GetStrikeoutThickness()}) {
            EXPECT_GT(thickness, 0.01) << font;
            EXPECT_LT(thickness, 0.15) << font;
        }
    }
}

TEST(FontMetrics, RulesAreTheirUpperEdges)
{
    const Metrics metrics = MakeMetrics("DejaVuSans");
    const double em = 2048;
    EXPECT_NEAR(metrics->GetAscent(), 1901 / em, 1e-9);
    EXPECT_NEAR(metrics->GetDescent(), 483 / em, 1e-9);
    EXPECT_EQ(metrics->GetLineGap(), 0);
    EXPECT_NEAR(metrics->GetTypographicAscent(), 1556 / em, 1e-9);
    EXPECT_NEAR(metrics->GetUnderline(RuleSource::Font).top, 40 / em, 1e-9);
    EXPECT_NEAR(metrics->GetUnderline(RuleSource::Font).thickness, 90 / em, 1e-9);
    EXPECT_NEAR(metrics->GetStrikeout(RuleSource::Font).top, -530 / em, 1e-9);
    EXPECT_NEAR(metrics->GetStrikeout(RuleSource::Font).thickness, 102 / em, 1e-9);
    // As LibreOffice 7 prints them at 100 points, to a tenth of a point.
    EXPECT_NEAR(metrics->GetUnderline(RuleSource::Descent).top, 0.0605, 2e-3);
    EXPECT_NEAR(metrics->GetUnderline(RuleSource::Descent).thickness, 0.059, 1e-3);
    EXPECT_NEAR(metrics->GetStrikeout(RuleSource::Descent).top, -0.3125, 2e-3);
    EXPECT_NEAR(metrics->GetStrikeout(RuleSource::Descent).thickness, 0.059, 1e-3);
}

TEST(FontMetrics, MissingFontsFallBack)
{
    const Metrics missing = MakeMetrics("Nofont");
    const Metrics actual = FontMetrics::Make(missing->GetActualFont());
    EXPECT_EQ(missing->GetFont().postscriptName, "Nofont");
    EXPECT_EQ(missing->GetActualFont().postscriptName, "DejaVuSans");
    EXPECT_FALSE(missing == actual);
    EXPECT_EQ(missing->GetGlyphMetrics(U'A').advance, actual->GetGlyphMetrics(U'A').advance);
    EXPECT_GT(FontMetrics::Make(Kernel::Font())->GetGlyphMetrics(U'A').advance, 0.3);
}

TEST(FontMetrics, WideCharactersHaveTheirEmWithoutAGlyph)
{
    const Metrics metrics = MakeMetrics("NimbusSans-Regular");
    const GlyphMetrics ideograph = metrics->GetGlyphMetrics(U'\u4E00');
    EXPECT_EQ(ideograph.id, 0);
    EXPECT_EQ(ideograph.advance, 1);
    EXPECT_EQ(metrics->GetGlyphMetrics(U'\uE123').advance, metrics->GetGlyphIndexMetrics(0).advance);
}

TEST(FontMetrics, AreOneObjectAFont)
{
    EXPECT_EQ(MakeMetrics("NimbusSans-Regular"), MakeMetrics("NimbusSans-Regular"));
    EXPECT_FALSE(MakeMetrics("NimbusSans-Regular") == MakeMetrics("NimbusSans-Bold"));
    Kernel::Font bold;
    bold.SetPostscriptName("NimbusSans-Regular");
    bold.SetWeight(700);
    EXPECT_FALSE(FontMetrics::Make(bold) == MakeMetrics("NimbusSans-Regular"));
    // Those in use stay, however many others come.
    const Metrics kept = MakeMetrics("Kept");
    for (int i = 0; i < 3000; ++i)
        MakeMetrics(std::to_string(i));
    EXPECT_EQ(MakeMetrics("Kept"), kept);
}

TEST(FontMetrics, ThreadsGetTheSame)
{
    const auto measure = [] {
        std::vector<double> values;
        for (const char* font : {"P052-Roman", "DejaVuSerif", "Nofont too"}) {
            const Metrics metrics = MakeMetrics(font);
            for (char32_t character = ' '; character < 0x180; ++character) {
                const GlyphMetrics glyph = metrics->GetGlyphMetrics(character);
                values.push_back(glyph.advance);
                values.push_back(glyph.box.right);
                values.push_back(metrics->GetAutoKerning(glyph.id, metrics->GetGlyphMetrics(U'V').id));
                const auto outline = metrics->GetOutline(glyph.id);
                values.push_back(outline ? outline->GetApproxBBox().top : 0);
            }
        }
        return values;
    };
    std::vector<std::vector<double>> results(4);
    std::vector<std::thread> threads;
    for (auto& result : results)
        threads.emplace_back([&result, &measure] { result = measure(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& result : results)
        EXPECT_EQ(result, measure());
}

} // namespace
