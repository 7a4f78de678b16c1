#include "filters/LzwFilter.h"

#include "filters/Decoding.h"

#include <bit>
#include <map>

namespace Quillet {
namespace {

enum class FullTable { Clears, Freezes };

constexpr bool c_early = true, c_late = false;

/// A plain encoder. The width of a code follows from how many were written since the table was cleared, and not from a
/// table like the decoder's.
std::string Encode(const std::string& text, bool earlyChange, FullTable fullTable)
{
    BitWriter writer;
    std::map<std::string, int> table;
    int written = 0;
    const auto write = [&](int code) {
        const auto largest = static_cast<unsigned>(257 + written++ + (earlyChange ? 1 : 0));
        writer.Write(code, std::clamp(static_cast<int>(std::bit_width(largest)), 9, 12));
    };
    const auto clear = [&] {
        write(256);
        written = 0;
        table.clear();
        for (int byte = 0; byte < 256; ++byte)
            table[std::string(1, static_cast<char>(byte))] = byte;
    };
    clear();
    std::string known;
    for (const char byte : text) {
        if (table.contains(known + byte)) {
            known += byte;
            continue;
        }
        write(table.at(known));
        const int next = static_cast<int>(table.size()) + 2;
        if (next < 4096) {
            table[known + byte] = next;
        } else if (fullTable == FullTable::Clears) {
            clear();
        }
        known = std::string(1, byte);
    }
    if (!known.empty()) write(table.at(known));
    write(257);
    return writer.bytes;
}

std::string WriteCodes(const std::vector<int>& codes)
{
    BitWriter writer;
    for (const int code : codes)
        writer.Write(code, 9);
    return writer.bytes;
}

TEST(LzwFilter, DecodesWhatAnEncoderWrote)
{
    // The sizes lead through every width, past a full table, and to its edge.
    for (const std::size_t size : {1u, 200u, 254u, 255u, 256u, 257u, 600u, 3000u, 30'000u}) {
        for (const int alphabet : {1, 2, 256}) {
            const std::string text = MakeText(size, alphabet);
            for (const bool earlyChange : {c_late, c_early}) {
                for (const FullTable fullTable : {FullTable::Clears, FullTable::Freezes}) {
                    const Decoding decoding =
                        Decode<LzwFilter>(Encode(text, earlyChange, fullTable), [&](LzwFilter& filter) {
                            filter.SetDecodeParams(MakeParams({{"EarlyChange", earlyChange ? 1 : 0}}));
                        });
                    EXPECT_EQ(decoding.bytes, text) << size << " bytes of " << alphabet;
                    EXPECT_TRUE(decoding.kinds.empty()) << size << " bytes of " << alphabet;
                }
            }
        }
    }
    const std::string text = MakeText(2000, 256);
    EXPECT_EQ(Decode<LzwFilter>(Encode(text, c_early, FullTable::Clears)).bytes, text) << "early without parameters";
    EXPECT_NE(Decode<LzwFilter>(Encode(text, c_late, FullTable::Clears)).bytes, text);
}

TEST(LzwFilter, ReadsCodesAsTheyStand)
{
    const std::tuple<const char*, std::vector<int>, std::string, std::vector<int>> rows[] = {
        {"the code that is being made", {256, 'a', 258, 259, 257}, "aaaaaa", {}},
        {"a first code above 255 gives its low byte", {256, 256 + 'a' - 0x40, 'b', 257}, "!b", {}},
        {"and stands for that byte from then on", {256, 0x100 + 'a', 'b', 258, 257}, "abab", {}},
        {"no clear code at the start", {'a', 'b', 258, 257}, "abab", {}},
        {"strings from before a clear code are gone", {256, 'a', 'b', 256, 'c', 259, 257}, "abc", {Error::General}},
    };
    for (const auto& [name, codes, expected, kinds] : rows) {
        const Decoding decoding = Decode<LzwFilter>(WriteCodes(codes));
        EXPECT_EQ(decoding.bytes, expected) << name;
        EXPECT_EQ(decoding.kinds, kinds) << name;
    }
    const Decoding inlined = Decode<LzwFilter>(WriteCodes({256, 'a', 258, 257}) + " EI",
                                               [](LzwFilter& filter) { filter.SetIsUnbuffered(true); });
    EXPECT_EQ(inlined.bytes, "aaa");
    EXPECT_EQ(inlined.kinds, std::vector<int>{Error::UnimplementedFeature});
    // It knows its end only of data that holds something.
    for (const std::string& input : {std::string(), WriteCodes({256, 'a', 257})}) {
        LzwFilter filter;
        filter.SetSource(Kernel::MakeCounted<BytesFilter>(input));
        Drain(filter, 10);
        EXPECT_EQ(filter.AtEnd(), !input.empty());
    }
}

TEST(LzwFilter, SurvivesAnyCodes)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string input(200 + random() % 3000, '\0');
        for (char& byte : input)
            byte = static_cast<char>(random());
        // Without this most rounds end at once, at a code that is not made yet.
        for (std::size_t i = 0; i < input.size(); i += 3)
            input[i] = static_cast<char>(input[i] & 0x3f);
        LzwFilter filter;
        filter.SetSource(Kernel::MakeCounted<BytesFilter>(input));
        filter.earlyChange = round % 2 == 0;
        std::vector<char> out{'x'};
        filter.DecodeAll(out);
        ASSERT_EQ(out.front(), 'x');
    }
}

} // namespace
} // namespace Quillet
