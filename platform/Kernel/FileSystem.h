#pragma once

#include <Kernel/Export.h>

#include <filesystem>

namespace Kernel {

/// Where things of this library lie on the machine.
class QUILLET_API FileSystem
{
public:
    /// The folder of the files read at run time, found from where this library was loaded and from nothing else, so
    /// that an installation can be moved and a build tree, which is laid out alike, serves as it stands.
    ///
    /// Found once. The folder may be missing; then opening a file in it fails.
    static const std::filesystem::path& GetResourcesDirectory();

    /// `share/quillet` of the installation whose libraries lie in `libraryDirectory`, which is `lib` or, as
    /// distributions with several architectures have it, a folder in `lib`. Empty if there is none.
    static std::filesystem::path FindResourcesDirectory(const std::filesystem::path& libraryDirectory);
};

} // namespace Kernel
