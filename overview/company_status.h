#pragma once

#include "base/result.h"
#include "overview/month_figures.h"
#include "store/data_folder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// Where a company stands at its newest month with use, in one line.
struct CompanyStatus {
    std::int16_t CompanyId = 0;
    std::string Name{}; ///< code-page text
    /// Empty if no live usage record has a month; all but the findings is then at its defaults.
    std::optional<MonthNumber> NewestUse{};
    int Months = 0;                ///< since the start month, 12 at most
    State Rows = State::NotUsed;   ///< the worst of them
    State Filled = State::NotUsed; ///< the worst of the filled resins
    State Average = State::NotUsed;
    /// Of the average, the rows and the filled resins: what is left of the limit, exact, in percent of it.
    std::optional<double> SmallestHeadroom{};
    std::size_t WithoutEntry = 0; ///< months
    std::size_t Findings = 0;     ///< that make figures untrustworthy
};
/// `data` is the company's. Creates no file and locks none.
Result<CompanyStatus> ReadCompanyStatus(const DataFiles& data, std::string name);

/// What a status says as a whole.
enum class Standing {
    Trouble, ///< something is over or differs, or has no answer
    Unknown, ///< no data, or too early
    Within,
};
Standing StandingOf(const CompanyStatus& status);

/// Trouble first, then what is unknown; within these the smallest headroom first.
void SortWorstFirst(std::vector<CompanyStatus>& companies);

/// id|name|newest month|rows|filled resins|average|headroom in percent|months without entry|findings, in
/// UTF-8.
std::string StatusLine(const CompanyStatus& status);
/// The same as an array of objects, in UTF-8, ending with LF.
std::string StatusJson(const std::vector<CompanyStatus>& companies);
} // namespace mact
