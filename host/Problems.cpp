#include "Problems.h"

namespace Host {

std::string FormatProblem(const std::string& file, int page, Quillet::Error::Type type, long long count)
{
    std::string words = Quillet::GetErrorName(type);
    // The library has no words for this one, and users want some.
    if (type == Quillet::Error::StreamLineEnd) words = "stream keyword without a line end";
    std::string line = "quillet: " + file + ": ";
    if (page > 0) line += "page " + std::to_string(page) + ": ";
    line += words + " (" + std::to_string(type) + ")";
    if (count > 1) line += ", " + std::to_string(count) + " times";
    return line;
}

bool HasFatal(const Problems& problems)
{
    for (const auto& [type, count] : problems) {
        if (!Quillet::ErrorHandler::IsRecoverable(type)) return true;
    }
    return false;
}

} // namespace Host
