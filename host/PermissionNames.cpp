#include "PermissionNames.h"

#include <Quillet/PdfDocument.h>

#include <utility>

namespace Host {

using namespace Quillet;

std::vector<std::string> GetPermissionNames(const PdfDocument& document)
{
    constexpr std::pair<Permissions::Type, const char*> c_names[] = {
        {Permissions::Print, "print"},       {Permissions::PrintHighQuality, "print in high quality"},
        {Permissions::Modify, "modify"},     {Permissions::Assemble, "assemble"},
        {Permissions::Extract, "extract"},   {Permissions::ExtractForAccessibility, "extract for accessibility"},
        {Permissions::Annotate, "annotate"}, {Permissions::FillForms, "fill forms"},
    };
    std::vector<std::string> names;
    for (const auto& [permission, name] : c_names) {
        if (document.HasPermissions(permission)) names.emplace_back(name);
    }
    return names;
}

} // namespace Host
