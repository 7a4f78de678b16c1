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

Profile MakeProfile(std::vector<std::uint8_t> bytes, ColourSpace model)
{
    return Kernel::ConsolidateObjectSacrifice(Kernel::MakeCounted<ICCProfile>(std::move(bytes), model));
}

Profile Add(ICCManager& manager, const std::vector<std::uint8_t>& bytes, const char* name = nullptr)
{
    return manager.AddProfileFromMemory(bytes.data(), static_cast<unsigned>(bytes.size()), name);
}

void ExpectNear(const PixelRgbF& rgb, const PixelRgbF& expected)
{
    EXPECT_NEAR(rgb.red, expected.red, 2e-3);
    EXPECT_NEAR(rgb.green, expected.green, 2e-3);
    EXPECT_NEAR(rgb.blue, expected.blue, 2e-3);
    EXPECT_EQ(rgb.alpha, expected.alpha);
}

TEST(ICCManager, ConvertsByFormulaWithoutProfiles)
{
    constexpr double c_noNumber = std::numeric_limits<double>::quiet_NaN();
    const std::pair<ModelPixel, PixelRgbF> rows[] = {
        {{ColourSpace::Gray, {0.25}, 1}, PixelRgbF(0.25, 0.25, 0.25, 1)},
        {{ColourSpace::Rgb, {-1, 2, 0.5}, 1}, PixelRgbF(-1, 2, 0.5, 1)},
        // Black dominates.
        {{ColourSpace::Cmyk, {1, 0, 0, 1}, 1}, PixelRgbF(0, 0, 0, 1)},
        {{ColourSpace::Cmyk, {0.5, 0.25, 0, 0.2}, 1}, PixelRgbF(0.4f, 0.6f, 0.8f, 1)},
        {{ColourSpace::Cmyk, {c_noNumber, 0, 0, 0}, 1}, PixelRgbF(0, 1, 1, 1)},
        {{ColourSpace::None, {1, 1, 1}, 1}, PixelRgbF(0, 0, 0, 1)},
        {{ColourSpace::Lab, {100, 0, 0}, 1}, PixelRgbF(1, 1, 1, 1)},
        {{ColourSpace::Lab, {0, 0, 0}, 1}, PixelRgbF(0, 0, 0, 1)},
    };
    ICCManager manager = MakeManager();
    for (const auto& [pixel, expected] : rows)
        ExpectNear(manager.MakeRgba(pixel, {}), expected);
}

TEST(ICCManager, ConvertsThroughTheProfileOfTheModel)
{
    ICCManager manager = MakeManager();
    // sRGB with its red and green primaries exchanged.
    std::vector<std::uint8_t> bytes = GetSrgb();
    const auto find = [&bytes](std::string_view tag) {
        return std::search(bytes.begin(), bytes.end(), tag.begin(), tag.end());
    };
    std::swap_ranges(find("rXYZ"), find("rXYZ") + 4, find("gXYZ"));
    ICCManager::ICCProfileSet set;
    set.SetProfile(ColourSpace::Rgb, Add(manager, bytes));
    ExpectNear(manager.MakeRgba({ColourSpace::Rgb, {1, 0, 0}, 0.5f}, set), PixelRgbF(0, 1, 0, 0.5f));
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
        const Profile profile = Add(manager, GetSrgb(signature));
        ASSERT_TRUE(profile) << signature;
        EXPECT_EQ(profile->GetColourSpace(), model) << signature;
        EXPECT_FALSE(profile->GetName().empty());
        EXPECT_EQ(Add(manager, GetSrgb(signature), "again"), profile);
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
        set.SetProfile(ColourSpace::Rgb,
                       manager.AddProfileFromMemory(whole.data(), static_cast<unsigned>(length), nullptr));
        EXPECT_GT(manager.MakeRgba({ColourSpace::Rgb, {1, 1, 1}, 1}, set).red, 0.5f) << length;
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
    const Profile broken = Add(manager, GetSrgb("CMYK"), "broken");
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

TEST(ICCProfileSet, FindsTheProfileOfAFormatsModel)
{
    const Profile rgb = MakeProfile({1}, ColourSpace::Rgb);
    ICCManager::ICCProfileSet set;
    set.SetProfileForFormat(Format::Rgb16, rgb);
    set.SetProfileForFormat(Format::AlphaOnly8, rgb);
    EXPECT_EQ(set.GetProfileFor(ColourSpace::Rgb), rgb);
    EXPECT_EQ(set.GetProfileForFormat(Format::Cmyk8), nullptr);
    EXPECT_EQ(set.GetProfileForFormat(Format::AlphaOnly8), nullptr);
    // Equal bytes are one profile.
    EXPECT_EQ(MakeProfile({1}, ColourSpace::Rgb), rgb);
    EXPECT_FALSE(MakeProfile({2}, ColourSpace::Rgb) == rgb);
    EXPECT_FALSE(MakeProfile({1, 1}, ColourSpace::Rgb) == rgb);
    EXPECT_FALSE(MakeProfile({1}, ColourSpace::Lab) == rgb);
}

} // namespace
