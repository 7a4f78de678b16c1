#include "filters/FlateFilter.h"

#include "filters/Decoding.h"

namespace Quillet {
namespace {

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
    for (const int piece : {1, 1000}) {
        FlateFilter filter;
        filter.SetSource(Kernel::MakeCounted<BytesFilter>(Deflate(MakeText(20'000)), piece));
        EXPECT_EQ(Drain(filter, 501), MakeText(20'000)) << "pieces of " << piece;
    }
}

TEST(FlateFilter, DeliversWhatComesBeforeDamage)
{
    const std::string text = MakeText(30'000);
    const std::string packed = Deflate(text, 0);
    std::string badSum = packed;
    badSum.back() = static_cast<char>(badSum.back() ^ 1);
    const std::tuple<const char*, std::string, std::size_t> rows[] = {
        {"cut off", packed.substr(0, 20'000), 19'000},
        {"wrong checksum", badSum, 30'000},
        {"rubbish in the middle", packed.substr(0, 32) + std::string(100, '\xff'), 0},
        {"a preset dictionary is asked for", "\x78\xbb\x01\x02\x03\x04", 0},
    };
    for (const auto& [name, input, atLeast] : rows) {
        const Decoding decoding = Decode<FlateFilter>(input);
        EXPECT_EQ(decoding.kinds, std::vector<int>{Error::ZLib}) << name;
        EXPECT_GE(decoding.bytes.size(), atLeast) << name;
        EXPECT_TRUE(atLeast == 0 || text.starts_with(decoding.bytes)) << name;
        EXPECT_TRUE(decoding.isAtEnd) << name;
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
