#pragma once

#include "store/data_folder.h"
#include "store/record_layout.h"
#include "tests/support/memory_program.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace mact {

/// The data files of company 1 as one input: the lengths of the first four as 16-bit numbers, then all five
/// files.
struct CompanyBytes {
    std::string HapContents;
    std::string Companies;
    std::string Materials;
    std::string Names;
    std::string Usage;
};

inline std::string InputOf(const CompanyBytes& files) {
    std::string lengths;
    for (const std::string& file : {files.HapContents, files.Companies, files.Materials, files.Names}) {
        std::array<char, 2> length{};
        StoreLittleEndian(std::span<char>(length), static_cast<std::uint16_t>(file.size()));
        lengths.append(length.data(), length.size());
    }
    return lengths + files.HapContents + files.Companies + files.Materials + files.Names + files.Usage;
}

/// Any input will do: lengths beyond its end are cut.
inline void PutFiles(MemoryProgram& program, std::string_view input) {
    constexpr std::size_t head = 8;
    std::array<std::uint16_t, 4> lengths{};
    if (input.size() < head) return;
    for (std::size_t index = 0; index < lengths.size(); ++index)
        lengths[index] = LoadLittleEndian<std::uint16_t>(input.substr(2 * index));
    input.remove_prefix(head);
    const auto take = [&](std::size_t index) {
        const std::string_view taken = input.substr(0, lengths[index]);
        input.remove_prefix(taken.size());
        return taken;
    };
    program.File(HapContentsFile(program.App)) = take(0);
    program.File(CompaniesFile(program.App)) = take(1);
    program.File(MaterialsFile(program.App)) = take(2);
    program.File(AdditionalNamesFile(program.App)) = take(3);
    program.File(UsageFile(program.App)) = input;
}
} // namespace mact
