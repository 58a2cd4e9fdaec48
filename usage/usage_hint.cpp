#include "usage/usage_hint.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>

namespace mact {
namespace {

constexpr double UnusualTimes = 5; // the median month, or that part of it

std::optional<double> MedianOf(std::vector<double>& values) {
    if (values.empty()) return {};
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    if (values.size() % 2 == 1) return *middle;
    const double below = *std::max_element(values.begin(), middle);
    return below + (*middle - below) / 2; // the sum of the two could overflow
}

} // namespace

std::optional<double> MedianMonth(const std::vector<UsageRecord>& usage, std::int16_t materialId,
                                  double density, std::int16_t exceptUsageId) {
    std::vector<double> months;
    for (const UsageRecord& record : usage) {
        if (record.MaterialId != materialId || record.UsageId == exceptUsageId || !record.Active) continue;
        const Result<double> pounds = ConvertQuantity(record.Quantity, density, record.Unit, UnitLbs);
        if (pounds) months.push_back(*pounds);
    }
    return MedianOf(months);
}

std::string DoubtOn(const UsageEntry& entry, double density, std::optional<double> medianMonth) {
    const std::optional<double> quantity = ParseNumber(Trim(entry.Quantity));
    if (!entry.MaterialId || !entry.Unit || !quantity) return {};
    const Result<double> pounds = ConvertQuantity(*quantity, density, *entry.Unit, UnitLbs);
    if (!pounds) return "too large to be shown in lbs";
    if (*quantity < 0) return "a quantity below 0";
    if (*quantity > 0 && *pounds == 0) return "gallons weigh nothing, since the material's density is 0";
    if (!medianMonth || *medianMonth <= 0) return {};
    const std::string median = ShortGroupedText(*medianMonth) + " lbs, this material's median month";
    if (*pounds > UnusualTimes * *medianMonth)
        return "over five times " + median +
               (entry.Unit == UnitMgal ? "; 1 Mgal is 1,000 gallons" : std::string());
    return *pounds < *medianMonth / UnusualTimes ? "under a fifth of " + median : std::string();
}

Hint HintOn(const UsageEntry& entry, double density, std::optional<double> medianMonth) {
    const std::optional<double> quantity = ParseNumber(Trim(entry.Quantity));
    if (!entry.MaterialId || !entry.Unit || !quantity) return {};
    const std::string doubt = DoubtOn(entry, density, medianMonth);
    const Result<double> pounds = ConvertQuantity(*quantity, density, *entry.Unit, UnitLbs);
    if (!pounds) return {.Text = doubt, .IsDoubtful = true};
    const std::string text = "= " + ShortGroupedText(*pounds) + " lbs";
    return {.Text = doubt.empty() ? text : text + ": " + doubt, .IsDoubtful = !doubt.empty()};
}
} // namespace mact
