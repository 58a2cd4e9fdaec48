#include "tests/safety/faults/fault_shop.h"

#include "base/text.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace mact {
namespace {

/// Where Qt makes files for its own use: what becomes of them does not matter.
constexpr const char* TemporaryFolderName = "tmp";

std::string MaterialLine(const std::string& id) {
    return id + "|a resin|Production resin|Spray|9.5|28|1|2|3|4|5|6|7|8|9|10|11|12|0\r\n";
}
std::string UsageLine(const std::string& id, int month, int year) {
    return id + '|' + std::to_string(month) + '|' + std::to_string(year) + "|120.5|lbs\r\n";
}

/// The files that the shop is made of, and those that the swept commands import, replace and are given.
FileTree GivenFiles(const std::filesystem::path& shop) {
    FileTree files;
    for (const char* folder : {"program/", "settings/", "settings/MACT/", "in/", "out/", "backups/"})
        files[folder] = "";
    files["in/first materials.txt"] = MaterialLine("R-1") + MaterialLine("R-2") + MaterialLine("R-3");
    files["in/first usage.txt"] = UsageLine("R-1", 1, 2005) + UsageLine("R-2", 2, 2005);
    files["in/materials.txt"] = MaterialLine("N-1") + "not a material\r\n" + MaterialLine("N-2") +
                                MaterialLine("R-1") + MaterialLine("N-3");
    files["in/usage.txt"] =
        UsageLine("R-1", 3, 2005) + "not usage\r\n" + UsageLine("R-2", 4, 2005) + UsageLine("none", 5, 2005);
    files["in/browser"] = "a stand-in for a browser";
    files["out/old.txt"] = "an earlier export\r\n";
    files["program/report2.htm"] = "an earlier report\r\n";
    files["settings/MACT/TALVOR_QUME_APP.conf"] =
        "[BACKUP]\nBK_VOLUME=5\nPATH=" + PathText(shop / "backups") +
        "\n\n[BROWSER]\nPATH=/nowhere/browser\n";
    return files;
}

} // namespace

FaultShop::FaultShop()
    : m_folder(std::filesystem::canonical(m_temporary.Path()) / "shop"),
      m_runner(m_folder, std::filesystem::canonical(m_temporary.Path()) / "record") {
    std::filesystem::create_directories(m_folder / TemporaryFolderName);
    Restore(GivenFiles(m_folder));
    Do({"add-company", "Acme", "Dock 1"});
    Do({"add-company", "Beta", "Dock 2"});
    Do({"select-company", "1"});
    Do({"names", "MMA", "Styrene", "-", "-", "-", "-"});
    Do({"import-materials", "@/in/first materials.txt"});
    Do({"import-usage", "@/in/first usage.txt"});
}

void FaultShop::Do(const std::vector<std::string>& arguments) {
    ChildProgram program(CommandLine(arguments));
    if (program.Wait() == 0) return;
    std::cerr << "The shop cannot be set up: " << program.Errors();
    std::abort();
}

ChildStart FaultShop::CommandLine(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {"--folder", "@/program"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return Program(MACT_CLI_PROGRAM, all);
}

ChildStart FaultShop::Program(const std::filesystem::path& program,
                              const std::vector<std::string>& arguments) const {
    ChildStart start{.Program = program, .Arguments = arguments, .SettingsFolder = m_folder / "settings"};
    for (std::string& argument : start.Arguments)
        if (argument.starts_with('@')) argument.replace(0, 1, PathText(m_folder));
    start.Environment = {"TMPDIR=" + PathText(m_folder / TemporaryFolderName)};
    return start;
}

FileTree FaultShop::Files() const {
    FileTree files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder)) {
        const std::string name = PathText(entry.path().lexically_relative(m_folder));
        if (name.starts_with(TemporaryFolderName)) continue;
        if (entry.is_directory())
            files[name + '/'];
        else
            files[name] = ContentOf(entry.path());
    }
    return files;
}

void FaultShop::Restore(const FileTree& files) const {
    const FileTree present = Files();
    for (const auto& [name, content] : present) // a folder comes before what is in it
        if (!files.contains(name)) std::filesystem::remove_all(m_folder / PathFromUtf8(name));
    for (const auto& [name, content] : files) {
        const auto found = present.find(name);
        if (found != present.end() && found->second == content) continue;
        if (name.ends_with('/'))
            std::filesystem::create_directory(m_folder / PathFromUtf8(name));
        else
            WriteContent(m_folder / PathFromUtf8(name), content);
    }
}

ShopRun FaultShop::Run(const ChildStart& start, const CallFault* fault) {
    ShopRun run{m_runner.Run(start, fault)};
    run.Files = Files();
    return run;
}
} // namespace mact
