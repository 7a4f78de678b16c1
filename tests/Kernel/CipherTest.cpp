#include <Kernel/AES.h>
#include <Kernel/ARC4.h>
#include <Kernel/Digest.h>
#include <Kernel/PreparePassword.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>

namespace Kernel {
namespace {

std::string FromHex(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

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

const std::string c_vector = FromHex("000102030405060708090a0b0c0d0e0f");
const std::string c_key = FromHex("2b7e151628aed2a6abf7158809cf4f3c");

/// NIST SP 800-38A, F.2, first two blocks.
TEST(AESTest, ChainsBlocksInBothDirections)
{
    const std::string plain = "6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51";
    const struct
    {
        std::string key;
        std::string cipher;
    } rows[] = {
        {c_key, "7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"},
        {FromHex("603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4"),
         "f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"},
    };
    for (const auto& row : rows) {
        std::string bytes = FromHex(plain);
        AES::Encrypt(bytes, row.key, c_vector);
        EXPECT_EQ(ToHex(bytes), row.cipher);
        // In place, with the vector before the data as files have it, and with the data moved to the front.
        bytes.insert(0, c_vector);
        const std::string_view text = bytes;
        const std::size_t size =
            AES::Decrypt(bytes.data(), text.substr(16), row.key, text.substr(0, 16), AES::Filler::None);
        EXPECT_EQ(ToHex(bytes.substr(0, size)), plain);
    }
}

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

TEST(DigestTest, AgreesWithTheStandards)
{
    EXPECT_EQ(ToHex(MD5::Hash("abc")), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(ToHex(Sha256::Hash("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(ToHex(Sha384::Hash("abc")), "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded163"
                                          "1a8b605a43ff5bed8086072ba1e7cc2358baeca134c825a7");
    EXPECT_EQ(ToHex(Sha512::Hash("abc")), "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
                                          "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f");
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
