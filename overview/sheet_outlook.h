#pragma once

#include "base/result.h"
#include "overview/overview_options.h"
#include "overview/shop_figures.h"
#include "overview/shop_records.h"
#include "store/data_folder.h"
#include "usage/usage_changes.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// What the overview would say of a month end if the rows of a month's sheet were stored. In words as far as
/// the arithmetic goes: whether a shop is compliant is for its responsible official to say.
struct SheetAnswer {
    /// "With this sheet, DEC 2005: emission average 91.2 % of the allowance, 1,195.20 kg left (now 88.1 %)."
    std::string Line{};
    /// A sentence each on what would be over, differ or have no answer, and does not now.
    std::vector<std::string> Worse{};
    MonthFigures Figures{}; ///< with the rows
};

/// Reads the records once and answers as often as something is typed. Creates no file and locks none.
class SheetOutlook {
public:
    SheetOutlook() = default;
    SheetOutlook(const SheetOutlook&) = delete;
    SheetOutlook& operator=(const SheetOutlook&) = delete;

    /// Does the next step of reading, so that a window stays alive meanwhile. True once it can answer. After
    /// a Failure the next step tries again.
    Result<bool> Step(const DataFiles& data);
    bool IsReady() const { return m_shop != nullptr; }

    /// To be called once it is ready. `changes` as they would be saved: what they replace does not count, nor
    /// do those that are not Active. A record that is gone meanwhile counts as a further one.
    SheetAnswer AnswerFor(std::chrono::year_month month, const std::vector<UsageChange>& changes);
    /// The shop with the changes of the last answer.
    const ShopFigures& Shop() const { return *m_shop; }

private:
    void Store(const std::vector<UsageChange>& changes);

    bool m_isRead = false;
    OverviewOptions m_options{};
    ShopRecords m_records{};               ///< with the changes
    std::vector<ShopUse> m_storedUsage{};  ///< without them
    std::unique_ptr<ShopFigures> m_shop{}; ///< of m_records
    std::optional<MonthFigures> m_now{};   ///< without changes, of the month that was asked for last
};
} // namespace mact
