#include "overview/kept_pack.h"

#include "base/text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace mact {
namespace {

using Row = std::vector<std::string>;

/// Takes one cell off the front of `text`, up to its comma or line end.
std::string TakeCell(std::string_view& text) {
    if (!text.starts_with('"')) {
        const std::size_t end = std::min(text.find_first_of(",\r\n"), text.size());
        const std::string cell(text.substr(0, end));
        text.remove_prefix(end);
        return cell;
    }
    std::string cell;
    text.remove_prefix(1);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('"'), text.size());
        cell += text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!text.starts_with('"')) break;
        cell += '"'; // it was doubled
        text.remove_prefix(1);
    }
    return cell;
}

/// The rows of a CSV. Empty lines do not count.
std::vector<Row> RowsOf(std::string_view csv) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // as spreadsheets put in front
    if (csv.starts_with(byteOrderMark)) csv.remove_prefix(byteOrderMark.size());
    std::vector<Row> rows;
    bool isInRow = false;
    while (!csv.empty()) {
        if (csv.front() == '\r' || csv.front() == '\n') {
            csv.remove_prefix(1);
            isInRow = false;
            continue;
        }
        if (!isInRow) rows.emplace_back();
        isInRow = true;
        if (csv.front() == ',' && !rows.back().empty()) csv.remove_prefix(1);
        rows.back().push_back(TakeCell(csv));
    }
    return rows;
}

/// What a row says, by what it is about: month end, figure and item. A months row has no item of its own:
/// what stands there is part of what it says.
std::map<std::string, std::string> SayingsOf(const std::vector<Row>& rows) {
    constexpr std::size_t figureColumn = 1;
    std::map<std::string, std::string> sayings;
    for (std::size_t number = 1; number < rows.size(); ++number) { // the first is the header
        const Row& row = rows[number];
        const bool hasItem = row.size() > figureColumn && row[figureColumn] != "months";
        const std::size_t namingCells = hasItem ? figureColumn + 2 : figureColumn + 1;
        std::string name;
        std::string saying;
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (row[column].empty()) continue;
            std::string& text = column < namingCells ? name : saying;
            AppendAll(text, text.empty() ? "" : ", ", row[column]);
        }
        std::string& said = sayings[name]; // two materials may have one ID
        AppendAll(said, said.empty() ? "" : "; ", saying);
    }
    return sayings;
}

std::vector<PackDifference> DifferencesOf(const std::map<std::string, std::string>& kept,
                                          const std::map<std::string, std::string>& today) {
    std::vector<PackDifference> differences;
    for (const auto& [name, saying] : kept) {
        const auto now = today.find(name);
        if (now == today.end())
            differences.push_back({.Figure = name, .Kept = saying});
        else if (now->second != saying)
            differences.push_back({.Figure = name, .Kept = saying, .Today = now->second});
    }
    for (const auto& [name, saying] : today)
        if (!kept.contains(name)) differences.push_back({.Figure = name, .Today = saying});
    return differences;
}

/// Of a name 2005-1.csv.
std::optional<HalfYear> HalfYearOfCsv(const std::filesystem::path& name) {
    const std::string text = PathText(name);
    constexpr std::size_t yearDigits = 4;
    if (text.size() != std::string_view("2005-1.csv").size() || text[yearDigits] != '-') return std::nullopt;
    if (!text.ends_with(".csv")) return std::nullopt;
    return ParseHalfYear(text.substr(yearDigits + 1, 1) + '/' + text.substr(0, yearDigits));
}

} // namespace

Result<std::vector<HalfYear>> KeptPacks(const AppContext& app) {
    const std::filesystem::path folder = PackFilesOf(app, {.Year = 2005}).Csv.parent_path();
    const Result<bool> isThere = IsAnythingAt(folder);
    if (!isThere) return isThere.error();
    std::vector<HalfYear> kept;
    if (!*isThere) return kept;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (const auto half = HalfYearOfCsv(entry->path().filename())) kept.push_back(*half);
    if (error) return Failure{"list the folder", folder, error.message()};
    std::ranges::sort(kept, {}, [](const HalfYear& half) { return std::pair(half.Year, half.Half); });
    return kept;
}

Result<std::vector<PackDifference>> ComparePack(const AppContext& app, const ShopFigures& figures,
                                                HalfYear half) {
    const std::filesystem::path path = PackFilesOf(app, half).Csv;
    const Result<std::string> csv = ReadWholeFile(app.Files, path);
    if (!csv) return csv.error();
    const std::vector<Row> kept = RowsOf(*csv);
    const std::vector<Row> today = RowsOf(PackCsv(figures, half));
    if (kept.empty() || kept.front() != today.front())
        return Failure{"read the half-year pack", path, "its first line is not that of a pack"};
    return DifferencesOf(SayingsOf(kept), SayingsOf(today));
}
} // namespace mact
