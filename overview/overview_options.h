#pragma once

#include "base/result.h"
#include "overview/months.h"
#include "overview/operations.h"
#include "store/data_folder.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What the user has set for the overview of a company, in data/<company>_overview.txt: lines key=value in
/// UTF-8. Without the file everything is at its default.

/// The way in which an operation meets its limits (63.5698 to 63.5701), as the user has chosen it.
enum class OperationOption { Average, TableTwo, Filled, Closed, NotUsed };
/// As in the file: "average", "table2", "filled", "closed", "not used".
std::string_view OptionText(OperationOption option);

inline constexpr double DefaultWarnHeadroom = 5;
inline constexpr double DefaultWarnContent = 0.5;

struct OverviewOptions {
    std::optional<MonthNumber> Start{};        ///< empty = the first month with a live record
    double WarnHeadroom = DefaultWarnHeadroom; ///< percent of the allowance
    double WarnContent = DefaultWarnContent;   ///< points below the limit, in weight percent
    std::array<std::optional<OperationOption>, Operations.size()> OptionOf{}; ///< empty = not chosen
    std::string Address{};                                                    ///< one line, UTF-8
    std::vector<std::string> OtherLines{}; ///< lines of a later version, which are written again
    /// Sentences on the values that were not understood and so count as not set; never written.
    std::vector<std::string> NotUnderstood{};
};

/// Creates no file and locks none.
Result<OverviewOptions> ReadOverviewOptions(const DataFiles& data);

/// Replaces the file as a whole. In an address, line ends and other control characters become "?".
Done SaveOverviewOptions(const DataFiles& data, const OverviewOptions& options);
} // namespace mact
