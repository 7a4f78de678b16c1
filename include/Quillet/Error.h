#pragma once

#include <Kernel/Export.h>

namespace Quillet {

/// The kinds of trouble. Kinds 0 to 8 and 11 are fatal and thrown as the bare value; all others are recorded, and the
/// code goes on with a neutral value.
namespace Error {

enum Type : int {
    Fopen = 0,                    ///< The file cannot be opened.
    FileOp = 1,                   ///< A read beyond the end of a source.
    UnexpectedEof = 2,            ///< Reserved.
    PdfHeader = 3,                ///< No "%PDF-" near the start.
    PdfTrailer = 4,               ///< No usable end-of-file marker or "startxref", or a bad trailer dictionary.
    XRefTable = 5,                ///< Broken cross-reference data.
    PageTree = 6,                 ///< No page tree, a page outside it, a page without a size.
    Encrypt = 7,                  ///< A broken encryption dictionary.
    Catalog = 8,                  ///< No catalog, or one of another type.
    MajorVersion = 9,             ///< Neither PDF 1 nor PDF 2.
    Password = 10,                ///< Encrypted, and no password fits.
    UnimplementedEncryption = 11, ///< An encryption that is not read here.
    General = 12,                 ///< Any fault in an object or in a page's content.
    ZLib = 13,                    ///< Damaged Flate data.
    Ccitt = 14,                   ///< Damaged fax data.
    UnimplementedFeature = 15,
    UnimplementedTextEncoding = 16,
    UnimplementedFilter = 17,
    UnimplementedTransparency = 18,
    UnimplementedFill = 19,
    UnimplementedLineDash = 20, ///< Reserved.
    UnimplementedShading = 21,
    UnimplementedColourProfile = 22,
    StreamLineEnd = 23, ///< The stream keyword is not followed by a line end.
    None = 24,          ///< Never raised: no error yet.
    CutShort = 25,      ///< The work that the document may cause was used up: what there is, is not all.
};

} // namespace Error

/// The fixed English words of a kind, never null; "Unknown error" for a value above 25.
QUILLET_API const char* GetErrorName(Error::Type type);

} // namespace Quillet
