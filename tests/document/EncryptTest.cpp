#include "document/DocumentState.h"
#include "document/Encrypt.h"

#include "document/Dictionary.h"
#include "filters/CryptFilter.h"
#include "filters/Stream.h"
#include "support/BytesFilter.h"
#include "support/PdfBuilder.h"
#include "support/Qpdf.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>

#include <Kernel/AES.h>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace Quillet {
namespace {

using testing::ElementsAre;

const std::string c_zeros(64, '0');
/// What revision 4 writes for an empty user password, an owner entry of zeros, permissions of -4 and no id.
const std::string c_user = "/U <c3a851ce4b34ea9b1e509eadc697723d> /O <" + c_zeros + "> /P -4 ";
const std::string c_clearUser = "/U <57af25bd3c0bbd6d3a69a68f68647561> /O <" + c_zeros + "> /P -4 ";
const std::string c_revision4 = "/Filter /Standard /V 4 /R 4 /Length 128 ";
const std::string c_identity = "/StmF /Identity /StrF /Identity ";

/// A page whose encryption dictionary, object 5, has the given entries. Its title is in object 6, a stream that names a
/// filter of its own in object 7, and metadata in object 8.
std::string MakeProtected(const std::string& entries, const std::string& cryptParams = "/Name /Identity")
{
    PdfBuilder builder = MakePageBuilder(
        "0 0 10 10 re f",
        {.objects = {"<< " + entries + " >>", "<< /Title (plain) >>",
                     PdfBuilder::MakeStream("clear", "/Filter /Crypt /DecodeParms << " + cryptParams + " >>"),
                     PdfBuilder::MakeStream("<xmp>")},
         .catalog = "/Metadata 8 0 R"});
    builder.trailer += " /Encrypt 5 0 R /Info 6 0 R";
    return builder.Build();
}

std::string ReadStream(const Ref& ref)
{
    std::vector<char> bytes;
    Stream(ref).ReadAll(bytes);
    return {bytes.begin(), bytes.end()};
}

TEST(EncryptTest, TellsWhatItDoesNotRead)
{
    const struct
    {
        std::string entries;
        int error;
        DecryptLevel level;
    } rows[] = {
        {"/Filter /Adobe.PubSec /V 4 /R 4", Error::UnimplementedEncryption, DecryptLevelUnsupported},
        {"/V 1 /R 2", Error::UnimplementedEncryption, DecryptLevelUnsupported},
        {"/Filter /Standard /V 1 /R 1", Error::Encrypt, DecryptLevelLocked},
        {"/Filter /Standard /V 5 /R 7", Error::Encrypt, DecryptLevelLocked},
        {"/Filter /Standard /V 1", Error::Encrypt, DecryptLevelLocked},
        {"/Filter /Standard /V 2 /R 3 /Length 44", Error::Encrypt, DecryptLevelLocked},
        {"/Filter /Standard /V 2 /R 3 /Length 32", Error::Encrypt, DecryptLevelLocked},
        {"/Filter /Standard /V 2 /R 3 /Length 264", Error::Encrypt, DecryptLevelLocked},
        {"/Filter /Standard /V 2 /R 3 /Length -128", Error::Encrypt, DecryptLevelLocked},
        {"/Type /Font /Filter /Standard /V 2 /R 3", Error::Encrypt, DecryptLevelLocked},
        // From V 4 on the names of the filters count, also when they are missing.
        {c_revision4, Error::UnimplementedEncryption, DecryptLevelUnsupported},
        {c_revision4 + "/StmF /A /StrF /A", Error::UnimplementedEncryption, DecryptLevelUnsupported},
        {c_revision4 + "/StmF /A /StrF /A /CF << /B << /CFM /V2 >> >>", Error::UnimplementedEncryption,
         DecryptLevelUnsupported},
        {c_revision4 + "/StmF /A /StrF /Identity /CF << /A << /CFM /None >> >>", Error::UnimplementedEncryption,
         DecryptLevelUnsupported},
        {c_revision4 + "/StmF /A /StrF /A /CF << /A /A >>", Error::Encrypt, DecryptLevelLocked},
        {c_revision4 + "/StmF /A /StrF /A /CF 5 0 R", Error::UnimplementedEncryption, DecryptLevelUnsupported},
        {c_revision4 + "/StmF /CF /StrF /CF /CF 5 0 R", Error::UnimplementedEncryption, DecryptLevelUnsupported},
        // No password fits entries that are missing, too short or absurd.
        {"/Filter /Standard /V 1 /R 2", Error::Password, DecryptLevelLocked},
        {"/Filter /Standard /V 2 /R 3 /Length 256 /U () /O () /P 99999999999", Error::Password, DecryptLevelLocked},
        {"/Filter /Standard /V 5 /R 5 /Length 256 " + c_identity, Error::Password, DecryptLevelLocked},
        {"/Filter /Standard /V 5 /R 6 /U (" + std::string(2000, 'u') + ") /O (o) " + c_identity, Error::Password,
         DecryptLevelLocked},
    };
    for (const auto& row : rows) {
        for (const char* password : {"", "a"}) {
            TestDocument document(MakeProtected(row.entries));
            EXPECT_THAT(document.GetErrors(), testing::Contains(row.error)) << row.entries;
            EXPECT_EQ(document.isOpen, row.error == Error::Password) << row.entries;
            document->GetState().encrypt.Read(Ref(), {});
            document->GetState().encrypt.password = password;
            try {
                document->GetState().encrypt.Read(document.GetRef(5), {});
            } catch (Error::Type) {
            }
            if (document.isOpen) {
                EXPECT_EQ(document->GetState().encrypt.level, row.level) << row.entries;
            }
        }
    }
}

TEST(EncryptTest, IdentityLeavesEverythingAsItIs)
{
    TestDocument document(MakeProtected(c_revision4 + c_user + c_identity));
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelUser);
    EXPECT_TRUE(document->HasUserPermissions());
    EXPECT_FALSE(document->HasOwnerPermissions());
    EXPECT_EQ(document->GetTitle(), "plain");
    EXPECT_EQ(ReadStream(document.GetRef(7)), "clear");
    EXPECT_EQ(document.Build()->children.size(), 1u);
    EXPECT_EQ(document->GetEncryptionMethod(), "none");
    EXPECT_THAT(document.GetErrors(), ElementsAre());
}

TEST(EncryptTest, StreamsNameAFilterOfTheirOwn)
{
    const std::string rc4 = c_revision4 + c_user + "/StmF /A /StrF /A /CF << /A << /CFM /V2 /Length 16 >> >>";
    const struct
    {
        std::string params;
        const char* text;
        bool isBroken;
    } rows[] = {
        {"/Name /Identity", "clear", false},
        // The list of filters stands in the encryption dictionary, where a stream's parameters do not look.
        {"/Name /A", "", true},
        {"", "", true},
    };
    for (const auto& row : rows) {
        TestDocument document(MakeProtected(rc4, row.params));
        std::string text;
        bool isBroken = false;
        try {
            text = ReadStream(document.GetRef(7));
        } catch (Error::Type type) {
            isBroken = type == Error::Encrypt;
        }
        EXPECT_EQ(isBroken, row.isBroken) << row.params;
        EXPECT_EQ(text, row.text);
        // Strings are decrypted, and were not encrypted here; those of the dictionary itself are clear.
        EXPECT_NE(document->GetTitle(), "plain");
        EXPECT_EQ(Dictionary(document.GetRef(5)).GetStringBuf("U").front(), '\xC3');
    }
}

TEST(EncryptTest, KeepsMetadataInClearReadable)
{
    const std::string filters = "/StmF /A /StrF /A /CF << /A << /CFM /AESV2 >> >> ";
    for (const bool isOpen : {true, false}) {
        std::string entries = c_revision4;
        entries.append(isOpen ? c_clearUser : c_user).append(filters).append("/EncryptMetadata false");
        TestDocument document(MakeProtected(entries));
        EXPECT_EQ(document->GetDecryptLevel(), isOpen ? DecryptLevelUser : DecryptLevelLocked);
        // The stream does not say itself that it is clear, so that a key is used on it; without one it is just read.
        EXPECT_EQ(document->GetXmpMetadata(), isOpen ? "" : "<xmp>");
    }
    TestDocument locked(MakeProtected(c_revision4 + filters));
    EXPECT_EQ(locked->GetXmpMetadata(), "");
}

TEST(EncryptTest, OldPermissionsImplyNewOnes)
{
    const struct
    {
        int permissions;
        int effective;
    } rows[] = {{20, 20 | 2048 | 512}, {16 | 2048, 16 | 512}, {4 | 512, 4 | 2048}, {512 | 2048 | 8, 8}};
    for (const auto& row : rows) {
        TestDocument document(MakeProtected("/Filter /Standard /V 1 /R 2 /P " + std::to_string(row.permissions)));
        EXPECT_EQ(document->GetState().encrypt.effectivePermissions, row.effective);
        EXPECT_FALSE(document->HasPermissions(Permissions::Print));
    }
    TestDocument later(MakeProtected("/Filter /Standard /V 2 /R 3 /P 20"));
    EXPECT_EQ(later->GetState().encrypt.effectivePermissions, 20);
    later->GetState().encrypt.level = DecryptLevelUser;
    EXPECT_TRUE(later->HasPermissions(Permissions::Print));
    EXPECT_FALSE(later->HasPermissions(static_cast<Permissions::Type>(Permissions::Print | Permissions::Modify)));
    later->GetState().encrypt.level = DecryptLevelOwner;
    EXPECT_FALSE(later->IsRestricted());
}

TEST(EncryptTest, CryptorsTakeAnyLengthAndKey)
{
    TestDocument document(MakePagePdf(""));
    Encrypt& encrypt = document->GetState().encrypt;
    encrypt.level = DecryptLevelUser;
    const Ref object = document.GetRef(4);
    for (const auto kind : {Encrypt::Filter::Rc4, Encrypt::Filter::AesV2, Encrypt::Filter::AesV3}) {
        for (const std::size_t keySize : {0u, 5u, 16u, 32u}) {
            encrypt.fileKey.assign(keySize, 'k');
            for (const int length : {0, 5, 16, 128, -1, std::numeric_limits<int>::max()}) {
                for (const std::size_t size : {0u, 1u, 15u, 16u, 17u, 32u, 47u}) {
                    std::vector<char> bytes(size, 'b');
                    encrypt.stringFilter = {kind, length};
                    encrypt.DecryptBuf(object, bytes);
                    const std::size_t whole = size < 16 ? 0 : (size - 16) / 16 * 16;
                    EXPECT_LE(bytes.size(), kind == Encrypt::Filter::Rc4 ? size : whole);
                    if (kind == Encrypt::Filter::Rc4) {
                        EXPECT_EQ(bytes.size(), size);
                    }
                }
            }
        }
    }
    encrypt.stringFilter = {};
    std::vector<char> bytes(3);
    EXPECT_THROW(encrypt.DecryptBuf(object, bytes), Error::Type);
}

TEST(CryptFilterTest, ServesItsSourceWithAndWithoutAKey)
{
    for (const bool isEncrypted : {false, true}) {
        const std::string text(100, 'x');
        CryptFilter filter;
        std::string bytes = text;
        if (isEncrypted) {
            const std::vector<char> key(16, 'k');
            const Ref object(nullptr, 3, 0);
            filter.cryptor = Kernel::MakeCounted<Encrypt::ArcV4ObjectCryptor>(key, 16, object);
            Encrypt::ArcV4ObjectCryptor(key, 16, object).Decrypt(bytes.data(), bytes.data(), 100);
        }
        filter.SetSource(Kernel::MakeCounted<BytesFilter>(bytes, 7));
        EXPECT_EQ(filter.GetEstimatedLength(), 100u);
        char buffer[60];
        EXPECT_EQ(filter.Read(buffer, 60), 60);
        EXPECT_FALSE(filter.AtEnd());
        std::vector<char> rest;
        filter.ReadAll(rest);
        EXPECT_EQ(std::string(buffer, 60) + std::string(rest.begin(), rest.end()), text);
        EXPECT_EQ(filter.Read(buffer, 60), 0);
        EXPECT_TRUE(filter.AtEnd());
    }
}

TEST(EncryptTest, APasswordComesBeforeOrAfterOpening)
{
    const std::string file = RunQpdf(MakePagePdf("0 0 10 10 re f"),
                                     {"--object-streams=generate", "--encrypt", "user", "owner", "256", "--"});
    TestDocument document(file);
    EXPECT_TRUE(document.isOpen);
    EXPECT_THAT(document.GetErrors(), ElementsAre(Error::Password));
    // The page tree lies in an object stream.
    EXPECT_EQ(document->GetPageCount(), 0);

    document->SetPassword("user");
    EXPECT_EQ(document->GetState().encrypt.level, DecryptLevelUser);
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelLocked);
    EXPECT_TRUE(document->OpenMemory(file.data(), file.size()));
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelUser);
    EXPECT_EQ(document->GetPageCount(), 1);
    document->SetPassword("owner");
    EXPECT_EQ(document->GetState().encrypt.level, DecryptLevelOwner);
    document->SetPassword("wrong");
    EXPECT_EQ(document->GetState().encrypt.level, DecryptLevelLocked);

    document->Close();
    EXPECT_EQ(document->GetState().encrypt.level, DecryptLevelNone);
    EXPECT_EQ(document->GetState().encrypt.password, "");
    EXPECT_EQ(document->GetState().encrypt.fileKey.size(), 0u);
    EXPECT_TRUE(document->OpenMemory(file.data(), file.size()));
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelLocked);
    const std::string open = MakePagePdf("");
    EXPECT_TRUE(document->OpenMemory(open.data(), open.size()));
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelOpen);

    for (const auto& [password, isCorrect] : {std::pair{"user", true}, {"owner", true}, {"wrong", false}, {"", false}})
        EXPECT_EQ(PdfDocument::IsCorrectPassword(file.data(), file.size(), password), isCorrect) << password;
    EXPECT_TRUE(PdfDocument::IsRestricted(file.data(), file.size()));
    EXPECT_FALSE(PdfDocument::IsRestricted(open.data(), open.size()));
}

} // namespace
} // namespace Quillet
