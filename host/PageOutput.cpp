#include "PageOutput.h"

#include "Options.h"
#include "PageNames.h"
#include "exporters/Format.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace Host {

namespace {

std::optional<WriteFailure> Check(bool isGood, const std::string& name, const OutputFile& file)
{
    if (isGood) return std::nullopt;
    return WriteFailure{name, file.GetFailure()};
}

} // namespace

std::optional<WriteFailure> PageOutput::CheckPlace() const
{
    std::error_code error;
    if (!std::filesystem::is_directory(options.out, error)) return std::nullopt;
    return WriteFailure{options.out, std::make_error_code(std::errc::is_a_directory).message()};
}

std::optional<WriteFailure> PageOutput::Begin(const LongText& head)
{
    if (options.format->isFileAPage) return std::nullopt;
    whole = std::make_unique<OutputFile>(options.out);
    whole->Write(head);
    return Check(whole->IsGood(), options.out, *whole);
}

std::optional<WriteFailure> PageOutput::Write(const LongText& page, int index)
{
    if (whole) {
        whole->Write(isFirst ? std::string_view() : options.format->separator);
        whole->Write(page);
        isFirst = false;
        return Check(whole->IsGood(), options.out, *whole);
    }
    const std::string name = isFileAPage ? MakePageName(options.out, index + 1) : options.out;
    OutputFile file(name);
    file.Write(page);
    return Check(file.Commit(), name, file);
}

std::optional<WriteFailure> PageOutput::End(const LongText& tail)
{
    if (!whole) return std::nullopt;
    whole->Write(tail);
    return Check(whole->Commit(), options.out, *whole);
}

} // namespace Host
