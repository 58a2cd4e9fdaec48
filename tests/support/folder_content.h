#pragma once

#include "tests/support/test_program.h"

#include <filesystem>
#include <map>
#include <string>

namespace mact {

/// The files in a folder and what they hold; empty if there is no such folder.
inline std::map<std::string, std::string> FilesIn(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
        if (entry.is_regular_file(ignored)) files[entry.path().filename().string()] = ContentOf(entry.path());
    return files;
}

/// How many entries with that name there are in the folder and everything below it.
inline int CountNamed(const std::filesystem::path& folder, const std::string& name) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.path().filename() == name) ++count;
    return count;
}
} // namespace mact
