#include <Renderer/FontMetrics.h>

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

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

/// Cubic outlines as well as quadratic ones.
TEST(FontMetrics, MeasuresGlyphsOfEveryKindOfFont)
{
    for (const char* font : {"NimbusSans-Regular", "NimbusRoman-Bold", "DejaVuSans"}) {
        SCOPED_TRACE(font);
        const Metrics metrics = MakeMetrics(font);
        const GlyphMetrics space = metrics->GetGlyphMetrics(U' ');
        EXPECT_TRUE(space.box.IsEmpty());
        EXPECT_GT(space.advance, 0.2);
        EXPECT_FALSE(metrics->GetOutline(space.id));
        EXPECT_EQ(metrics->GetGlyphMetrics(U'\u4E00').id, 0);
        // Numbers beyond the font's glyphs do no harm.
        for (const int id : {-1, 1 << 20, 0x7FFFFFFF}) {
            EXPECT_TRUE(metrics->GetGlyphIndexMetrics(id).box.IsEmpty()) << id;
            EXPECT_TRUE(std::isfinite(metrics->GetGlyphIndexMetrics(id).advance)) << id;
            EXPECT_FALSE(metrics->GetOutline(id)) << id;
            EXPECT_EQ(metrics->GetAutoKerning(id, 40), 0) << id;
            EXPECT_EQ(metrics->GetAutoKerning(40, id), 0) << id;
        }
        EXPECT_NEAR(GetKerning(*metrics, 'A', 'V'), -0.16, 0.14);
        EXPECT_EQ(GetKerning(*metrics, 'n', 'n'), 0);
        // Not a ligature's difference.
        EXPECT_NEAR(GetKerning(*metrics, 'f', 'i'), 0, 0.05);
        EXPECT_EQ(GetKerning(*metrics, U'\u4E00', 'A'), 0);
        for (const char32_t character : std::u32string(U"Ag8%@&")) {
            SCOPED_TRACE(static_cast<char>(character));
            const GlyphMetrics glyph = metrics->GetGlyphMetrics(character);
            const auto outline = metrics->GetOutline(glyph.id);
            ASSERT_TRUE(outline);
            EXPECT_TRUE(outline->GetAllCurvesClosed());
            const auto box = outline->GetExactBBox();
            // Boxes are in whole units of the font.
            EXPECT_TRUE(box.Inflated(1e-3).Contains(glyph.box) && glyph.box.Inflated(1e-3).Contains(box));
            EXPECT_EQ(metrics->GetOutline(glyph.id), outline);
        }
        EXPECT_EQ(metrics->GetOutline(metrics->GetGlyphMetrics(U'o').id)->curves.size(), 2U);
    }
    EXPECT_EQ(GetKerning(*MakeMetrics("NimbusMonoPS-Regular"), 'A', 'V'), 0);
    // Numbers of glyphs are no characters, though many would be ones without a width, or marks.
    const Metrics metrics = MakeMetrics("DejaVuSans");
    const int next = metrics->GetGlyphMetrics(U'x').id;
    for (int id = 0; id < 1200; ++id)
        EXPECT_LT(std::abs(metrics->GetAutoKerning(id, next)), 0.4) << id;
}

TEST(FontMetrics, LinesLieWhereTheyBelong)
{
    for (const char* font : {"NimbusSans-Regular", "NimbusRoman-Italic", "DejaVuSans", "D050000L", "Nofont"}) {
        const Metrics metrics = MakeMetrics(font);
        const std::tuple<double, double, double> rows[] = {
            {0.5, metrics->GetAscent(), 1.3},
            {0.1, metrics->GetDescent(), 0.5},
            {0.5, metrics->GetTypographicAscent(), metrics->GetAscent() + 1e-9},
            {0.01, metrics->GetUnderlinePosition(), 0.25},
            {-0.4, metrics->GetStrikeoutPosition(), -0.15},
            {0.01, metrics->GetUnderlineThickness(), 0.15},
            {0.01, metrics->GetStrikeoutThickness(), 0.15},
        };
        for (const auto& [low, value, high] : rows)
            EXPECT_TRUE(low < value && value < high) << font << ' ' << low << ' ' << value;
    }
}

TEST(FontMetrics, RulesAreTheirUpperEdges)
{
    const Metrics metrics = MakeMetrics("DejaVuSans");
    const double em = 2048;
    const auto expectRule = [](const TextRule& rule, double top, double thickness, double tolerance) {
        EXPECT_NEAR(rule.top, top, 2 * tolerance);
        EXPECT_NEAR(rule.thickness, thickness, tolerance);
    };
    EXPECT_NEAR(metrics->GetAscent(), 1901 / em, 1e-9);
    EXPECT_NEAR(metrics->GetDescent(), 483 / em, 1e-9);
    EXPECT_EQ(metrics->GetLineGap(), 0);
    EXPECT_NEAR(metrics->GetTypographicAscent(), 1556 / em, 1e-9);
    expectRule(metrics->GetUnderline(RuleSource::Font), 40 / em, 90 / em, 1e-9);
    expectRule(metrics->GetStrikeout(RuleSource::Font), -530 / em, 102 / em, 1e-9);
    // As LibreOffice 7 prints them at 100 points, to a tenth of a point.
    expectRule(metrics->GetUnderline(RuleSource::Descent), 0.0605, 0.059, 1e-3);
    expectRule(metrics->GetStrikeout(RuleSource::Descent), -0.3125, 0.059, 1e-3);
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

    // Wide characters have their em without a glyph.
    const Metrics metrics = MakeMetrics("NimbusSans-Regular");
    EXPECT_EQ(metrics->GetGlyphMetrics(U'\u4E00').advance, 1);
    EXPECT_EQ(metrics->GetGlyphMetrics(U'\uE123').advance, metrics->GetGlyphIndexMetrics(0).advance);
}

TEST(FontMetrics, AreOneObjectAFont)
{
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
                const auto outline = metrics->GetOutline(glyph.id);
                values.insert(values.end(), {glyph.advance, glyph.box.right, GetKerning(*metrics, character, U'V'),
                                             outline ? outline->GetApproxBBox().top : 0});
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
