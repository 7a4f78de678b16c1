#pragma once

#include "fonts/FontEncoding.h"

#include <string>

namespace Quillet {

/// The predefined CMap of that name (ISO 32000-2, 9.7.5.2), from the files that come with the library; the identity for
/// a name without a file. Each is read once in a process; any number of threads may ask.
QUILLET_API Kernel::Counted<const FontEncoding> GetStandardCMap(const std::string& name);

/// Two bytes, each code standing for itself.
QUILLET_API Kernel::Counted<const FontEncoding> MakeIdentityCMap();

/// From the CIDs of an encoding's character collection to characters; null for one that names no collection.
QUILLET_API Kernel::Counted<const FontEncoding> GetCidToUnicode(const Kernel::Counted<const FontEncoding>& encoding);
/// The same by name, for one of Adobe's collections that are in use; null for any other.
QUILLET_API Kernel::Counted<const FontEncoding> GetCidToUnicode(const std::string& registry,
                                                                const std::string& ordering);

} // namespace Quillet
