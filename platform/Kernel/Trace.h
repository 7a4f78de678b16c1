#pragma once

#include <Kernel/FormatString.h>

#include <functional>
#include <string_view>

namespace Kernel {

/// Receives each message of the developers' channel, a line with its line end.
using TraceSink = std::function<void(std::string_view)>;

/// Sets where the messages go; an empty function, which is the default, drops them. May be called at any time from any
/// thread, only not by the sink itself: calls of one sink never overlap, and when this returns the former sink is no
/// longer in use.
QUILLET_API void SetTraceSink(TraceSink sink);

QUILLET_API bool IsTracing() noexcept;
QUILLET_API void WriteTrace(std::string_view message);

/// A message for developers, not for users; placeholders as in `FormatString`. Nothing is formatted while no sink is
/// set.
template <typename... Arguments>
void Trace(std::string_view format, const Arguments&... arguments)
{
    if (IsTracing()) WriteTrace(FormatString(format, arguments...));
}

} // namespace Kernel
