#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "materials/material_record.h"
#include "usage/usage_record.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The live usage of a report's months, sorted by material once so that no report searches it in a loop.
class PeriodUsage {
public:
    explicit PeriodUsage(const std::vector<UsageRecord>& records);

    bool IsEmpty() const { return m_quantities.empty(); }
    /// The material's quantities in pounds, added up in file order; 0 without any.
    Result<double> PoundsUsed(const MaterialRecord& material) const;

private:
    struct Quantity {
        double Amount;
        std::int16_t Unit;
    };
    std::unordered_map<std::int16_t, std::vector<Quantity>> m_quantities; ///< by MaterialId
};

/// `monthList` is as BuildPeriodList gives it.
Result<PeriodUsage> ReadPeriodUsage(AppContext& app, const std::string& monthList);

double Kilograms(double pounds);

/// The material as a failure's description names it: the material "GC-110". UTF-8.
std::string Named(const MaterialRecord& material);
