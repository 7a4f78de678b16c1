#pragma once

namespace Quillet {

/// How far a document can be read.
enum DecryptLevel : int {
    DecryptLevelNone = 0,        ///< Nothing read yet.
    DecryptLevelUnsupported = 1, ///< Encrypted in a way that is not implemented.
    DecryptLevelLocked = 2,      ///< Encrypted, and no password fits yet.
    DecryptLevelUser = 3,        ///< The user password fits.
    DecryptLevelOwner = 4,       ///< The owner password fits.
    DecryptLevelOpen = 5,        ///< Not encrypted.
};

/// Bits of the permissions of an encrypted document (ISO 32000-2, table 22).
namespace Permissions {

enum Type : int {
    Print = 4,
    Modify = 8,
    Extract = 16,
    Annotate = 32,
    FillForms = 256,
    ExtractForAccessibility = 512,
    Assemble = 1024,
    PrintHighQuality = 2048,
    All = 3900,
};

} // namespace Permissions

} // namespace Quillet
