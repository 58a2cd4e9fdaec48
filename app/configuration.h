#pragma once

#include "base/app_context.h"

#include <string>
#include <vector>

namespace mact {

/// What the configuration dialog shows and saves. Paths are UTF-8, as the settings hold them.
struct Configuration {
    std::string BackupFolder;
    bool IsBackedUpOnExit = false;
    std::string Browser; ///< full path of the program; empty = reports are not opened
};

/// As the settings are now: the program folder in place of a backup folder that is not there, and no browser
/// in place of one that is not there.
Configuration ReadConfiguration(AppContext& app);

/// An empty backup folder is not saved. The browser is saved trimmed, when it is empty or a file is there; of
/// one that is not there the earlier setting stays, without a word. A setting that cannot be saved does not
/// hold up the others; there is a Failure for each that could not.
[[nodiscard]] std::vector<Failure> SaveConfiguration(SettingsStore& settings,
                                                     const Configuration& configuration);
} // namespace mact
