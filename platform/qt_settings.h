#pragma once

#include "base/services.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace mact {

/// The platform's settings store: the registry on Windows, a file in the user's configuration folder
/// elsewhere. Other running copies of the program see what this one writes.
class QtSettings : public SettingsStore {
public:
    /// In no case are settings written over a file of the program in that folder.
    explicit QtSettings(std::filesystem::path programFolder = {})
        : m_programFolder(std::move(programFolder)) {}

    Result<std::string> TryRead(std::string_view section, std::string_view key) override;
    Done Write(std::string_view section, std::string_view key, std::string_view value) override;

private:
    std::filesystem::path m_programFolder;
};

/// Where the settings are; empty for the registry of Windows. The environment variable MACT_SETTINGS_FOLDER
/// names a folder to keep them in instead, on every platform; tests use that. Does not open the file.
std::filesystem::path SettingsFile();
} // namespace mact
