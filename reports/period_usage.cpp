#include "reports/period_usage.h"

#include "base/text.h"
#include "reports/report_frame.h"
#include "reports/report_period.h"
#include "usage/usage_store.h"

#include <cmath>

PeriodUsage::PeriodUsage(const std::vector<UsageRecord>& records) {
    for (const UsageRecord& usage : records)
        m_quantities[usage.MaterialId].push_back({usage.Quantity, usage.Unit});
}

Result<double> PeriodUsage::PoundsUsed(const MaterialRecord& material) const {
    const auto found = m_quantities.find(material.MaterialId);
    if (found == m_quantities.end()) return 0.0;
    double pounds = 0;
    bool isFinite = true;
    for (const Quantity& quantity : found->second) {
        const Result<double> converted =
            ConvertQuantity(quantity.Amount, material.Density, quantity.Unit, UnitLbs);
        if (converted) pounds += *converted;
        isFinite = isFinite && converted && std::isfinite(pounds);
    }
    if (!isFinite) return CannotCalculate("add up the pounds used of " + Named(material));
    return pounds;
}

Result<PeriodUsage> ReadPeriodUsage(AppContext& app, const std::string& monthList) {
    const Result<std::vector<UsageRecord>> records = ReadUsage(app, {.Periods = monthList});
    if (!records) return records.error();
    return PeriodUsage(*records);
}

double Kilograms(double pounds) {
    return pounds / 2.2046;
}

std::string Named(const MaterialRecord& material) {
    return "the material \"" + Utf8FromCodePage(Trim(material.CustomId)) + '"';
}
