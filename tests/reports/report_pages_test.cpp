#include "reports/reports.h"
#include "tests/reports/sample_company.h"
#include "tests/support/test_program.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace mact {

/// The reports as a user sees them: each page is opened in Chromium, and the table is read back from the page
/// as the browser shows it.

namespace {

// Appends to the page what a reader sees of it, in hexadecimal so that the page's own text cannot be mistaken
// for it. The lines have the form of those in tests/data/reports/*.seen.txt.
constexpr std::string_view ReadingScript = R"(<script>
(function () {
  const colours = {'rgb(0, 128, 0)': 'green', 'rgb(255, 0, 0)': 'red', 'rgb(0, 0, 0)': '',
                   'rgb(192, 192, 192)': 'silver', 'rgb(221, 221, 221)': '#DDDDDD', 'rgba(0, 0, 0, 0)': ''};
  const nameOf = (colour) => colour in colours ? colours[colour] : colour;
  const textOf = (element) =>
    element.innerText.trim().split('\n').map((line) => line.replace(/\s+/g, ' ').trim()).join(' / ');
  const colourOf = (cell) => {
    const texts = document.createTreeWalker(cell, NodeFilter.SHOW_TEXT);
    while (texts.nextNode())
      if (texts.currentNode.data.trim()) return nameOf(getComputedStyle(texts.currentNode.parentElement).color);
    return '';
  };
  const seenOf = (cell) => {
    const remarks = [cell.colSpan > 1 ? cell.colSpan + ' columns' : '', colourOf(cell),
                     nameOf(getComputedStyle(cell).backgroundColor)];
    return [textOf(cell)].concat(remarks.filter((remark) => remark).map((remark) => '[' + remark + ']'))
      .join(' ').trim();
  };
  const lines = Array.from(document.querySelectorAll('div > font'), textOf);
  for (const row of document.querySelector('table').rows) lines.push(Array.from(row.cells, seenOf).join(' | '));
  const bytes = new TextEncoder().encode(lines.join('\n') + '\n');
  const seen = document.createElement('pre');
  seen.id = 'seen';
  seen.textContent = Array.from(bytes, (byte) => byte.toString(16).padStart(2, '0')).join('');
  document.body.appendChild(seen);
})();
</script>
)";
constexpr std::string_view SeenStart = "<pre id=\"seen\">";
constexpr std::string_view HexDigits = "0123456789abcdef";

std::string ShellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text)
        character == '\'' ? quoted.append("'\\''") : quoted.append(1, character);
    return quoted + '\'';
}

std::string FileUrl(const std::filesystem::path& path) {
    std::string url = "file://";
    for (const char character : path.string()) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isPlain =
            byte < 0x80 && (std::isalnum(byte) != 0 || byte == '/' || byte == '.' || byte == '-');
        if (isPlain) {
            url += character;
        } else {
            url += '%';
            url += HexDigits[byte / 16];
            url += HexDigits[byte % 16];
        }
    }
    return url;
}

/// The command's output; nothing if the command fails.
std::optional<std::string> OutputOf(const std::string& command) {
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return std::nullopt;
    std::string output;
    std::array<char, 4096> buffer{};
    for (std::size_t count = 0; (count = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        output.append(buffer.data(), count);
    return ::pclose(pipe) == 0 ? std::optional(output) : std::nullopt;
}

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (; hex.size() >= 2; hex.remove_prefix(2))
        bytes += static_cast<char>(HexDigits.find(hex[0]) * 16 + HexDigits.find(hex[1]));
    return bytes;
}

/// The lines that Chromium shows of the page; empty if it cannot be run.
std::string SeenOf(const std::filesystem::path& page) {
    const TemporaryFolder profile;
    const std::filesystem::path copy = profile.Path() / "page.htm";
    WriteContent(copy, ContentOf(page) + std::string(ReadingScript));
    const std::string home = ShellQuoted(profile.Path().string());
    const std::optional<std::string> output = OutputOf(
        "HOME=" + home +
        " timeout --kill-after=5 60 chromium --headless --no-sandbox --disable-gpu --disable-quic "
        "--no-first-run "
        "--disable-background-networking --disable-component-update --disable-sync --disable-dev-shm-usage "
        "--user-data-dir=" +
        ShellQuoted((profile.Path() / "profile").string()) + " --dump-dom " + ShellQuoted(FileUrl(copy)) +
        " 2>" + ShellQuoted((profile.Path() / "errors.txt").string()));
    if (!output) {
        ADD_FAILURE() << "chromium could not be run:\n" << ContentOf(profile.Path() / "errors.txt");
        return {};
    }
    const std::size_t start = output->rfind(SeenStart);
    if (start == std::string::npos) {
        ADD_FAILURE() << "chromium did not run the script:\n" << *output;
        return {};
    }
    const std::size_t end = output->find('<', start + 1);
    return FromHex(
        std::string_view(*output).substr(start + SeenStart.size(), end - start - SeenStart.size()));
}

struct PageCase {
    const char* Name;
    std::int16_t (*Generate)(AppContext& app, const ReportPeriod& period);
    ReportPeriod Period;
    const char* FileName;
    const char* Expected;
};
void PrintTo(const PageCase& given, std::ostream* out) {
    *out << given.Name;
}
const PageCase PageCases[] = {
    {"CompliantMaterials",    GenerateCompliantMaterialsReport,    SamplePeriod, CompliantMaterialsFile,
     "report.htm.seen.txt"                                                                                                           },
    {"AllMaterials",          GenerateCompliantMaterialsReport,    {},           CompliantMaterialsFile,    "report_all.htm.seen.txt"},
    {"WeightedAverage",       GenerateWeightedAverageReport,       SamplePeriod, WeightedAverageFile,
     "report2.htm.seen.txt"                                                                                                          },
    {"EmissionAverage",       GenerateEmissionAverageReport,       SamplePeriod, EmissionAverageFile,
     "report3.htm.seen.txt"                                                                                                          },
    {"AdditionalHapUsage",    GenerateAdditionalHapUsageReport,    SamplePeriod, AdditionalHapUsageFile,
     "report4.htm.seen.txt"                                                                                                          },
    {"AdditionalHapEmission", GenerateAdditionalHapEmissionReport, SamplePeriod, AdditionalHapEmissionFile,
     "report5.htm.seen.txt"                                                                                                          },
};

class RenderedReport : public testing::TestWithParam<PageCase> {};
TEST_P(RenderedReport, ShowsTheRowsCellsAndColoursThatAUserMustSee) {
    TestProgram program;
    StoreSampleCompany(program.App);
    ASSERT_EQ(GetParam().Generate(program.App, GetParam().Period), ReportPublished);
    EXPECT_EQ(SeenOf(program.ProgramFile(GetParam().FileName)), ExpectedPage(GetParam().Expected));
}
INSTANTIATE_TEST_SUITE_P(Pages, RenderedReport, testing::ValuesIn(PageCases),
                         [](const auto& given) { return given.param.Name; });

} // namespace
} // namespace mact
