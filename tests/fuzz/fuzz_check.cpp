#include "check/data_check.h"
#include "tests/fuzz/data_files.h"
#include "tests/fuzz/fuzz.h"

namespace mact {

// The input is a company's data files, in the form of data_files.h.

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryProgram program;
    PutFiles(program, TextOf(data, size));
    const std::set<std::string> names = {"hapcontents.talvor", "companies.talvor", "1_materials.talvor",
                                         "1_usage.talvor", "1_additional.talvor"};
    if (!program.Files.Has(UsageFile(program.App))) return 0;
    const auto content = [&] {
        return program.File(HapContentsFile(program.App)) + program.File(CompaniesFile(program.App)) +
               program.File(MaterialsFile(program.App)) + program.File(UsageFile(program.App)) +
               program.File(AdditionalNamesFile(program.App));
    };
    const std::string before = content();
    const std::vector<Failure> failures = CheckDataFiles(program.App, names, [&](const std::string& line) {
        Must(line.find_first_of(std::string("\r\n\0", 3)) == std::string::npos, "a finding is one line");
        Must(names.contains(line.substr(0, line.find_first_of(",:"))), "a finding begins with its file");
    });
    Must(failures.empty(), "files that can be read do not fail");
    Must(content() == before, "a check changes nothing");
    return 0;
}
} // namespace mact
