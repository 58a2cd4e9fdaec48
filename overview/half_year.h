#pragma once

#include "overview/output_page.h"
#include "overview/overview_options.h"
#include "overview/shop_figures.h"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The half-year pack: what the records say for the semiannual report (63.5764(c)), as a page and a CSV in
/// half-year/<company>/ in the program folder. It makes no statement of compliance: that is the responsible
/// official's.

struct HalfYear {
    int Year = 0; ///< 1900 to 9999
    int Half = 1; ///< 1 = January to June, 2 = July to December
    bool operator==(const HalfYear&) const = default;
};
inline constexpr std::size_t MonthsOfHalfYear = 6;
/// Of a text 1/2005 or 2/2005; empty for any other.
std::optional<HalfYear> ParseHalfYear(std::string_view text);
/// Its month ends, oldest first.
std::array<MonthNumber, MonthsOfHalfYear> MonthEndsOf(HalfYear half);
/// The newest half year that is over at the end of the month; before the first one, the month's own.
HalfYear NewestHalfYear(MonthNumber monthEnd);
/// "July to December 2005"
std::string HalfYearText(HalfYear half);
/// The sixtieth day after the half year: "1 March 2006".
std::string DueDateText(HalfYear half);

/// A data file that a pack was made from.
struct HashedFile {
    std::string Name{};                  ///< UTF-8
    std::optional<std::string> Digest{}; ///< SHA-256 in hexadecimal digits; empty = there is no such file
};
/// What a pack is made from.
struct PackSource {
    std::string CompanyName{};     ///< code-page text
    std::string CompanyLocation{}; ///< code-page text
    OverviewOptions Options{};
    ShopRecords Shop{};
    std::vector<HashedFile> Files{};
};
/// Reads records and digests as they stood at one time. Creates no data file and locks none.
Result<PackSource> ReadPackSource(const AppContext& app);

/// The CSV: the lines of the overview's for the six month ends, in UTF-8 with CR LF.
std::string PackCsv(const ShopFigures& figures, HalfYear half);

struct PackFiles {
    std::filesystem::path Page{}; ///< half-year/1/2005-1.htm
    std::filesystem::path Csv{};  ///< half-year/1/2005-1.csv
};
/// Where the pack of the current company is, be it there or not.
PackFiles PackFilesOf(const AppContext& app, HalfYear half);
/// Whether there is one, or a part of one.
Result<bool> IsPackKept(const AppContext& app, HalfYear half);

/// Writes the pack of the current company. One that is kept is replaced only if `mayReplace`; otherwise that
/// is a Failure. Both files are built before one is written; if the second cannot be written, the first is
/// put back as it was.
Result<PackFiles> WritePack(const AppContext& app, HalfYear half, bool mayReplace);
} // namespace mact
