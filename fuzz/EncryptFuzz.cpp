/// Encrypted documents. The input is the entries of an encryption dictionary, or, for FUZZ_DOCUMENT, a whole file; the
/// password is "user". What no password opens is opened by hand, so that the ciphers get to work on whatever they find.

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "document/DocumentState.h"
#include "document/Encrypt.h"
#include "filters/Stream.h"

#include <Quillet/GroupObject.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace Quillet;

std::string MakeFile(std::string input)
{
#ifdef FUZZ_DOCUMENT
    return input;
#else
    PdfBuilder builder = MakePageBuilder(
        "0 0 10 10 re f (text) Tj",
        {.objects = {"<< " + std::move(input) + " >>", "<< /Title (sixteen bytes or more of them) /Author () >>",
                     PdfBuilder::MakeStream(std::string(99, 'x'),
                                            "/Filter /Crypt /DecodeParms << /Name /A /CF 5 0 R >>")},
         .catalog = "/Metadata 7 0 R"});
    builder.trailer += " /Encrypt 5 0 R /Info 6 0 R";
    return builder.Build();
#endif
}

void ReadAll(TestDocument& document)
{
    try {
        (void)document->GetTitle();
        (void)document->GetAuthor();
        (void)document->GetEncryptionMethod();
        (void)document->IsRestricted();
        for (int number = 1; number <= 10; ++number) {
            std::vector<char> bytes;
            const Ref ref = document.GetRef(number);
            if (!ref.IsNull()) Stream(ref).ReadAll(bytes);
        }
        if (document->GetPageCount() > 0) document.Build();
    } catch (Error::Type) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TestDocument document(MakeFile(std::string(reinterpret_cast<const char*>(data), size)));
    if (!document.isOpen) return 0;
    ReadAll(document);
    document->SetPassword("user");
    if (!Encrypt::HasUserPermissions(document->GetState().encrypt.level)) {
        document->GetState().encrypt.fileKey.assign(static_cast<std::size_t>(document->GetState().encrypt.keyLength),
                                                    'k');
        document->GetState().encrypt.level = DecryptLevelUser;
    }
    ReadAll(document);
    document->Close();
    return 0;
}
