#pragma once

#include "base/app_context.h"

#include <optional>
#include <string>
#include <vector>

namespace mact {

/// What the configuration dialog shows and saves. Paths are UTF-8, as the settings hold them.
struct Configuration {
    std::string BackupFolder;
    bool IsBackedUpOnExit = false;
    std::string Browser;             ///< full path of the program; empty = none
    bool UsesSystemBrowser = false;  ///< if there is no other; otherwise reports are not opened
    std::string WindowColours{};     ///< "light", "dark", or empty = as the desktop
    std::optional<Failure> Unread{}; ///< why the settings could not be read; what is above is then not theirs
};

/// The current settings, but with the program folder in place of a missing backup folder, and no browser in
/// place of a missing one.
Configuration ReadConfiguration(AppContext& app);

/// Whether the browser is an existing file, or empty, or the system cannot tell: what a save does not leave
/// out.
bool IsBrowserToBeSaved(std::string_view browser);

/// An empty backup folder is not saved. What the last two fields hold is saved if it has changed. The browser
/// is saved trimmed, if it is empty or an existing file; if not, the earlier setting stays without a message,
/// but if that cannot be told, it is a Failure. A setting that cannot be saved does not hold up the others;
/// there is a Failure for each.
[[nodiscard]] std::vector<Failure> SaveConfiguration(SettingsStore& settings,
                                                     const Configuration& configuration);
} // namespace mact
