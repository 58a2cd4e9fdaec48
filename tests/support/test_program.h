#pragma once

#include "base/app_context.h"
#include "base/messages.h"
#include "platform/os_files.h"
#include "tests/support/scripted_services.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace mact {

/// A folder that is removed with its content. Its name has a blank, a quote and a letter beyond ASCII.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// A whole program in a temporary folder, with scripted services. Its data folder is empty; company 1 is
/// current but has no record.
class TestProgram {
public:
    TestProgram();

    TemporaryFolder Folder;
    ScriptedPrompts Prompts;
    ScriptedSettings Settings;
    ScriptedPrograms Programs;
    ScriptedDialogs Dialogs;
    ScriptedClock Calendar;
    OsFiles Files;
    AppContext App;

    std::filesystem::path DataFile(const std::string& name) const {
        return App.ProgramFolder / "data" / name;
    }
    std::filesystem::path ProgramFile(const std::string& name) const { return App.ProgramFolder / name; }
    /// The texts of all messages shown so far.
    std::vector<std::string> ShownTexts() const;
};

/// All bytes of a file; the test stops with a message if it cannot be read.
std::string ContentOf(const std::filesystem::path& path);
/// The system's text for an error: for `error`, or on Windows for `windowsCode`.
std::string ReasonOf(std::errc error, int windowsCode);
void WriteContent(const std::filesystem::path& path, std::string_view content);
} // namespace mact
