#include <Raster/ICCManager.h>

#include <Kernel/Trace.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>

namespace {

using namespace Raster;
using Profile = Kernel::Consolidated<ICCProfile>;

/// Knows no profile of the machine.
ICCManager MakeManager()
{
    return ICCManager(InstalledProfiles(std::vector<std::string>{}));
}

std::vector<std::uint8_t> GetSrgb(const std::string& model = "RGB ")
{
    std::vector<std::uint8_t> bytes = ICCManager::GetInstance().GetDefaultProfile(ColourSpace::Rgb)->GetBytes();
    // ICC.1:2010, 7.2.8.
    std::ranges::copy(model, bytes.begin() + 16);
    return bytes;
}

/// sRGB with its red and green primaries exchanged.
Profile MakeSwapped(ICCManager& manager)
{
    std::vector<std::uint8_t> bytes = GetSrgb();
    const auto find = [&bytes](const std::string& tag) {
        return std::search(bytes.begin(), bytes.end(), tag.begin(), tag.end());
    };
    const auto red = find("rXYZ");
    const auto green = find("gXYZ");
    std::swap_ranges(red, red + 4, green);
    return manager.AddProfileFromMemory(bytes.data(), static_cast<unsigned int>(bytes.size()), "swapped");
}

TEST(ICCManager, ConvertsByFormulaWithoutProfiles)
{
    constexpr double c_noNumber = std::numeric_limits<double>::quiet_NaN();
    const struct
    {
        ModelPixel pixel;
        double red, green, blue;
    } rows[] = {
        {{ColourSpace::Gray, {0.25}, 1}, 0.25, 0.25, 0.25},
        {{ColourSpace::Rgb, {-1, 2, 0.5}, 1}, -1, 2, 0.5},
        {{ColourSpace::Cmyk, {0, 0, 0, 0}, 1}, 1, 1, 1},
        {{ColourSpace::Cmyk, {0, 0, 0, 1}, 1}, 0, 0, 0},
        // Black dominates.
        {{ColourSpace::Cmyk, {1, 0, 0, 1}, 1}, 0, 0, 0},
        {{ColourSpace::Cmyk, {0.5, 0.25, 0, 0.2}, 1}, 0.4, 0.6, 0.8},
        {{ColourSpace::Cmyk, {c_noNumber, 0, 0, 0}, 1}, 0, 1, 1},
        {{ColourSpace::None, {1, 1, 1}, 1}, 0, 0, 0},
        {{ColourSpace::Lab, {100, 0, 0}, 1}, 1, 1, 1},
        {{ColourSpace::Lab, {0, 0, 0}, 1}, 0, 0, 0},
    };
    ICCManager manager = MakeManager();
    for (const auto& row : rows) {
        const PixelRgbF rgb = manager.MakeRgba(row.pixel, {});
        EXPECT_NEAR(rgb.red, row.red, 1e-3);
        EXPECT_NEAR(rgb.green, row.green, 1e-3);
        EXPECT_NEAR(rgb.blue, row.blue, 1e-3);
        EXPECT_EQ(rgb.alpha, 1);
    }
}

TEST(ICCManager, ConvertsThroughTheProfileOfTheModel)
{
    ICCManager manager = MakeManager();
    ICCManager::ICCProfileSet set;
    set.SetProfile(ColourSpace::Rgb, MakeSwapped(manager));
    const ModelPixel red{ColourSpace::Rgb, {1, 0, 0}, 0.5f};
    const PixelRgbF rgb = manager.MakeRgba(red, set);
    EXPECT_NEAR(rgb.red, 0, 2e-3);
    EXPECT_NEAR(rgb.green, 1, 2e-3);
    EXPECT_NEAR(rgb.blue, 0, 2e-3);
    EXPECT_EQ(rgb.alpha, 0.5f);
    // The default profiles change nothing, not by a rounding error.
    set.SetProfile(ColourSpace::Rgb, manager.GetDefaultProfile(ColourSpace::Rgb));
    set.SetProfile(ColourSpace::Gray, manager.GetDefaultProfile(ColourSpace::Gray));
    EXPECT_EQ(manager.MakeRgba({ColourSpace::Rgb, {0.3f, 2, 0}, 1}, set), PixelRgbF(0.3f, 2, 0, 1));
    EXPECT_EQ(manager.MakeRgba({ColourSpace::Gray, {0.3f}, 1}, set), PixelRgbF(0.3f, 0.3f, 0.3f, 1));
    // And are right about it: by way of the profile, gray is the same.
    const auto transform = manager.GetTransformForProfiles(manager.GetDefaultProfile(ColourSpace::Gray),
                                                           manager.GetDefaultProfile(ColourSpace::Rgb),
                                                           RenderingIntent::RelativeColorimetric, true);
    ASSERT_TRUE(transform);
    EXPECT_NEAR(transform->Convert({0.5})[1], 0.5, 1e-3);
}

TEST(ICCManager, TakesWhatIsAProfile)
{
    ICCManager manager = MakeManager();
    const std::pair<const char*, ColourSpace> cases[] = {{"GRAY", ColourSpace::Gray},     {"RGB ", ColourSpace::Rgb},
                                                         {"CMYK", ColourSpace::Cmyk},     {"Lab ", ColourSpace::Lab},
                                                         {"HSV ", ColourSpace::OtherRgb}, {"6CLR", ColourSpace::None}};
    for (const auto& [signature, model] : cases) {
        const auto bytes = GetSrgb(signature);
        const Profile profile =
            manager.AddProfileFromMemory(bytes.data(), static_cast<unsigned>(bytes.size()), nullptr);
        ASSERT_TRUE(profile) << signature;
        EXPECT_EQ(profile->GetColourSpace(), model) << signature;
        EXPECT_FALSE(profile->GetName().empty());
        EXPECT_EQ(manager.AddProfileFromMemory(bytes.data(), static_cast<unsigned>(bytes.size()), "again"), profile);
        EXPECT_EQ(ICCManager::CanApplyProfileToFormat(profile, Format::Cmyk8), model == ColourSpace::Cmyk);
        EXPECT_FALSE(ICCManager::CanApplyProfileToFormat(profile, Format::None));
    }
    EXPECT_FALSE(manager.AddProfileFromMemory(nullptr, 0, nullptr));
    EXPECT_FALSE(manager.AddProfileFromMemory("no profile", 10, nullptr));
    EXPECT_FALSE(manager.CreateProfile(nullptr));
    EXPECT_FALSE(ICCManager::CanApplyProfileToFormat(nullptr, Format::Rgb8));

    // Cut anywhere, or with any tag gone, it is no profile or one of no use.
    const auto whole = GetSrgb();
    ICCManager::ICCProfileSet set;
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        const auto cut = manager.AddProfileFromMemory(whole.data(), static_cast<unsigned>(length), nullptr);
        set.SetProfile(ColourSpace::Rgb, cut);
        const PixelRgbF rgb = manager.MakeRgba({ColourSpace::Rgb, {1, 1, 1}, 1}, set);
        EXPECT_GT(rgb.red, 0.5f) << length;
    }
}

TEST(ICCManager, MakesEachTransformOnce)
{
    ICCManager manager = MakeManager();
    const Profile rgb = manager.GetDefaultProfile(ColourSpace::Rgb);
    const Profile lab = manager.GetDefaultProfile(ColourSpace::Lab);
    const auto get = [&](const Profile& from, const Profile& to, bool hasBlackPoint = true) {
        return manager.GetTransformForProfiles(from, to, RenderingIntent::Perceptual, hasBlackPoint);
    };
    EXPECT_FALSE(get(nullptr, rgb));
    EXPECT_FALSE(get(rgb, nullptr));
    const auto first = get(lab, rgb);
    ASSERT_TRUE(first);
    EXPECT_EQ(get(lab, rgb), first);
    EXPECT_NE(get(rgb, lab), first);
    EXPECT_NE(get(lab, rgb, false), first);

    // Three curves do not make a CMYK profile; that is found out once.
    const auto bytes = GetSrgb("CMYK");
    const Profile broken = manager.AddProfileFromMemory(bytes.data(), static_cast<unsigned>(bytes.size()), "broken");
    std::string trace;
    Kernel::SetTraceSink([&trace](std::string_view message) { trace += message; });
    EXPECT_FALSE(get(broken, rgb));
    EXPECT_FALSE(get(broken, rgb));
    Kernel::SetTraceSink({});
    EXPECT_EQ(trace, "Colour engine failed to create transform between broken and " + rgb->GetName() + "\r\n");
    ICCManager::ICCProfileSet set;
    set.SetProfile(ColourSpace::Cmyk, broken);
    EXPECT_EQ(manager.MakeRgba({ColourSpace::Cmyk, {1, 0, 0, 0}, 1}, set), PixelRgbF(0, 1, 1, 1));
}

TEST(ICCManager, ServesManyThreads)
{
    ICCManager manager = MakeManager();
    std::atomic<int> agreed = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 200; ++k)
                agreed += manager.MakeRgba({ColourSpace::Lab, {100, 0, 0}, 1}, {}).red > 0.99f ? 1 : 0;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(agreed, 800);
}

TEST(ICCManager, FindsInstalledProfilesByDescription)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(testing::TempDir()) / "quillet-profiles";
    fs::remove_all(folder);
    fs::create_directories(folder / "deeper");
    const auto write = [](const fs::path& path, const std::vector<std::uint8_t>& bytes) {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    };
    write(folder / "deeper" / "A.ICM", GetSrgb("CMYK"));
    write(folder / "z.icc", GetSrgb());
    write(folder / "a.icc", {1, 2, 3});
    write(folder / "a.txt", GetSrgb("GRAY"));
    const std::string name = ICCManager::GetInstance().GetDefaultProfile(ColourSpace::Rgb)->GetName();

    ICCManager manager(InstalledProfiles({(folder / "missing").string(), folder.string()}));
    const Profile found = manager.GetProfileForString(name);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->GetColourSpace(), ColourSpace::Cmyk) << "the first by path";
    EXPECT_FALSE(manager.GetProfileForString("No such profile"));
    EXPECT_FALSE(manager.GetProfileForString(""));
    fs::remove_all(folder);
    EXPECT_FALSE(manager.GetProfileForString(name));
}

} // namespace
