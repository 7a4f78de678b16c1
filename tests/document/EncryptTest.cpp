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
    constexpr int c_unimplemented = Error::UnimplementedEncryption;
    const std::pair<std::string, int> rows[] = {
        {"/Filter /Adobe.PubSec /V 4 /R 4", c_unimplemented},
        {"/V 1 /R 2", c_unimplemented},
        {"/Filter /Standard /V 1 /R 1", Error::Encrypt},
        {"/Filter /Standard /V 5 /R 7", Error::Encrypt},
        {"/Filter /Standard /V 1", Error::Encrypt},
        {"/Filter /Standard /V 2 /R 3 /Length 44", Error::Encrypt},
        {"/Filter /Standard /V 2 /R 3 /Length 32", Error::Encrypt},
        {"/Filter /Standard /V 2 /R 3 /Length 264", Error::Encrypt},
        {"/Filter /Standard /V 2 /R 3 /Length -128", Error::Encrypt},
        {"/Type /Font /Filter /Standard /V 2 /R 3", Error::Encrypt},
        // From V 4 on the names of the filters count, also when they are missing.
        {c_revision4, c_unimplemented},
        {c_revision4 + "/StmF /A /StrF /A", c_unimplemented},
        {c_revision4 + "/StmF /A /StrF /A /CF << /B << /CFM /V2 >> >>", c_unimplemented},
        {c_revision4 + "/StmF /A /StrF /Identity /CF << /A << /CFM /None >> >>", c_unimplemented},
        {c_revision4 + "/StmF /A /StrF /A /CF << /A /A >>", Error::Encrypt},
        {c_revision4 + "/StmF /A /StrF /A /CF 5 0 R", c_unimplemented},
        {c_revision4 + "/StmF /CF /StrF /CF /CF 5 0 R", c_unimplemented},
        // No password fits entries that are missing, too short or absurd.
        {"/Filter /Standard /V 1 /R 2", Error::Password},
        {"/Filter /Standard /V 2 /R 3 /Length 256 /U () /O () /P 99999999999", Error::Password},
        {"/Filter /Standard /V 5 /R 5 /Length 256 " + c_identity, Error::Password},
        {"/Filter /Standard /V 5 /R 6 /U (" + std::string(2000, 'u') + ") /O (o) " + c_identity, Error::Password},
    };
    for (const auto& [entries, error] : rows) {
        SCOPED_TRACE(entries);
        TestDocument document(MakeProtected(entries));
        EXPECT_THAT(document.GetErrors(), testing::Contains(error));
        EXPECT_EQ(document.isOpen, error == Error::Password);
        document->SetPassword("a");
        if (document.isOpen) {
            EXPECT_EQ(document->GetState().encrypt.level, DecryptLevelLocked);
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
    for (const std::string params : {"/Name /Identity", "/Name /A", ""}) {
        TestDocument document(MakeProtected(rc4, params));
        std::string text;
        try {
            text = ReadStream(document.GetRef(7));
        } catch (Error::Type type) {
            EXPECT_EQ(type, Error::Encrypt);
            text = "refused";
        }
        // The list of filters stands in the encryption dictionary, where a stream's parameters do not look.
        EXPECT_EQ(text, params == "/Name /Identity" ? "clear" : "refused");
        // Strings are decrypted, and were not encrypted here; those of the dictionary itself are clear.
        EXPECT_NE(document->GetTitle(), "plain");
        EXPECT_EQ(Dictionary(document.GetRef(5)).GetStringBuf("U").front(), '\xC3');
    }
}

TEST(EncryptTest, KeepsMetadataInClearReadable)
{
    const std::string aes = c_revision4 + "/StmF /A /StrF /A /CF << /A << /CFM /AESV2 >> >> ";
    for (const bool isOpen : {true, false}) {
        TestDocument document(MakeProtected(aes + (isOpen ? c_clearUser : c_user) + "/EncryptMetadata false"));
        EXPECT_EQ(document->GetDecryptLevel(), isOpen ? DecryptLevelUser : DecryptLevelLocked);
        // The stream does not say itself that it is clear, so that a key is used on it; without one it is just read.
        EXPECT_EQ(document->GetXmpMetadata(), isOpen ? "" : "<xmp>");
    }
    TestDocument locked(MakeProtected(aes));
    EXPECT_EQ(locked->GetXmpMetadata(), "");
}

TEST(EncryptTest, OldPermissionsImplyNewOnes)
{
    const std::pair<int, int> rows[] = {
        {20, 20 | 2048 | 512}, {16 | 2048, 16 | 512}, {4 | 512, 4 | 2048}, {512 | 2048 | 8, 8}};
    for (const auto& [permissions, effective] : rows) {
        TestDocument document(MakeProtected("/Filter /Standard /V 1 /R 2 /P " + std::to_string(permissions)));
        EXPECT_EQ(document->GetState().encrypt.effectivePermissions, effective);
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
                    const bool isRc4 = kind == Encrypt::Filter::Rc4;
                    EXPECT_LE(bytes.size(), isRc4 ? size : (std::max<std::size_t>(size, 16) - 16) / 16 * 16);
                    EXPECT_TRUE(!isRc4 || bytes.size() == size);
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
    const std::vector<char> key(16, 'k');
    for (const bool isEncrypted : {false, true}) {
        std::string bytes(100, 'x');
        CryptFilter filter;
        if (isEncrypted) {
            filter.cryptor = Kernel::MakeCounted<Encrypt::ArcV4ObjectCryptor>(key, 16, Ref(nullptr, 3, 0));
            Encrypt::ArcV4ObjectCryptor(key, 16, Ref(nullptr, 3, 0)).Decrypt(bytes.data(), bytes.data(), 100);
        }
        filter.SetSource(Kernel::MakeCounted<BytesFilter>(bytes, 7));
        EXPECT_EQ(filter.GetEstimatedLength(), 100u);
        std::vector<char> text(60);
        EXPECT_EQ(filter.Read(text.data(), 60), 60);
        EXPECT_FALSE(filter.AtEnd());
        filter.ReadAll(text);
        EXPECT_EQ(text, std::vector<char>(100, 'x'));
        EXPECT_EQ(filter.Read(text.data(), 60), 0);
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
    const Encrypt& closed = document->GetState().encrypt;
    EXPECT_EQ(closed.level, DecryptLevelNone);
    EXPECT_TRUE(closed.password.empty() && closed.fileKey.empty());
    EXPECT_TRUE(document->OpenMemory(file.data(), file.size()));
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelLocked);
    const std::string open = MakePagePdf("");
    EXPECT_TRUE(document->OpenMemory(open.data(), open.size()));
    EXPECT_EQ(document->GetDecryptLevel(), DecryptLevelOpen);

    for (const auto& [password, isCorrect] : {std::pair{"user", true}, {"owner", true}, {"wrong", false}, {"", false}})
        EXPECT_EQ(PdfDocument::IsCorrectPassword(file.data(), file.size(), password), isCorrect) << password;
    EXPECT_TRUE(PdfDocument::IsRestricted(file.data(), file.size()));
    EXPECT_FALSE(PdfDocument::IsRestricted(open.data(), open.size()));
    EXPECT_FALSE(PdfDocument::IsRestricted("/no/such/file.pdf"));
    EXPECT_TRUE(PdfDocument::IsCorrectPassword(open.data(), open.size(), "any"));
    EXPECT_TRUE(PdfDocument::IsCorrectPassword("/no/such/file.pdf", "any"));
}

} // namespace
} // namespace Quillet
