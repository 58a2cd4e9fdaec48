#pragma once

#include "base/services.h"

namespace mact {

/// The settings store of the platform: the registry on Windows, a file in the user's configuration folder
/// elsewhere. A copy of the program that runs at the same time sees what this one wrote.
class QtSettings : public SettingsStore {
public:
    std::string Read(std::string_view section, std::string_view key) override;
    Done Write(std::string_view section, std::string_view key, std::string_view value) override;
};
} // namespace mact
