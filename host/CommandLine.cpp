#include "CommandLine.h"

#include "Convert.h"
#include "ExitStatus.h"
#include "Info.h"
#include "Interrupt.h"
#include "Options.h"
#include "PasswordPrompt.h"
#include "exporters/Format.h"

#include <CLI/CLI.hpp>
#include <Quillet/Version.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace Host {

namespace {

void AddInput(CLI::App& verb, InputOptions& input)
{
    verb.add_option("FILE", input.file, "The PDF document")->required()->type_name(" ");
    CLI::Option* text = verb.add_option("--password", input.password, "Password of a protected document");
    const auto readPassword = [&input](const std::string& path) {
        const auto password = ReadPasswordFile(path);
        if (!password) throw CLI::ValidationError("--password-file", "cannot read " + path);
        input.password = *password;
    };
    verb.add_option_function<std::string>("--password-file", readPassword, "File whose first line is the password")
        ->type_name("FILE")
        ->excludes(text);
    verb.add_flag("--quiet", input.isQuiet, "No progress, and no word about faults that were stepped over");
}

/// An option that takes one of a few words.
template <typename Value>
void AddChoice(CLI::App& verb, const std::string& name, Value& value, const std::string& purpose,
               const std::vector<std::pair<std::string, Value>>& choices)
{
    std::string words;
    for (const auto& choice : choices)
        words += (words.empty() ? "" : "|") + choice.first;
    const auto choose = [&value, name, choices, words](const std::string& word) {
        const auto found = std::ranges::find(choices, word, &std::pair<std::string, Value>::first);
        if (found == choices.end()) throw CLI::ValidationError(name, word + " is none of " + words);
        value = found->second;
    };
    verb.add_option_function<std::string>(name, choose, purpose)->type_name(words);
}

void AddConvert(CLI::App& verb, ConvertOptions& options, std::string& formatName)
{
    AddInput(verb, options.input);
    verb.add_option("-o,--output", options.out,
                    "Where to write; several pages of a format with one file a page become "
                    "OUT-1.svg, OUT-2.svg, ...")
        ->required()
        ->type_name("OUT");
    verb.add_option("--format", formatName, "Else the ending of OUT decides")->type_name(GetFormatNames("|", "|"));
    verb.add_option("--pages", options.pages, "Pages from 1, as in 1-3,7 (all)")->type_name("RANGE");
    AddChoice<Quillet::TextFidelity>(
        verb, "--fidelity", options.fidelity, "What matters more in text (editable)",
        {{"editable", Quillet::TextFidelityEditable}, {"exact", Quillet::TextFidelityExact}});
    verb.add_flag("--raw", options.isRaw, "The tree as built, not reduced");
    verb.add_flag_callback(
        "--no-grouping", [&options] { options.isGroupTextLines = false; }, "Each baseline of text a frame of its own");
    AddChoice<Quillet::PageClipArea>(verb, "--clip", options.clip, "The page box that clips (none)",
                                     {{"none", Quillet::PageClipNone},
                                      {"media", Quillet::PageClipMedia},
                                      {"crop", Quillet::PageClipCrop},
                                      {"bleed", Quillet::PageClipBleed},
                                      {"trim", Quillet::PageClipTrim},
                                      {"art", Quillet::PageClipArt}});
    verb.add_option("--language", options.language, "BCP 47 tag of the text (zxx)")->type_name("TAG");
    verb.add_option("--jobs", options.jobs, "Pages to work on at once, a document each (1)")
        ->check(CLI::Range(1, 256))
        ->type_name("N");
}

int Complain(const std::string& problem)
{
    std::cerr << "quillet: " << problem << "\n";
    return ExitCommandLine;
}

/// Names options only: other words may be a password, or the rest of one with a blank in it.
std::string MakeExtrasText(const std::vector<std::string>& extras)
{
    const auto option = std::ranges::find_if(extras, [](const std::string& text) { return text.starts_with('-'); });
    if (option == extras.end()) return "an argument too many; --help tells more";
    return option->substr(0, option->find('=')) + ": no such option; --help tells more";
}

/// One line, as every problem is.
std::string MakeFailureLine(const CLI::App*, const CLI::Error& error)
{
    std::string text = error.what();
    std::ranges::replace(text, '\n', ' ');
    return "quillet: " + text + "; --help tells more\n";
}

} // namespace

int RunCommandLine(int argc, const char* const* argv)
{
    Interrupt::Install();
    CLI::App app("Imports PDF documents as editable pages", "quillet");
    app.set_version_flag("--version", std::string("quillet ") + Quillet::GetLibraryVersion());
    app.require_subcommand(1);
    app.failure_message(MakeFailureLine);

    InfoOptions info;
    CLI::App* infoVerb = app.add_subcommand("info", "What the document is: version, metadata, pages and boxes");
    AddInput(*infoVerb, info.input);
    infoVerb->add_flag("--json", info.isJson, "As JSON");

    ConvertOptions convert;
    std::string formatName;
    CLI::App* convertVerb = app.add_subcommand("convert", "Imports the document and writes it as OUT");
    AddConvert(*convertVerb, convert, formatName);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (Interrupt::IsSet()) return ExitInterrupted;
        const auto rest = app.remaining();
        if (app.get_subcommands().empty() && !rest.empty() && error.get_exit_code() != 0) {
            return Complain(rest.front() + ": no such verb; there are info and convert");
        }
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError)) {
            return Complain(MakeExtrasText(app.remaining(true)));
        }
        return app.exit(error) == 0 ? ExitDone : ExitCommandLine;
    }
    if (infoVerb->parsed()) return RunInfo(info);

    const auto dot = convert.out.rfind('.');
    const std::string ending = dot == std::string::npos ? std::string() : convert.out.substr(dot + 1);
    convert.format = FindFormat(formatName.empty() ? ending : formatName);
    if (!convert.format) {
        return Complain(formatName.empty()
                            ? convert.out + ": the ending names no format; use --format " + GetFormatNames(", ", " or ")
                            : formatName + ": no such format; there are " + GetFormatNames(", ", " and "));
    }
    return RunConvert(convert);
}

} // namespace Host
