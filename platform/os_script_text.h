#pragma once

#include "base/result.h"

#include <string>
#include <string_view>

namespace mact {

/// The text in the console's own character set, in which Windows reads a command script. A Failure where that
/// set lacks a character: the script would work with another folder than the one named.
Result<std::string> ScriptTextOfConsole(std::string_view utf8Text);
} // namespace mact
