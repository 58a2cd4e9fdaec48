#include "base/text.h"
#include "store/additional_names.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/memory_program.h"

#include <algorithm>

namespace mact {

// The whole input is a names file.

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view content = TextOf(data, size);
    const std::string value(LastCommaSeparatedValue(content));
    Must(value.empty() || content.find(value) != std::string_view::npos, "the value stands in the file");
    const PollutantNames names = SplitAdditionalNames(value);
    const bool isPlain = std::ranges::none_of(names, [](const std::string& name) {
        return name.find_first_of(",\"\r\n") != std::string::npos || Trim(name) != name;
    });

    MemoryProgram program;
    Must(bool(SaveAdditionalNames(program.App, names)), "names can be saved");
    const std::string& saved = program.File(AdditionalNamesFile(program.App));
    if (isPlain) Must(SplitAdditionalNames(LastCommaSeparatedValue(saved)) == names, "plain names read back");
    return 0;
}
} // namespace mact
