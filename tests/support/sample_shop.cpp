#include "tests/support/sample_shop.h"

#include "app/startup.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "transfer/transfer.h"

#include <cstdlib>
#include <iostream>

namespace mact {
namespace {

[[noreturn]] void Stop(const TestProgram& program) {
    std::cerr << "The sample shop cannot be set up: " << program.Prompts.LastText() << "\n";
    std::abort();
}

} // namespace

SampleShop::SampleShop() {
    const std::filesystem::path samples = ProgramFile("samples");
    std::error_code ignored;
    std::filesystem::copy(MACT_SOURCE_FOLDER "/samples", samples, ignored);

    App.CurrentCompanyId = 0;
    if (!StartUp(App)) Stop(*this);
    SaveCompany(App, "Tern Hollow Boatworks", "14 Slipway Road, Port Ellery, Maine");
    SaveCompany(App, "Tern Hollow Boatworks", "Mould loft, 3 Quarry Lane, Port Ellery, Maine");
    std::vector<CompanyRecord> companies;
    if (!FindCompanies(App, {}, companies)) Stop(*this);
    if (!SelectCompany(App, companies.front())) Stop(*this);

    if (!SaveAdditionalNames(App, {"MMA", "Styrene", "-", "-", "-", "-"})) Stop(*this);
    LoadAdditionalNames(App);
    int processedCount = 0;
    int errorCount = 0;
    ImportMaterialFile(App, samples / "materials.txt", processedCount, errorCount);
    ImportUsageFile(App, samples / "usage.txt", processedCount, errorCount);
    if (!Prompts.Shown.empty()) Stop(*this);

    m_firstSettings = Settings.Values;
    std::filesystem::copy(ProgramFile("data"), ProgramFile("data at first"), ignored);
    if (ignored) Stop(*this);
}

void SampleShop::Restore() {
    std::error_code error;
    std::filesystem::remove_all(ProgramFile("data"), error);
    std::filesystem::copy(ProgramFile("data at first"), ProgramFile("data"), error);
    if (error) Stop(*this);
    App.CurrentCompanyId = 1;
    Settings.Values = m_firstSettings;
    Prompts.Shown.clear();
}
} // namespace mact
