#pragma once

#include "base/files.h"
#include "base/history.h"
#include "base/services.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace mact {

/// Month, year and unit of the last usage record entered as new.
struct LastUsageEntry {
    std::int16_t Month = 0; ///< 1 to 12
    std::string Year{};
    std::int16_t Unit = 0; ///< 0 = none entered yet
};

/// What the modules work with: the platform's services, the program folder, and the little that is remembered
/// between operations. Always passed, never global.
struct AppContext {
    MessagePrompts& Prompts;
    SettingsStore& Settings;
    ProgramStarter& Programs;
    FileDialogs& Dialogs;
    Clock& Calendar;
    FileAccess& Files;
    std::filesystem::path ProgramFolder;

    std::int16_t CurrentCompanyId = 0;    ///< 0 = none
    std::string CurrentCompanyName{};     ///< code-page text
    std::string CurrentCompanyLocation{}; ///< code-page text
    /// The six additional pollutant names joined by "|", code-page text; "-" = not in use.
    std::string AdditionalNames{};
    LastUsageEntry LastUsage{};
    /// Where a report goes in the place of its file in the program folder; empty = nowhere else.
    std::filesystem::path ReportTarget{};
    /// Where stores note what they did, so that it can be taken back; null if nobody will.
    History* Changes = nullptr;
    /// Null if there are no windows to be coloured.
    WindowColours* Colours = nullptr;
};
} // namespace mact
