#include "overview/half_year.h"

#include "base/numbers.h"
#include "base/sha256.h"
#include "base/text.h"
#include "overview/half_year_page.h"
#include "overview/overview_csv.h"
#include "store/steady_reading.h"

#include <chrono>
#include <utility>

namespace mact {
namespace {

constexpr std::string_view Folder = "half-year";
constexpr std::chrono::days DaysUntilDue{60};

std::string FolderOfCompany(const AppContext& app) {
    return WholeNumberText(app.CurrentCompanyId);
}

Result<std::vector<HashedFile>> HashFiles(const DataFiles& data) {
    std::vector<HashedFile> hashed;
    for (const std::filesystem::path& path : ShopFiles(data)) {
        hashed.push_back({.Name = PathText(path.filename())});
        const Result<bool> isThere = IsAnythingAt(path);
        if (!isThere) return isThere.error();
        if (!*isThere) continue;
        const Result<std::string> digest = Sha256OfFile(data.Files, path);
        if (!digest) return digest.error();
        hashed.back().Digest = *digest;
    }
    return hashed;
}

/// With CR LF at the ends of lines; line ends within quotes stay.
std::string WithCrLf(std::string_view csv) {
    std::string text;
    bool isQuoted = false;
    for (const char character : csv) {
        if (character == '"') isQuoted = !isQuoted;
        if (character == '\n' && !isQuoted) text += '\r';
        text += character;
    }
    return text;
}

/// The file's content; empty if there is no such file.
Result<std::optional<std::string>> ContentIfAny(FileAccess& files, const std::filesystem::path& path) {
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return std::optional<std::string>{};
    return ReadWholeFile(files, path).transform([](const std::string& content) {
        return std::optional(content);
    });
}

/// A page and a CSV of different days would contradict each other.
Done WriteBoth(FileAccess& files, const PackFiles& paths, std::string_view page, std::string_view csv) {
    const Result<std::optional<std::string>> before = ContentIfAny(files, paths.Csv);
    if (!before) return before.error();
    const Done csvWritten = ReplaceFile(files, paths.Csv, csv);
    if (!csvWritten) return csvWritten;
    const Done pageWritten = ReplaceFile(files, paths.Page, page);
    if (pageWritten) return pageWritten;
    const Done putBack = *before ? ReplaceFile(files, paths.Csv, **before) : files.Remove(paths.Csv);
    return putBack ? pageWritten : BothOf(pageWritten.error(), putBack.error());
}

} // namespace

std::optional<HalfYear> ParseHalfYear(std::string_view text) {
    const std::optional<MonthNumber> month = MonthOfPeriod(text); // here the month stands for the half
    if (!month || *month < FirstMonthEnd || *month > LastMonthEnd || *month % 12 > 1) return std::nullopt;
    return HalfYear{.Year = *month / 12, .Half = *month % 12 + 1};
}

std::array<MonthNumber, MonthsOfHalfYear> MonthEndsOf(HalfYear half) {
    std::array<MonthNumber, MonthsOfHalfYear> months{};
    for (std::size_t index = 0; index < months.size(); ++index)
        months[index] = MonthNumberOf(half.Year, half.Half == 1 ? 1 : 7) + static_cast<int>(index);
    return months;
}

HalfYear NewestHalfYear(MonthNumber monthEnd) {
    const HalfYear own{.Year = monthEnd / 12, .Half = monthEnd % 12 < 6 ? 1 : 2};
    if (MonthEndsOf(own).back() == monthEnd) return own;
    if (own.Half == 2) return {.Year = own.Year, .Half = 1};
    const HalfYear before{.Year = own.Year - 1, .Half = 2};
    return MonthEndsOf(before).back() >= FirstMonthEnd ? before : own;
}

std::string HalfYearText(HalfYear half) {
    return (half.Half == 1 ? "January to June " : "July to December ") + WholeNumberText(half.Year);
}

std::string DueDateText(HalfYear half) {
    const auto months = MonthEndsOf(half);
    const int last = months.back();
    const std::chrono::year_month_day lastDay = std::chrono::year(last / 12) /
                                                std::chrono::month(static_cast<unsigned>(last % 12 + 1)) /
                                                std::chrono::last;
    const std::chrono::year_month_day due = std::chrono::sys_days(lastDay) + DaysUntilDue;
    const MonthNumber month = MonthNumberOf(int{due.year()}, static_cast<int>(unsigned{due.month()}));
    return WholeNumberText(unsigned{due.day()}) + ' ' + LongMonthName(month);
}

Result<PackSource> ReadPackSource(const AppContext& app) {
    const DataFiles data(app);
    const Result<OverviewOptions> options = ReadOverviewOptions(data);
    if (!options) return options.error();
    return ReadSteadily(app.Files, ShopFiles(data), [&]() -> Result<PackSource> {
        PackSource source{.CompanyName = app.CurrentCompanyName,
                          .CompanyLocation = app.CurrentCompanyLocation,
                          .Options = *options};
        Result<ShopRecords> shop = ReadShopRecords(data);
        if (!shop) return shop.error();
        source.Shop = std::move(*shop);
        Result<std::vector<HashedFile>> files = HashFiles(data);
        if (!files) return files.error();
        source.Files = std::move(*files);
        return source;
    });
}

std::string PackCsv(const ShopFigures& figures, HalfYear half) {
    std::string csv = OverviewCsvHeader();
    for (const MonthNumber monthEnd : MonthEndsOf(half))
        csv += OverviewCsv(figures, figures.At(monthEnd));
    return WithCrLf(csv);
}

PackFiles PackFilesOf(const AppContext& app, HalfYear half) {
    const std::filesystem::path folder = app.ProgramFolder / Folder / FolderOfCompany(app);
    const std::string name = WholeNumberText(half.Year) + '-' + WholeNumberText(half.Half);
    return {.Page = folder / (name + ".htm"), .Csv = folder / (name + ".csv")};
}

Result<bool> IsPackKept(const AppContext& app, HalfYear half) {
    const PackFiles paths = PackFilesOf(app, half);
    const Result<bool> hasPage = IsAnythingAt(paths.Page);
    if (!hasPage || *hasPage) return hasPage;
    return IsAnythingAt(paths.Csv);
}

Result<PackFiles> WritePack(const AppContext& app, HalfYear half, bool mayReplace) {
    const PackFiles paths = PackFilesOf(app, half);
    const Result<bool> isKept = IsPackKept(app, half);
    if (!isKept) return isKept.error();
    if (*isKept && !mayReplace)
        return Failure{"write the half-year pack", paths.Page, "there is one already"};
    const Result<PackSource> source = ReadPackSource(app);
    if (!source) return source.error();
    const ShopFigures figures(source->Shop, source->Options.Start);
    const std::string page = PackPage(*source, figures, half);
    const std::string csv = PackCsv(figures, half);
    const auto folder = OutputFolder(app, {std::string(Folder), FolderOfCompany(app)});
    if (!folder) return folder.error();
    const Done written = WriteBoth(app.Files, paths, page, csv);
    if (!written) return written.error();
    return paths;
}
} // namespace mact
