/// CMaps: the bytes up to the first 0 are a CMap, those behind it text that is decoded by it. Without a 0, the CMap is
/// the text as well.

#include "document/MemorySource.h"
#include "fonts/CMapInterpreter.h"

#include <Quillet/Budget.h>
#include <Quillet/Error.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace Quillet;

/// Enough for every operator of the longest input.
constexpr long long c_work = 8'000'000;

void Decode(const FontEncoding& encoding, const std::vector<char>& text)
{
    int pos = 0;
    while (pos < static_cast<int>(text.size())) {
        const int before = pos;
        int font = 0;
        int code = 0;
        encoding.AdvanceCharCode(font, code, pos, text);
        // Text that is no code must come to its end, too.
        if (pos <= before) std::abort();
        if (encoding.GetMappedSequence(code).count > CodeSequence::c_capacity) std::abort();
        encoding.ContainsMappingFor(code);
        encoding.GetFontIndex(static_cast<unsigned long>(code));
    }
    encoding.GetIndexOfChar(U' ');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t zero = input.find('\0');
    const std::string program = input.substr(0, zero);
    const std::string text = zero == std::string::npos ? input : input.substr(zero + 1);
    const Budget::Scope scope(Kernel::MakeCounted<Budget>(c_work), Budget::Share::All, nullptr);
    try {
        const CMapInterpreter interpreter(Kernel::MakeCounted<MemorySource>(program.data(), program.size()));
        Decode(*interpreter.encoding, {text.begin(), text.end()});
    } catch (Error::Type) {
    }
    return 0;
}
