#include <Kernel/AES.h>
#include <Kernel/ARC4.h>
#include <Kernel/PreparePassword.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>

namespace Kernel {
namespace {

std::string ToHex(std::string_view bytes)
{
    std::string hex;
    for (char c : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(c));
        hex += digits;
    }
    return hex;
}

const std::string c_vector = "sixteen letters.";
const std::string c_key = "sixteen for keys";

TEST(AESTest, TakesOffAFillerThatIsOne)
{
    const std::string data = "fifteen letters";
    const struct
    {
        std::string plain;
        std::size_t rest;
        std::size_t size;
    } rows[] = {
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
    for (const auto& row : rows) {
        std::string bytes = row.plain;
        AES::Encrypt(bytes, c_key, c_vector);
        bytes.append(row.rest, 'r');
        std::string out(bytes.size(), '?');
        const std::size_t size = AES::Decrypt(out.data(), bytes, c_key, c_vector, AES::Filler::Count);
        EXPECT_EQ(size, row.size);
        EXPECT_EQ(out.substr(0, size), row.plain.substr(0, size));
    }
}

TEST(ARC4Test, GoesOnFromItsState)
{
    ARC4 cipher("Key");
    std::string bytes = "Plaintext";
    cipher.Crypt(bytes.data(), std::string_view(bytes).substr(0, 4));
    cipher.Crypt(bytes.data() + 4, std::string_view(bytes).substr(4));
    EXPECT_EQ(ToHex(bytes), "bbf316e8d940af0ad3");
    // Keys that no file should have.
    EXPECT_NO_FATAL_FAILURE(ARC4("").Crypt(bytes.data(), bytes));
    EXPECT_NO_FATAL_FAILURE(ARC4(std::string(1000, 'k')).Crypt(bytes.data(), bytes));
}

/// RFC 4013, 3, and what else can go wrong.
TEST(PreparePasswordTest, FollowsSaslprep)
{
    const struct
    {
        std::string text;
        std::optional<std::string> prepared;
    } rows[] = {
        {"I\u00ADX", "IX"},
        {"user", "user"},
        {"USER", "USER"},
        {"\u00AA", "a"},
        {"\u2168", "IX"},
        {"\u0007", std::nullopt},
        {"\u06271", std::nullopt},
        {"a\u00A0b", "a b"},
        {"\uFDFA", std::string("\u0635\u0644\u0649 \u0627\u0644\u0644\u0647 \u0639\u0644\u064A\u0647 "
                               "\u0648\u0633\u0644\u0645")},
        {"", ""},
        {"\xFF", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PreparePassword(row.text), row.prepared) << row.text;
}

} // namespace
} // namespace Kernel
