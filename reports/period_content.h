#pragma once

#include "base/result.h"
#include "store/data_folder.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace mact {

/// What there is to report, said before a report is made. Nothing is created, and no file is locked.

/// How many live usage records each period has.
class PeriodCounts {
public:
    void Add(std::string_view period);

    bool IsEmpty() const { return m_counts.empty(); }
    /// How many records a report counts whose months are `monthList` (BuildPeriodList).
    std::size_t CountIn(std::string_view monthList) const;
    /// The last month that has usage and that a report can end with; empty without one.
    std::optional<std::chrono::year_month> Newest() const { return m_newest; }

private:
    std::unordered_map<std::string, std::size_t> m_counts; ///< by PeriodKey
    std::optional<std::chrono::year_month> m_newest;
};
Result<PeriodCounts> ReadPeriodCounts(const DataFiles& data);

/// The live materials of the company.
Result<std::size_t> CountMaterials(const DataFiles& data);

/// What the twelve months hold that end with the chosen one: "187 records", or what is missing. UTF-8.
std::string PeriodContent(const Result<PeriodCounts>& counts, std::optional<std::int16_t> month,
                          std::string_view year);
/// "15 materials"
std::string MaterialsContent(const Result<std::size_t>& materials);
} // namespace mact
