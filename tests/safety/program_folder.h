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
    /// Runs the command to its end; anything but success stops the test.
    void Run(const std::vector<std::string>& arguments) const;

    std::filesystem::path DataFile(const std::string& name) const { return m_folder / "data" / name; }
    /// All bytes; a file that is not there has none.
    std::string Data(const std::string& name) const;
    std::filesystem::path Path() const { return m_folder; }

    /// The files of the data folder that are about to be put in another one's place.
    std::vector<std::filesystem::path> TemporaryFiles() const;
    /// Has a save of the names MMA, b, c, d, e and f killed when five bytes of them are in such a file.
    std::filesystem::path LeaveATemporaryFile() const;

    /// A file to import with `count` lines, told apart by `name`.
    std::string MaterialsToImport(const std::string& name, int count) const;
    /// The same of the first material, in the months of `year` and those after it.
    std::string UsageToImport(int year, int count) const;

private:
    std::string FileNamed(const std::string& name, const std::string& content) const;

    TemporaryFolder m_temporary;
    std::filesystem::path m_folder = m_temporary.Path() / "program";
    std::filesystem::path m_settings = m_temporary.Path() / "settings";
};

/// The slots of the records of those lines, the first of them numbered `first`.
std::string MaterialSlots(const std::string& name, int count, int first);
std::string UsageSlots(int year, int count, int first);
std::string CompanySlot(const std::string& name, int number);
} // namespace mact
