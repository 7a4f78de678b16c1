#include "document/FileSource.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cstdio>

namespace Quillet {

void FileSource::Open(const std::string& path)
{
    if (!Check(file.Open(path, "rb"), Error::Fopen)) return;
    size = static_cast<unsigned long long>(std::max(Kernel::File::GetSize(path), 0LL));
    name = path;
    baseOffset = 0;
}

int FileSource::Read(unsigned long long pos, char* buf, int count)
{
    const unsigned long long start = pos + baseOffset;
    if (!Check(start >= pos && start <= size && file.GetHandle(), Error::FileOp)) return 0;
    if (count <= 0 || !Budget::Spend(Limits::c_lookUpUnits)) return 0;
    if (fseeko(file.GetHandle(), static_cast<off_t>(start), SEEK_SET) != 0) return 0;
    return static_cast<int>(std::fread(buf, 1, static_cast<std::size_t>(count), file.GetHandle()));
}

} // namespace Quillet
