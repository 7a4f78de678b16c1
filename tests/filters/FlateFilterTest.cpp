#include "filters/FlateFilter.h"

#include "filters/Decoding.h"

#include <zlib.h>

namespace Quillet {
namespace {

std::string Deflate(const std::string& text, int level = 6)
{
    auto size = compressBound(text.size());
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(text.data()), text.size(),
              level);
    packed.resize(size);
    return packed;
}

TEST(FlateFilter, InflatesInEveryStep)
{
    for (const std::size_t size : {0u, 4096u, 4097u, 100'000u}) {
        const std::string text = MakeText(size);
        for (const int level : {0, 1, 9}) {
            const Decoding decoding = Decode<FlateFilter>(Deflate(text, level));
            EXPECT_EQ(decoding.bytes, text) << size << " bytes at level " << level;
            EXPECT_TRUE(decoding.kinds.empty());
        }
    }
}

TEST(FlateFilter, InflatesWhateverPiecesItsSourceGives)
{
    const std::string text = MakeText(20'000);
    for (const int piece : {1, 1000}) {
        FlateFilter filter;
        filter.SetSource(Kernel::MakeCounted<BytesFilter>(Deflate(text), piece));
        EXPECT_EQ(Drain(filter, 501), text) << "pieces of " << piece;
    }
}

TEST(FlateFilter, AsksForMoreThanTheStreamDeclared)
{
    const std::string text = MakeText(60'000);
    const std::string packed = Deflate(text);
    ASSERT_GT(packed.size(), 10'000u);
    for (const std::size_t missing : {std::size_t{1}, std::size_t{4097}, packed.size()}) {
        ErrorRecorder recorder;
        auto source = Kernel::MakeCounted<BytesFilter>(packed + "\nendstream");
        source->declared = packed.size() - missing;
        FlateFilter filter(&recorder);
        filter.SetSource(source);
        EXPECT_EQ(Drain(filter, 4096), text) << missing << " bytes too short";
        EXPECT_TRUE(recorder.kinds.empty());
    }
}

TEST(FlateFilter, DeliversWhatComesBeforeDamage)
{
    const std::string text = MakeText(30'000);
    const std::string packed = Deflate(text, 0);
    std::string badSum = packed;
    badSum.back() = static_cast<char>(badSum.back() ^ 1);
    const struct
    {
        const char* name;
        std::string input;
        std::size_t atLeast;
    } rows[] = {
        {"cut off", packed.substr(0, 20'000), 19'000},
        {"wrong checksum", badSum, 30'000},
        {"rubbish in the middle", packed.substr(0, 32) + std::string(100, '\xff'), 0},
        {"a preset dictionary is asked for", "\x78\xbb\x01\x02\x03\x04", 0},
    };
    for (const auto& row : rows) {
        const Decoding decoding = Decode<FlateFilter>(row.input);
        EXPECT_EQ(decoding.kinds, std::vector<int>{Error::ZLib}) << row.name;
        EXPECT_GE(decoding.bytes.size(), row.atLeast) << row.name;
        if (row.atLeast > 0) {
            EXPECT_EQ(decoding.bytes, text.substr(0, decoding.bytes.size())) << row.name;
        }
        EXPECT_TRUE(decoding.isAtEnd) << row.name;
    }
}

TEST(FlateFilter, LeavesAnUnbufferedSourceBehindItsData)
{
    const std::string text = MakeText(5000);
    const std::string packed = Deflate(text);
    const auto unbuffered = [](FlateFilter& filter) { filter.SetIsUnbuffered(true); };
    const Decoding inlined = Decode<FlateFilter>(packed + " EI Q", unbuffered);
    EXPECT_EQ(inlined.bytes, text);
    EXPECT_EQ(inlined.rest, " EI Q");

    // A stream of its own takes the padding behind the data along.
    const Decoding whole = Decode<FlateFilter>(packed + std::string(4000, ' '));
    EXPECT_EQ(whole.bytes, text);
    EXPECT_EQ(whole.rest, "");
}

} // namespace
} // namespace Quillet
