#pragma once

#include <cstdint>

namespace Raster {

/// The value of a place that a pixel does not have.
struct NoSample
{
    friend constexpr bool operator==(NoSample, NoSample) { return true; }
};

// A channel is a base class of its pixel, so that a sample is reached by the channel's name: `pixel.red`.
#define QUILLET_CHANNEL(Name, sample)                                                                                  \
    template <typename T>                                                                                              \
    struct Name                                                                                                        \
    {                                                                                                                  \
        using Sample = T;                                                                                              \
        T sample{};                                                                                                    \
        friend constexpr bool operator==(const Name&, const Name&) = default;                                          \
    };                                                                                                                 \
    using Name##8 = Name<std::uint8_t>;                                                                                \
    using Name##16 = Name<std::uint16_t>;                                                                              \
    using Name##F = Name<float>;

QUILLET_CHANNEL(Intensity, intensity)
QUILLET_CHANNEL(Red, red)
QUILLET_CHANNEL(Green, green)
QUILLET_CHANNEL(Blue, blue)
QUILLET_CHANNEL(Cyan, cyan)
QUILLET_CHANNEL(Magenta, magenta)
QUILLET_CHANNEL(Yellow, yellow)
QUILLET_CHANNEL(Black, black)
QUILLET_CHANNEL(Lightness, lightness)
QUILLET_CHANNEL(AOpponent, a)
QUILLET_CHANNEL(BOpponent, b)
QUILLET_CHANNEL(Alpha, alpha)

#undef QUILLET_CHANNEL

/// Fills place `Place` of a pixel with fewer channels than five.
template <int Place>
struct NoChannel
{
    using Sample = NoSample;
    constexpr explicit NoChannel(NoSample = {}) {}
    friend constexpr bool operator==(const NoChannel&, const NoChannel&) { return true; }
};

using X2 = NoChannel<2>;
using X3 = NoChannel<3>;
using X4 = NoChannel<4>;
using X5 = NoChannel<5>;

/// One pixel, or one colour, of up to five named channels: `Pixel<RedF, GreenF, BlueF, AlphaF, X5>(1, 0, 0, 1).red`.
///
/// Float samples run from 0 to 1, unsigned ones from 0 to their type's maximum. Made without arguments it is all zeros.
template <typename C1, typename C2, typename C3, typename C4, typename C5>
struct Pixel : C1, C2, C3, C4, C5
{
    constexpr Pixel() = default;
    /// One sample a channel, alpha included; places without a channel take none.
    constexpr explicit Pixel(typename C1::Sample s1, typename C2::Sample s2 = NoSample{},
                             typename C3::Sample s3 = NoSample{}, typename C4::Sample s4 = NoSample{},
                             typename C5::Sample s5 = NoSample{})
        : C1{s1}, C2{s2}, C3{s3}, C4{s4}, C5{s5}
    {}

    friend constexpr bool operator==(const Pixel&, const Pixel&) = default;
};

using PixelGrayF = Pixel<IntensityF, AlphaF, X3, X4, X5>;
using PixelRgbF = Pixel<RedF, GreenF, BlueF, AlphaF, X5>;
using PixelCmykF = Pixel<CyanF, MagentaF, YellowF, BlackF, AlphaF>;
using PixelCmyk8 = Pixel<Cyan8, Magenta8, Yellow8, Black8, Alpha8>;
using PixelLab16 = Pixel<Lightness16, AOpponent16, BOpponent16, Alpha16, X5>;

} // namespace Raster
