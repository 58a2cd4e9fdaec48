#include "reports/period_usage.h"

#include "base/text.h"
#include "reports/report_frame.h"
#include "reports/report_period.h"
#include "usage/usage_store.h"

#include <cmath>
#include <utility>

namespace mact {
namespace {

/// From 0 to 65535.
std::size_t Place(std::int16_t materialId) {
    return static_cast<std::uint16_t>(materialId);
}

} // namespace

PeriodUsage::PeriodUsage(const std::vector<UsageRecord>& records) {
    // Counted, then put in their places: no list of its own for each material.
    m_ends.resize(Place(-1) + 1);
    for (const UsageRecord& usage : records)
        ++m_ends[Place(usage.MaterialId)];
    std::uint32_t start = 0;
    for (std::uint32_t& end : m_ends)
        start += std::exchange(end, start); // where they begin, for now
    m_quantities.resize(records.size());
    for (const UsageRecord& usage : records)
        m_quantities[m_ends[Place(usage.MaterialId)]++] = {usage.Quantity, usage.Unit};
}

std::span<const PeriodUsage::Quantity> PeriodUsage::QuantitiesOf(std::int16_t materialId) const {
    const std::size_t place = Place(materialId);
    const std::uint32_t start = place == 0 ? 0 : m_ends[place - 1];
    return std::span(m_quantities).subspan(start, m_ends[place] - start);
}

Result<double> PeriodUsage::PoundsUsed(const MaterialRecord& material) const {
    return PoundsUsed(material.MaterialId, material.Density, material.CustomId);
}

Result<double> PeriodUsage::PoundsUsed(std::int16_t materialId, double density,
                                       std::string_view customId) const {
    double pounds = 0;
    bool isFinite = true;
    for (const Quantity& quantity : QuantitiesOf(materialId)) {
        const Result<double> converted = ConvertQuantity(quantity.Amount, density, quantity.Unit, UnitLbs);
        if (converted) pounds += *converted;
        isFinite = isFinite && converted && std::isfinite(pounds);
    }
    if (!isFinite) return CannotCalculate("add up the pounds used of " + Named(customId));
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

std::string Named(std::string_view customId) {
    return "the material \"" + Utf8FromCodePage(Trim(customId)) + '"';
}

} // namespace mact
