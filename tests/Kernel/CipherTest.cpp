#include <Kernel/AES.h>
#include <Kernel/ARC4.h>
#include <Kernel/PreparePassword.h>

#include <gtest/gtest.h>

#include <optional>

namespace Kernel {
namespace {

const std::string c_vector = "sixteen letters.";
const std::string c_key = "sixteen for keys";

TEST(AESTest, TakesOffAFillerThatIsOne)
{
    const std::string data = "fifteen letters";
    // What is encrypted, how many bytes follow that, and how many are data.
    const std::tuple<std::string, std::size_t, std::size_t> rows[] = {
        {data + '\1', 0, 15},
        {std::string(16, 'x') + std::string(16, '\x10'), 0, 16},
        {std::string(16, '\x10'), 0, 0},
        // Not a filler: zero, more than a block, bytes that differ.
        {data + '\0', 0, 16},
        {data + '\x11', 0, 16},
        {data.substr(1) + "\1\2", 0, 16},
        // What is no whole block is dropped.
        {data + '\1', 7, 15},
        {"", 9, 0},
    };
    for (const auto& [plain, rest, size] : rows) {
        std::string bytes = plain;
        AES::Encrypt(bytes, c_key, c_vector);
        bytes.append(rest, 'r');
        std::string out(bytes.size(), '?');
        EXPECT_EQ(AES::Decrypt(out.data(), bytes, c_key, c_vector, AES::Filler::Count), size);
        EXPECT_EQ(out.substr(0, size), plain.substr(0, size));
    }
}

TEST(ARC4Test, GoesOnFromItsState)
{
    ARC4 cipher("Key");
    std::string bytes = "Plaintext";
    cipher.Crypt(bytes.data(), std::string_view(bytes).substr(0, 4));
    cipher.Crypt(bytes.data() + 4, std::string_view(bytes).substr(4));
    EXPECT_EQ(bytes, "\xBB\xF3\x16\xE8\xD9\x40\xAF\x0A\xD3");
    // Keys that no file should have.
    EXPECT_NO_FATAL_FAILURE(ARC4("").Crypt(bytes.data(), bytes));
    EXPECT_NO_FATAL_FAILURE(ARC4(std::string(1000, 'k')).Crypt(bytes.data(), bytes));
}

/// RFC 4013, 3, and what else can go wrong.
TEST(PreparePasswordTest, FollowsSaslprep)
{
    const std::string longest = "\u0635\u0644\u0649 \u0627\u0644\u0644\u0647 \u0639\u0644\u064A\u0647 "
                                "\u0648\u0633\u0644\u0645";
    const std::pair<std::string, std::optional<std::string>> rows[] = {
        {"I\u00ADX", "IX"}, {"uSER", "uSER"}, {"\u00AA", "a"},     {"\u2168", "IX"},    {"\u0007", {}},
        {"\u06271", {}},    {"", ""},         {"a\u00A0b", "a b"}, {"\uFDFA", longest}, {"\xFF", {}},
    };
    for (const auto& [text, prepared] : rows)
        EXPECT_EQ(PreparePassword(text), prepared) << text;
}

} // namespace
} // namespace Kernel
