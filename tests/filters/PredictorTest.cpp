#include "filters/FlateFilter.h"
#include "filters/PngFilter.h"
#include "filters/Tiff2Filter.h"

#include "filters/Decoding.h"

#include <climits>

namespace Quillet {
namespace {

struct Picture
{
    int colors, bitsPerComponent, columns;

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
        return x < 0 || y < 0 ? 0 : static_cast<unsigned char>(rows.data()[y * width + x]);
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
    // A row that is cut off, and one with a tag above 4.
    const std::pair<std::string, std::vector<int>> cases[] = {{std::string("\0abc\0de", 7), {}},
                                                              {std::string("\0abc\5def\0ghi", 12), {Error::General}}};
    for (const auto& [input, kinds] : cases) {
        const Decoding decoding = DecodeRows<PngFilter>(input, Picture{1, 8, 3}, 15);
        EXPECT_EQ(decoding.bytes, "abc");
        EXPECT_EQ(decoding.kinds, kinds);
        EXPECT_TRUE(decoding.isAtEnd);
    }
}

TEST(Tiff2Filter, AddsEachComponentToTheOneOnItsLeft)
{
    std::mt19937 random(7);
    for (const int colors : {1, 3, 4, 19}) {
        for (const int bits : {1, 2, 3, 4, 5, 6, 7, 8}) {
            for (const int columns : {1, 2, 7, 16}) {
                const Picture picture{colors, bits, columns};
                BitWriter rows, differences;
                for (int y = 0; y < 3; ++y) {
                    std::vector<int> left(static_cast<std::size_t>(colors), 0);
                    for (int i = 0; i < columns * colors; ++i) {
                        int& component = left[static_cast<std::size_t>(i % colors)];
                        const int sample = static_cast<int>(random() % (1u << bits));
                        rows.Write(sample, bits);
                        differences.Write(sample - component, bits);
                        component = sample;
                    }
                    // Each row starts with a byte.
                    rows.Write(0, (8 - rows.bitCount % 8) % 8);
                    differences.Write(0, (8 - differences.bitCount % 8) % 8);
                }
                const Decoding decoding = DecodeRows<Tiff2Filter>(
                    differences.bytes + std::string(picture.RowBytes() > 1 ? 1 : 0, 'x'), picture, 2);
                EXPECT_EQ(decoding.bytes, rows.bytes) << picture << ", with a part of a fourth row";
                EXPECT_TRUE(decoding.kinds.empty());
            }
        }
    }

    // Two rows of one pixel with three components of four bits; the last four bits are rubbish.
    EXPECT_EQ(DecodeRows<Tiff2Filter>("\x12\x3f\x45\x6f", Picture{3, 4, 1}, 2).bytes, "\x12\x30\x45\x60");
}

TEST(Predictors, DeliverNothingForValuesOutOfRange)
{
    const std::pair<int, Picture> rows[] = {
        {9, {1, 8, 1}},   {16, {1, 8, 1}},        {12, {0, 8, 1}},       {12, {5, 8, 1}},      {12, {1, 33, 1}},
        {12, {1, 8, -1}}, {12, {4, 32, INT_MAX}}, {12, {1, INT_MIN, 1}}, {2, {0, 8, 1}},       {2, {20, 8, 1}},
        {2, {1, 9, 1}},   {2, {1, 8, 0}},         {2, {19, 8, INT_MAX}}, {2, {1, INT_MIN, 1}},
    };
    const std::string input(100, '\1');
    for (const auto& [predictor, picture] : rows) {
        const Decoding decoding = predictor == 2 ? DecodeRows<Tiff2Filter>(input, picture, predictor)
                                                 : DecodeRows<PngFilter>(input, picture, predictor);
        EXPECT_EQ(decoding.bytes, "") << picture;
        EXPECT_EQ(decoding.kinds, std::vector<int>{Error::General}) << picture << ", " << predictor;
    }
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
    for (const int predictor : {-1, 1, 2, 3, 9, 10, 99}) {
        ErrorRecorder recorder;
        FlateFilter filter(&recorder);
        filter.SetDecodeParams(MakeParams({{"Predictor", predictor}}));
        const Kernel::Counted<Filter> made = filter.MakePredictor();
        EXPECT_EQ(Kernel::DynamicCast<Tiff2Filter>(made) != nullptr, predictor == 2) << predictor;
        EXPECT_EQ(Kernel::DynamicCast<PngFilter>(made) != nullptr, predictor >= 10) << predictor;
        const bool isRefused = !made && predictor != 1;
        EXPECT_EQ(recorder.kinds, std::vector<int>(isRefused ? 1 : 0, Error::UnimplementedFeature)) << predictor;
    }
}

} // namespace
} // namespace Quillet
