#include "Problems.h"

namespace Host {

std::string FormatProblem(const std::string& file, int page, Quillet::Error::Type type, long long count)
{
    std::string words = Quillet::GetErrorName(type);
    // The library has no words for this one, and users want some.
    if (type == Quillet::Error::StreamLineEnd) words = "stream keyword without a line end";
    words += " (" + std::to_string(type) + ")";
    if (count > 1) words += ", " + std::to_string(count) + " times";
    return FormatProblem(file, page, words);
}

std::string FormatProblem(const std::string& file, int page, const std::string& words)
{
    const std::string place = page > 0 ? "page " + std::to_string(page) + ": " : "";
    return "quillet: " + file + ": " + place + words;
}

bool HasFatal(const Problems& problems)
{
    for (const auto& [type, count] : problems) {
        if (!Quillet::ErrorHandler::IsRecoverable(type)) return true;
    }
    return false;
}

} // namespace Host
