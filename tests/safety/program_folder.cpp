#include "tests/safety/program_folder.h"

#include "base/text.h"
#include "tests/support/bytes.h"

#include <bit>
#include <cstdlib>
#include <iostream>

namespace mact {
namespace {

std::string Bytes(std::uint64_t value, std::size_t length) {
    std::string bytes;
    for (std::size_t index = 0; index < length; ++index)
        bytes += static_cast<char>((value >> (8 * index)) & 0xFFU);
    return bytes;
}
std::string Bytes(double value) {
    return Bytes(std::bit_cast<std::uint64_t>(value), 8);
}

std::string MaterialName(const std::string& name, int number) {
    return name + "-" + std::to_string(number);
}

} // namespace

ProgramFolder::ProgramFolder() {
    std::filesystem::create_directory(m_folder);
    std::filesystem::create_directory(m_settings);
}

ChildStart ProgramFolder::Start(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--folder", PathText(m_folder)});
    return {.Program = MACT_CLI_PROGRAM, .Arguments = std::move(arguments), .SettingsFolder = m_settings};
}

ChildStart ProgramFolder::StartStore(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), PathText(m_folder));
    return {.Program = MACT_STORE_PROGRAM, .Arguments = std::move(arguments), .SettingsFolder = m_settings};
}

void ProgramFolder::Run(const std::vector<std::string>& arguments) const {
    ChildProgram program(Start(arguments));
    if (program.Wait() == 0) return;
    std::cerr << "The program failed: " << program.Errors();
    std::abort();
}

std::string ProgramFolder::Data(const std::string& name) const {
    return std::filesystem::exists(DataFile(name)) ? ContentOf(DataFile(name)) : std::string{};
}

std::vector<std::filesystem::path> ProgramFolder::TemporaryFiles() const {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder / "data"))
        if (entry.path().extension() == ".tmp") found.push_back(entry.path());
    return found;
}

std::filesystem::path ProgramFolder::LeaveATemporaryFile() const {
    ChildStart start = Start({"names", "MMA", "b", "c", "d", "e", "f"});
    start.LongestFile = 5;
    ChildProgram program(start);
    const int status = program.Wait();
    const std::vector<std::filesystem::path> found = TemporaryFiles();
    if (status == -1 && found.size() == 1) return found.front();
    std::cerr << "The program did not leave a temporary file: " << program.Errors();
    std::abort();
}

std::string ProgramFolder::FileNamed(const std::string& name, const std::string& content) const {
    WriteContent(m_temporary.Path() / name, content);
    return PathText(m_temporary.Path() / name);
}

std::string ProgramFolder::MaterialsToImport(const std::string& name, int count) const {
    std::string lines;
    for (int number = 1; number <= count; ++number)
        lines += MaterialName(name, number) +
                 "|a resin|Production resin|Spray|9.5|28|1|2|3|4|5|6|7|8|9|10|11|12|0\r\n";
    return FileNamed("materials " + name, lines);
}

std::string ProgramFolder::UsageToImport(int year, int count) const {
    std::string lines;
    for (int number = 0; number < count; ++number)
        lines += "Resin-1|" + std::to_string(number % 12 + 1) + "|" + std::to_string(year + number / 12) +
                 "|" + std::to_string(number) + "|lbs\r\n";
    return FileNamed("usage " + std::to_string(year), lines);
}

std::string MaterialSlots(const std::string& name, int count, int first) {
    std::string slots;
    for (int number = 1; number <= count; ++number) {
        std::string slot =
            Bytes(static_cast<std::uint64_t>(first) + static_cast<std::uint64_t>(number) - 1, 2);
        slot +=
            Padded(MaterialName(name, number), 100) + Padded("Production resin", 100) + Padded("Spray", 100);
        slot += Bytes(9.5) + Bytes(28) + Bytes(0.0) + Padded("", 255) + Padded("a resin", 100) + Hex("FF FF");
        for (int pollutant = 1; pollutant <= 12; ++pollutant)
            slot += Bytes(static_cast<double>(pollutant));
        slot.resize(1444, '\0');
        slots += slot;
    }
    return slots;
}

std::string UsageSlots(int year, int count, int first) {
    std::string slots;
    for (int number = 0; number < count; ++number) {
        std::string slot =
            Bytes(static_cast<std::uint64_t>(first) + static_cast<std::uint64_t>(number), 2) + Bytes(1, 2);
        slot += Padded(std::to_string(number % 12 + 1) + "/" + std::to_string(year + number / 12), 7);
        slot += Bytes(static_cast<double>(number)) + Bytes(2, 2) + Hex("FF FF");
        slot.resize(32, '\0');
        slots += slot;
    }
    return slots;
}

std::string CompanySlot(const std::string& name, int number, const std::string& location) {
    return Bytes(static_cast<std::uint64_t>(number), 2) + Padded(name, 250) + Padded(location, 250) +
           Hex("FF FF");
}
} // namespace mact
