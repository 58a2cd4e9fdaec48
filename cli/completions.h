#pragma once

#include "cli/command_description.h"

#include <string>

namespace mact {

/// Scripts with which shells complete the program's commands, options, and what follows these: companies are
/// asked of the program itself.

std::string BashCompletion(const DescribedProgram& program);
std::string ZshCompletion(const DescribedProgram& program);
std::string FishCompletion(const DescribedProgram& program);
} // namespace mact
