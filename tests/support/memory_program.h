#pragma once

#include "base/app_context.h"
#include "store/data_folder.h"
#include "tests/support/memory_files.h"
#include "tests/support/scripted_services.h"

namespace mact {

/// A whole program with its files in memory and scripted services. Company 1 is current, and there is no file
/// yet.
class MemoryProgram {
public:
    ScriptedPrompts Prompts;
    ScriptedSettings Settings;
    ScriptedPrograms Programs;
    ScriptedDialogs Dialogs;
    ScriptedClock Calendar;
    MemoryFiles Files;
    /// Must not exist, because some checks look at the real file system.
    AppContext App{Prompts, Settings, Programs, Dialogs, Calendar, Files, "no such folder/program", 1};

    std::string& File(const std::filesystem::path& path) { return Files[path]; }
};
} // namespace mact
