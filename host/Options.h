#pragma once

#include <Quillet/PageClipArea.h>
#include <Quillet/TextFidelity.h>

#include <string>

namespace Host {

struct Format;

/// What every verb takes.
struct InputOptions
{
    std::string file;
    std::string password;
    bool isQuiet = false;
};

struct InfoOptions
{
    InputOptions input;
    bool isJson = false;
};

struct ConvertOptions
{
    InputOptions input;
    std::string out;
    /// Not null.
    const Format* format = nullptr;
    /// As given, "1-3,7" for instance; empty for all.
    std::string pages;
    Quillet::TextFidelity fidelity = Quillet::TextFidelityEditable;
    bool isRaw = false;
    bool isGroupTextLines = true;
    Quillet::PageClipArea clip = Quillet::PageClipNone;
    std::string language = "zxx";
    int jobs = 1;
};

} // namespace Host
