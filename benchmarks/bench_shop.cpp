#include "benchmarks/bench_shop.h"

#include "app/startup.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "transfer/transfer.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace mact {
namespace {

[[noreturn]] void Stop(const std::string& reason) {
    std::fprintf(stderr, "The benchmark's shop cannot be made: %s\n", reason.c_str());
    std::exit(1);
}

/// Random-looking numbers that are the same on every platform, unlike those of the standard library's
/// distributions.
class Chance {
public:
    std::uint32_t Below(std::uint32_t limit) {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(m_state >> 33U) % limit;
    }
    template <std::size_t Count> const char* OneOf(const std::array<const char*, Count>& words) {
        return words[Below(Count)];
    }

private:
    std::uint64_t m_state = 2005;
};

constexpr std::array Prefixes = {"GC",     "PR",        "TR", "Vinyl ester", "ISO-NPG white/",
                                 "Marine", "AMS 45-10", "LP", "x",           "Bulk drum, tank farm lot"};
constexpr std::array Makes = {"Orthophthalic", "Isophthalic NPG", "DCPD blend", "Vinyl ester",
                              "Low-styrene",   "Flexible",        "Barrier",    "Bisphenol-A epoxy"};
constexpr std::array Uses = {"resin",
                             "laminating resin",
                             "gel coat",
                             "skin coat",
                             "gel coat, off-white, in totes",
                             "resin for hulls and decks, promoted, winter blend"};
constexpr std::array Colours = {"", " white", " light grey", " cr\xE8me", " navy blue", " clear"};

/// Hundredths as decimal text: 1250 is 12.5.
std::string Hundredths(std::uint32_t value) {
    std::string text = std::to_string(value / 100);
    if (value % 100 != 0)
        text += "." + std::string(value % 100 < 10 ? "0" : "") + std::to_string(value % 100);
    return text;
}

/// Ends with the number, so that no two are equal.
std::string MaterialId(int number) {
    Chance chance; // depends on the number alone, so that the usage lines name the same materials
    for (int skipped = 0; skipped <= number % 97; ++skipped)
        chance.Below(2);
    return std::string(chance.OneOf(Prefixes)) + "-" + std::to_string(100 + number);
}

std::string MaterialLine(int number, const HapContentRecord& type, Chance& chance) {
    std::string line = MaterialId(number);
    line += std::string("|") + chance.OneOf(Makes) + " " + chance.OneOf(Uses) + chance.OneOf(Colours);
    line += "|" + type.MaterialType + "|" + type.ApplicationMethod;
    line += "|" + Hundredths(850 + chance.Below(500));   // lb/gal
    line += "|" + Hundredths(2000 + chance.Below(3000)); // weight percent
    const std::uint32_t pollutants = chance.Below(3) == 0 ? 1 + chance.Below(3) : 0;
    for (std::uint32_t pollutant = 0; pollutant < 6; ++pollutant)
        line += pollutant < pollutants
                    ? "|" + Hundredths(chance.Below(1000)) + "|" + std::to_string(1 + chance.Below(100))
                    : "|0|0";
    return line + "|0\r\n";
}

std::string UsageLine(int number, Chance& chance) {
    const std::uint32_t month = chance.Below(24);
    std::string line = MaterialId(number);
    line += "|" + std::to_string(1 + month % 12) + "|" + std::to_string(2004 + month / 12);
    const bool isInPounds = chance.Below(4) != 0;
    line += "|" + (isInPounds ? Hundredths(1000 + chance.Below(500000)) : Hundredths(1 + chance.Below(200)));
    return line + (isInPounds ? "|lbs\r\n" : "|MG\r\n");
}

void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    if (!file) Stop("the file " + path.string() + " cannot be written.");
}

} // namespace

BenchShop::BenchShop(std::filesystem::path folder, int records)
    : m_records(records), m_app{m_prompts,  m_settings, m_programs,       m_dialogs,
                                m_calendar, m_files,    std::move(folder)} {
    std::error_code ignored;
    const bool isMade = std::filesystem::exists(m_app.ProgramFolder / "made", ignored);
    if (!isMade) std::filesystem::create_directories(m_app.ProgramFolder, ignored);
    if (!StartUp(m_app)) Stop("the data folder cannot be made.");
    if (!isMade) MakeFiles();
    std::vector<CompanyRecord> companies;
    if (!FindCompanies(m_app, {}, companies)) Stop("it has no company.");
    MakeCompanyCurrent(m_app, companies.front());
    LoadAdditionalNames(m_app);
    CheckNothingFailed();
}

void BenchShop::CheckNothingFailed() const {
    for (const Prompt& prompt : m_prompts.Shown)
        if (prompt.Kind != PromptKind::Information) Stop(prompt.Text);
}

void BenchShop::MakeFiles() {
    const Result<std::vector<HapContentRecord>> types = ReadHapContents(m_app);
    if (!types) Stop(SentenceOf(types.error()));
    Chance chance;
    std::string materials;
    std::string usage;
    for (int number = 0; number < m_records; ++number) {
        materials +=
            MaterialLine(number, (*types)[chance.Below(static_cast<std::uint32_t>(types->size()))], chance);
        // In another order than the materials; 7919 is a prime that does not divide the count, so each has
        // its turn.
        usage += UsageLine(static_cast<int>(number * 7919LL % m_records), chance);
    }
    WriteFile(MaterialLines(), materials);
    WriteFile(UsageLines(), usage);

    const auto companyId = AddNewCompany(m_app, "Bench Boats", "1 Limit Road, Port Ellery, Maine");
    if (!companyId) Stop(SentenceOf(companyId.error()));
    m_app.CurrentCompanyId = *companyId;
    const Done named = SaveAdditionalNames(m_app, {"Styrene", "MMA", "Toluene", "-", "-", "-"});
    if (!named) Stop(SentenceOf(named.error()));
    int processed = 0;
    int errors = 0;
    ImportMaterialFile(m_app, MaterialLines(), processed, errors);
    if (processed != m_records || errors != 0) Stop("its materials are not imported.");
    ImportUsageFile(m_app, UsageLines(), processed, errors);
    if (processed != m_records || errors != 0) Stop("its usage is not imported.");
    WriteFile(m_app.ProgramFolder / "made", "");
}
} // namespace mact
