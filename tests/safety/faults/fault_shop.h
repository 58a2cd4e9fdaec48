#pragma once

#include "tests/safety/faults/fault_run.h"
#include "tests/support/test_program.h"

#include <map>
#include <string>
#include <vector>

namespace mact {

/// All files of a folder by their paths in it ("program/data/companies.talvor"), with their bytes.
/// A folder has a "/" at its end and no bytes.
using FileTree = std::map<std::string, std::string>;

/// How a program ended and what it left behind.
struct ShopRun : FaultRun {
    FileTree Files{};
};

/// A small shop: the program's folder, the user's settings and files to import, all below one folder in which
/// faults are injected. It has two companies, of which the first is current and has three materials, two of
/// them with usage.
class FaultShop {
public:
    FaultShop();

    /// "@" at the beginning of an argument stands for the shop's folder.
    ChildStart CommandLine(const std::vector<std::string>& arguments) const;
    ChildStart Program(const std::filesystem::path& program, const std::vector<std::string>& arguments) const;

    /// All files as they are, but those in the folder for temporary files.
    FileTree Files() const;
    /// Puts back what has changed.
    void Restore(const FileTree& files) const;
    ShopRun Run(const ChildStart& start, const CallFault* fault = nullptr);

    const std::filesystem::path& Folder() const { return m_folder; }

private:
    void Do(const std::vector<std::string>& arguments);

    TemporaryFolder m_temporary;
    std::filesystem::path m_folder;
    FaultRunner m_runner;
};
} // namespace mact
