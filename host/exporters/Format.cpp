#include "exporters/Format.h"

#include "exporters/HtmlExporter.h"
#include "exporters/JsonExporter.h"
#include "exporters/SvgExporter.h"
#include "exporters/TxtExporter.h"

#include <algorithm>
#include <iterator>

namespace Host {

namespace {

constexpr Format c_formats[] = {
    {"json", false, MakePageJson, MakeJsonHead, ",\n", MakeJsonTail},
    {"svg", true, MakeSvg, nullptr, "", nullptr},
    {"txt", false, MakeTxt, nullptr, "\f", nullptr},
    {"html", false, MakePageHtml, MakeHtmlHead, "", MakeHtmlTail},
};

} // namespace

const Format* FindFormat(std::string_view name)
{
    const auto toLower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    std::string lower;
    std::ranges::transform(name, std::back_inserter(lower), toLower);
    const auto found = std::ranges::find(c_formats, lower, &Format::name);
    return found == std::end(c_formats) ? nullptr : found;
}

std::string GetFormatNames(std::string_view separator, std::string_view lastSeparator)
{
    std::string names;
    for (const Format& format : c_formats) {
        if (!names.empty()) names += &format == std::end(c_formats) - 1 ? lastSeparator : separator;
        names += format.name;
    }
    return names;
}

} // namespace Host
