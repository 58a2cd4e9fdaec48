#pragma once

#include "tests/support/scripted_services.h"

#include "base/app_context.h"
#include "platform/os_files.h"
#include "store/record_file.h"

#include <filesystem>

namespace mact {

/// A made-up shop of a chosen size, the same in every run. It has as many usage records as materials: one for
/// each material, in one of the 24 months up to 12/2005.

inline constexpr int MostRecords = static_cast<int>(MostSlots);
inline constexpr const char* LastMonth = "12/2005";

/// A program in `folder` whose files are made and whose company is current.
class BenchShop {
public:
    /// Makes what does not exist yet; stops the process if that fails.
    BenchShop(std::filesystem::path folder, int records);

    std::filesystem::path MaterialLines() const { return m_app.ProgramFolder / "materials.txt"; }
    std::filesystem::path UsageLines() const { return m_app.ProgramFolder / "usage.txt"; }
    AppContext& App() { return m_app; }
    int Records() const { return m_records; }
    /// Stops the process if a message that reports a failure was shown.
    void CheckNothingFailed() const;

private:
    void MakeFiles();

    ScriptedPrompts m_prompts;
    ScriptedSettings m_settings;
    ScriptedPrograms m_programs;
    ScriptedDialogs m_dialogs;
    ScriptedClock m_calendar;
    OsFiles m_files;
    int m_records;
    AppContext m_app;
};
} // namespace mact
