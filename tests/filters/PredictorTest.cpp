#include "filters/FlateFilter.h"
#include "filters/PngFilter.h"
#include "filters/Tiff2Filter.h"

#include "filters/Decoding.h"

#include <climits>

namespace Quillet {
namespace {

struct Picture
{
    int colors;
    int bitsPerComponent;
    int columns;

    int RowBytes() const { return (columns * colors * bitsPerComponent + 7) / 8; }
    int PixelBytes() const { return (colors * bitsPerComponent + 7) / 8; }
};

std::ostream& operator<<(std::ostream& out, const Picture& picture)
{
    return out << picture.columns << " columns of " << picture.colors << " x " << picture.bitsPerComponent << " bits";
}

template <typename T>
Decoding DecodeRows(const std::string& input, const Picture& picture, int predictor)
{
    return Decode<T>(input, [&](T& filter) {
        filter.SetDecodeParams(MakeParams({{"Predictor", predictor},
                                           {"Colors", picture.colors},
                                           {"BitsPerComponent", picture.bitsPerComponent},
                                           {"Columns", picture.columns}}));
    });
}

/// PNG's own wording, byte by byte: `Orig` of the clause on filtering is what `at` gives.
std::string FilterAsPng(const std::string& rows, const Picture& picture, const std::vector<int>& tags)
{
    const int width = picture.RowBytes();
    const auto at = [&](int x, int y) {
        return x < 0 || y < 0
                   ? 0
                   : static_cast<unsigned char>(rows[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                                     static_cast<std::size_t>(x)]);
    };
    std::string out;
    for (int y = 0; y < static_cast<int>(rows.size()) / width; ++y) {
        const int tag = tags[static_cast<std::size_t>(y) % tags.size()];
        out += static_cast<char>(tag);
        for (int x = 0; x < width; ++x) {
            const int a = at(x - picture.PixelBytes(), y);
            const int b = at(x, y - 1);
            const int c = at(x - picture.PixelBytes(), y - 1);
            const int p = a + b - c;
            const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
            const int paeth = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
            const int predicted[] = {0, a, b, (a + b) / 2, paeth};
            out += static_cast<char>(at(x, y) - predicted[tag]);
        }
    }
    return out;
}

TEST(PngFilter, UndoesWhatTheStandardDescribes)
{
    for (const Picture& picture :
         {Picture{1, 8, 1}, Picture{1, 8, 33}, Picture{3, 8, 20}, Picture{4, 8, 17}, Picture{1, 1, 13},
          Picture{3, 4, 7}, Picture{1, 16, 9}, Picture{3, 16, 5}, Picture{4, 32, 3}}) {
        // Few values, so that the neighbours tie often.
        const std::string rows = MakeText(static_cast<std::size_t>(picture.RowBytes()) * 24, 5);
        for (const std::vector<int>& tags : {std::vector{0}, {1}, {2}, {3}, {4}, {4, 2, 3, 1, 0}}) {
            const Decoding decoding = DecodeRows<PngFilter>(FilterAsPng(rows, picture, tags), picture, 12);
            EXPECT_EQ(decoding.bytes, rows) << picture << ", tag " << tags.front();
            EXPECT_TRUE(decoding.kinds.empty());
        }
    }
}

TEST(PngFilter, EndsWithTheLastWholeRow)
{
    const Picture picture{1, 8, 3};
    const std::string zero(1, '\0');
    const struct
    {
        const char* name;
        std::string input;
        std::string expected;
        std::vector<int> kinds;
    } rows[] = {
        {"a row cut off", zero + "abc" + zero + "de", "abc", {}},
        {"a tag above 4", zero + "abc" + "\5def" + zero + "ghi", "abc", {Error::General}},
    };
    for (const auto& row : rows) {
        const Decoding decoding = DecodeRows<PngFilter>(row.input, picture, 15);
        EXPECT_EQ(decoding.bytes, row.expected) << row.name;
        EXPECT_EQ(decoding.kinds, row.kinds) << row.name;
        EXPECT_TRUE(decoding.isAtEnd) << row.name;
    }
}

void AppendBits(std::string& out, int& bitCount, int value, int width)
{
    for (int bit = width - 1; bit >= 0; --bit, ++bitCount) {
        if (bitCount % 8 == 0) out.push_back('\0');
        out.back() = static_cast<char>(out.back() | (value >> bit & 1) << (7 - bitCount % 8));
    }
}

TEST(Tiff2Filter, AddsEachComponentToTheOneOnItsLeft)
{
    std::mt19937 random(7);
    for (const int colors : {1, 3, 4, 19}) {
        for (const int bits : {1, 2, 3, 4, 5, 6, 7, 8}) {
            for (const int columns : {1, 2, 7, 16}) {
                const Picture picture{colors, bits, columns};
                std::string rows, differences;
                for (int y = 0; y < 3; ++y) {
                    int rowBits = 0, differenceBits = 0;
                    std::vector<int> left(static_cast<std::size_t>(colors), 0);
                    for (int x = 0; x < columns; ++x) {
                        for (int& component : left) {
                            const int sample = static_cast<int>(random() % (1u << bits));
                            AppendBits(rows, rowBits, sample, bits);
                            AppendBits(differences, differenceBits, sample - component, bits);
                            component = sample;
                        }
                    }
                }
                const Decoding decoding =
                    DecodeRows<Tiff2Filter>(differences + std::string(picture.RowBytes() > 1 ? 1 : 0, 'x'), picture, 2);
                EXPECT_EQ(decoding.bytes, rows) << picture << ", with a part of a fourth row";
                EXPECT_TRUE(decoding.kinds.empty());
            }
        }
    }
}

TEST(Tiff2Filter, DropsTheBitsBehindARow)
{
    // Two rows of one pixel with three components of four bits; the last four bits are rubbish.
    EXPECT_EQ(DecodeRows<Tiff2Filter>("\x12\x3f\x45\x6f", Picture{3, 4, 1}, 2).bytes, "\x12\x30\x45\x60");
}

template <typename T>
void ExpectNothing(const Picture& picture, int predictor)
{
    const Decoding decoding = DecodeRows<T>(std::string(100, '\1'), picture, predictor);
    EXPECT_EQ(decoding.bytes, "") << picture;
    EXPECT_EQ(decoding.kinds, std::vector<int>{Error::General}) << picture << ", " << predictor;
}

TEST(Predictors, DeliverNothingForValuesOutOfRange)
{
    ExpectNothing<PngFilter>({1, 8, 1}, 9);
    ExpectNothing<PngFilter>({1, 8, 1}, 16);
    for (const Picture& picture : {Picture{0, 8, 1}, Picture{5, 8, 1}, Picture{1, 33, 1}, Picture{1, 8, -1},
                                   Picture{4, 32, INT_MAX}, Picture{1, INT_MIN, 1}})
        ExpectNothing<PngFilter>(picture, 12);
    for (const Picture& picture : {Picture{0, 8, 1}, Picture{20, 8, 1}, Picture{1, 9, 1}, Picture{1, 8, 0},
                                   Picture{19, 8, INT_MAX}, Picture{1, INT_MIN, 1}})
        ExpectNothing<Tiff2Filter>(picture, 2);
}

TEST(Predictors, TakeNoMoreMemoryThanTheirDataBacks)
{
    PngFilter png;
    png.SetSource(Kernel::MakeCounted<BytesFilter>(std::string(100, '\0')));
    png.SetDecodeParams(MakeParams({{"Predictor", 12}, {"Columns", 900'000'000}}));
    EXPECT_EQ(Drain(png, 4096), "");
    EXPECT_LT(png.currentRow.capacity() + png.previousRow.capacity(), 10'000'000u);
}

TEST(FilterWithPredictor, MakesThePredictorThatTheNumberNames)
{
    enum Made { Nothing, Tiff, Png, Error };
    const std::pair<int, Made> rows[] = {{1, Nothing}, {2, Tiff}, {3, Error}, {9, Error},
                                         {10, Png},    {99, Png}, {-1, Error}};
    for (const auto& [predictor, expected] : rows) {
        ErrorRecorder recorder;
        FlateFilter filter(&recorder);
        filter.SetDecodeParams(MakeParams({{"Predictor", predictor}}));
        const Kernel::Counted<Filter> made = filter.MakePredictor();
        EXPECT_EQ(Kernel::DynamicCast<Tiff2Filter>(made) != nullptr, expected == Tiff) << predictor;
        EXPECT_EQ(Kernel::DynamicCast<PngFilter>(made) != nullptr, expected == Png) << predictor;
        EXPECT_EQ(recorder.kinds, std::vector<int>(expected == Error ? 1 : 0, Quillet::Error::UnimplementedFeature));
    }
}

} // namespace
} // namespace Quillet
