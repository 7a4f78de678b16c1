#include <Renderer/FillBlendMode.h>

#include <gtest/gtest.h>

namespace {

namespace Mode = Renderer::FillBlendMode;

TEST(FillBlendMode, NamesAndModesBelongTogether)
{
    constexpr struct
    {
        const char* name;
        Mode::BlendMode mode;
    } c_rows[] = {
        {"Normal", Mode::Normal},
        {"Multiply", Mode::Multiply},
        {"Screen", Mode::Screen},
        {"Overlay", Mode::Overlay},
        {"Darken", Mode::Darken},
        {"Lighten", Mode::Lighten},
        {"ColorDodge", Mode::ColorDodge},
        {"ColorBurn", Mode::ColorBurn},
        {"HardLight", Mode::HardLight},
        {"SoftLight", Mode::SoftLight},
        {"Difference", Mode::Difference},
        {"Exclusion", Mode::Exclusion},
        {"Hue", Mode::Hue},
        {"Saturation", Mode::Saturation},
        {"Color", Mode::Color},
        {"Luminosity", Mode::Luminosity},
    };
    for (const auto& row : c_rows) {
        EXPECT_EQ(Mode::GetByName(row.name), row.mode);
        EXPECT_STREQ(Mode::GetName(row.mode), row.name);
    }
    EXPECT_EQ(Mode::GetByName("Compatible"), Mode::Normal);
    for (const char* name : {"", "normal", "Colour", static_cast<const char*>(nullptr)})
        EXPECT_EQ(static_cast<int>(Mode::GetByName(name)), 38) << (name ? name : "null");
}

} // namespace
