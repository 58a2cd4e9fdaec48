#pragma once

#include "base/services.h"

namespace mact {

/// The platform's settings store: the registry on Windows, a file in the user's configuration folder
/// elsewhere. Other running copies of the program see what this one writes.
class QtSettings : public SettingsStore {
public:
    std::string Read(std::string_view section, std::string_view key) override;
    Done Write(std::string_view section, std::string_view key, std::string_view value) override;
};
} // namespace mact
