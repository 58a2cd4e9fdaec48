#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What a program printed and how it ended.
struct ProgramRun {
    int Status = -1; ///< -1 = it did not start, crashed or took more than a minute
    std::string Output{};
    std::string Errors{};
};

/// Runs a program to its end, with its settings in `settingsFolder` instead of the user's own and `input` as
/// its standard input.
ProgramRun RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                      const std::filesystem::path& settingsFolder, std::string_view input = {});
} // namespace mact
