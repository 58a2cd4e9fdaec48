#pragma once

#include "base/result.h"

#include <string>
#include <string_view>

namespace mact {

/// The text in the console's own character set, in which Windows reads a command script. A Failure if that
/// set lacks a character: with a substitute the script would work with the wrong folder.
Result<std::string> ScriptTextOfConsole(std::string_view utf8Text);
} // namespace mact
