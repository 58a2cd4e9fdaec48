#pragma once

#include "cli/command_description.h"

#include <string>

namespace mact {

/// The manual page of the program, in section 1, with a part for each command.
std::string ManPage(const DescribedProgram& program);
} // namespace mact
