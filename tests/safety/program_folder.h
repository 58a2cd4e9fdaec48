#pragma once

#include "materials/material_record.h"
#include "tests/safety/child_program.h"
#include "tests/support/test_program.h"
#include "usage/usage_record.h"

#include <string>
#include <vector>

namespace mact {

/// A program folder in which the command line works, and the records that it should write there.
class ProgramFolder {
public:
    ProgramFolder();

    ChildStart Start(std::vector<std::string> arguments) const;
    /// The same of store_program, which does what the command line has no command for.
    ChildStart StartStore(std::vector<std::string> arguments) const;
    /// Runs the command to its end; stops the test unless it succeeds.
    void Run(const std::vector<std::string>& arguments) const;

    std::filesystem::path DataFile(const std::string& name) const { return m_folder / "data" / name; }
    /// All bytes of a data file; empty if it does not exist.
    std::string Data(const std::string& name) const;
    std::filesystem::path Path() const { return m_folder; }
    std::filesystem::path SettingsFolder() const { return m_settings; }
    /// A file outside the program folder.
    std::filesystem::path FileBeside(const std::string& name) const { return m_temporary.Path() / name; }

    /// The temporary files in the data folder, each about to replace another file.
    std::vector<std::filesystem::path> TemporaryFiles() const;
    /// Saves the names MMA, b, c, d, e and f and is killed when five bytes of them are in the temporary file.
    /// Returns that file.
    std::filesystem::path LeaveATemporaryFile() const;

    /// A file with `count` lines to import, whose Material IDs begin with `name`.
    std::string MaterialsToImport(const std::string& name, int count) const;
    /// The same with usage of the first material, month by month from January of `year` on.
    std::string UsageToImport(int year, int count) const;
    /// A file outside the program folder that holds the content; its path in UTF-8.
    std::string FileNamed(const std::string& name, const std::string& content) const;

private:
    TemporaryFolder m_temporary;
    std::filesystem::path m_folder = m_temporary.Path() / "program";
    std::filesystem::path m_settings = m_temporary.Path() / "settings";
};

/// The slots that those lines become, numbered from `first` on.
std::string MaterialSlots(const std::string& name, int count, int first);
std::string UsageSlots(int year, int count, int first);
std::string CompanySlot(const std::string& name, int number, const std::string& location = "Dock 1");
} // namespace mact
