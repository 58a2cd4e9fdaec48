#include "materials/material_record.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "tests/fuzz/data_files.h"
#include "transfer/transfer.h"
#include "usage/usage_record.h"

#include <fstream>
#include <iostream>
#include <iterator>

using namespace mact;

// Makes a folder of seeds for each fuzz target, from samples/, in the folder given as its argument.

namespace {

std::string Sample(const std::string& name) {
    std::ifstream file(MACT_SOURCE_FOLDER "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The first lines of the text, each with its line end.
std::string Head(const std::string& text, int lines) {
    std::size_t end = 0;
    for (int line = 0; line < lines && end < text.size(); ++line)
        end = std::min(text.find('\n', end), text.size() - 1) + 1;
    return text.substr(0, end);
}

class Seeds {
public:
    explicit Seeds(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    void Add(const std::string& target, const std::string& content) {
        std::filesystem::create_directories(m_folder / target);
        std::ofstream file(m_folder / target / ("seed_" + std::to_string(++m_count)), std::ios::binary);
        file << content;
        m_hasFailed |= content.empty() || !file.flush();
    }
    bool HasFailed() const { return m_hasFailed; }

private:
    std::filesystem::path m_folder;
    int m_count = 0;
    bool m_hasFailed = false;
};

/// The data files of a shop that has imported that many lines of the samples.
CompanyBytes Shop(int materials, int usage) {
    MemoryProgram program;
    int processed = 0;
    int errors = 0;
    static_cast<void>(CreateDefaultHapContents(program.App));
    SaveCompany(program.App, "Acme", "Dock 1");
    program.File("materials.txt") = Head(Sample("materials.txt"), materials);
    ImportMaterialFile(program.App, "materials.txt", processed, errors);
    program.File("usage.txt") = Head(Sample("usage.txt"), usage);
    ImportUsageFile(program.App, "usage.txt", processed, errors);
    return {.HapContents = program.File(HapContentsFile(program.App)),
            .Companies = program.File(CompaniesFile(program.App)),
            .Materials = program.File(MaterialsFile(program.App)),
            .Names = "MMA|Styrene|-|-|-|-\r\n",
            .Usage = program.File(UsageFile(program.App))};
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) return 2;
    Seeds seeds(argv[1]);
    for (const char* number : {"120.5", "-1E-05", " 0.35 ", "1e308", "123456789012345", ".5e+1", "99999999",
                               "100e9223372036854775807"})
        seeds.Add("fuzz_numbers", number);
    for (const char* names : {"MMA|Styrene|-|-|-|-\r\n", "\"-|-|-|-|-|-\"\r\n",
                              "1,3-Butadiene|MMA|-|-|-|-\r\n", "\"a\" b, c\r\n\r\n", " x ,\n"})
        seeds.Add("fuzz_names", names);
    for (const int lines : {1, 3, 100}) {
        seeds.Add("fuzz_material_import", Head(Sample("materials.txt"), lines));
        seeds.Add("fuzz_material_import", Head(Sample("materials_with_errors.txt"), lines));
        seeds.Add("fuzz_usage_import", Head(Sample("usage.txt"), lines));
        seeds.Add("fuzz_usage_import", Head(Sample("usage_with_errors.txt"), lines));
    }
    for (const int lines : {1, 2, 4}) {
        CompanyBytes files = Shop(lines, 3 * lines);
        for (const char* target : {"fuzz_record_files", "fuzz_check"}) {
            seeds.Add(target, InputOf(files));
            CompanyBytes cut = files;
            cut.HapContents.resize(HapContentLayout.SlotLength() * static_cast<std::size_t>(lines));
            cut.Usage.resize(cut.Usage.size() - 10);
            seeds.Add(target, InputOf(cut));
        }
    }
    // An undo file made of two pieces and an appended slot, of which a half is there; then a damaged one.
    std::string slots;
    for (const std::int16_t number : {std::int16_t{1}, std::int16_t{2}, std::int16_t{3}})
        AppendPacked(UsageLayout, {.UsageId = number, .MaterialId = 1, .Period = "3/2005"}, slots);
    const std::string announced(32, 'n');
    seeds.Add("fuzz_undo_file", std::string("\0\0\x60\x1F\x02\0\x20\x02", 8) + slots.substr(32, 2) + "xy" +
                                    std::string("\0\x42\x01", 3) + slots.substr(66, 1) + "z" +
                                    std::string("\0\x60\0\x20", 4) + announced + slots +
                                    announced.substr(0, 16));
    seeds.Add("fuzz_undo_file", std::string("\x03\0\x30MACTUNDO", 11) + std::string(40, '\1') + slots);
    if (seeds.HasFailed()) std::cerr << "fuzz_seeds: a seed is missing\n";
    return seeds.HasFailed() ? 1 : 0;
}
