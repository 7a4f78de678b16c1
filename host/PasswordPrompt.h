#pragma once

#include <optional>
#include <string>

namespace Host {

/// Whether somebody sits there to be asked: standard input and standard error are both terminals.
bool CanAskPassword();

/// Asks for a password on the terminal, and does not show what is typed. Nothing at the end of input and after a
/// signal, which then has its usual effect.
std::optional<std::string> AskPassword(const std::string& file);

/// The first line of a file, which may be a pipe; nothing if it cannot be read, or once a signal wants the command to
/// end.
std::optional<std::string> ReadPasswordFile(const std::string& path);

} // namespace Host
