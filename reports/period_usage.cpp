#include "reports/period_usage.h"

#include "reports/report_page.h"
#include "usage/usage_store.h"

#include <algorithm>
#include <cmath>

namespace mact {

PeriodUsage::PeriodUsage(const std::vector<UsageRecord>& records) {
    m_quantities.reserve(records.size());
    for (const UsageRecord& usage : records)
        m_quantities.push_back({usage.MaterialId, usage.Unit, usage.Quantity});
    // Stable, since the last digits of a sum depend on the order of its terms.
    std::ranges::stable_sort(m_quantities, {}, &Quantity::MaterialId);
}

Result<double> PeriodUsage::PoundsUsed(const MaterialRecord& material) const {
    return PoundsUsed(material.MaterialId, material.Density, material.CustomId);
}

Result<double> PeriodUsage::PoundsUsed(std::int16_t materialId, double density,
                                       std::string_view customId) const {
    // Checked after each term: an overflow is a failure even if a later quantity cancels it.
    double pounds = 0;
    bool isFinite = true;
    for (auto used = std::ranges::lower_bound(m_quantities, materialId, {}, &Quantity::MaterialId);
         used != m_quantities.end() && used->MaterialId == materialId; ++used) {
        const Result<double> converted = ConvertQuantity(used->Amount, density, used->Unit, UnitLbs);
        if (converted) pounds += *converted;
        isFinite = isFinite && converted && std::isfinite(pounds);
    }
    if (!isFinite) return CannotCalculate("add up the pounds used of " + MaterialNamed(customId));
    return pounds;
}

Result<PeriodUsage> ReadPeriodUsage(const DataFiles& data, const std::string& monthList) {
    return ReadUsage(data, {.Periods = monthList}).transform([](const auto& records) {
        return PeriodUsage(records);
    });
}
} // namespace mact
