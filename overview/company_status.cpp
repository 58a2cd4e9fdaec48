#include "overview/company_status.h"

#include "base/json.h"
#include "base/numbers.h"
#include "base/text.h"
#include "overview/attention.h"
#include "overview/overview_csv.h"
#include "overview/overview_options.h"
#include "overview/shop_figures.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace mact {
namespace {

void KeepSmaller(std::optional<double>& smallest, double headroom) {
    if (std::isfinite(headroom)) smallest = std::min(smallest.value_or(headroom), headroom);
}

double PercentLeft(double figure, double limit) {
    return (limit - figure) / limit * 100;
}

std::string MonthOrNothing(const CompanyStatus& status) {
    return status.NewestUse ? MonthText(*status.NewestUse) : std::string();
}

std::string HeadroomText(const CompanyStatus& status) {
    return status.SmallestHeadroom ? RoundedText(*status.SmallestHeadroom) : std::string();
}

std::string JsonObject(const CompanyStatus& status) {
    const auto orNull = [](const std::string& text) { return text.empty() ? "null" : text; };
    const auto state = [&](State of) { return JsonText(StateText(of, status.Months)); };
    std::string json = "{\"id\": " + WholeNumberText(status.CompanyId);
    json += ", \"name\": " + JsonText(Utf8FromCodePage(Trim(status.Name)));
    json += ", \"month\": " + JsonTextOrNull(MonthOrNothing(status));
    json += ", \"rows\": " + state(status.Rows);
    json += ", \"filled\": " + state(status.Filled);
    json += ", \"average\": " + state(status.Average);
    json += ", \"headroom_percent\": " + orNull(HeadroomText(status));
    json += ", \"months_without_entry\": " + WholeNumberText(static_cast<std::int64_t>(status.WithoutEntry));
    json += ", \"findings\": " + WholeNumberText(static_cast<std::int64_t>(status.Findings));
    return json + '}';
}

} // namespace

Result<CompanyStatus> ReadCompanyStatus(const DataFiles& data, std::string name) {
    const Result<OverviewOptions> options = ReadOverviewOptions(data);
    if (!options) return options.error();
    const Result<ShopRecords> records = ReadShopRecords(data);
    if (!records) return records.error();
    const ShopFigures shop(*records, options->Start);
    CompanyStatus status{.CompanyId = data.CompanyId, .Name = std::move(name), .NewestUse = shop.NewestUse()};
    // Without a month every record has a period that is empty or not understood: the same at any month end.
    const MonthNumber monthEnd = status.NewestUse.value_or(FirstMonthEnd);
    for (const Attention& finding : FindAttention(shop, monthEnd, data.CompanyId))
        if (finding.Kind == AttentionKind::NotTrusted) ++status.Findings;
    if (!status.NewestUse) return status;
    const MonthFigures figures = shop.At(*status.NewestUse);
    status.Months = figures.Months;
    for (const ContentFigure& content : figures.Contents) {
        status.Rows = WorseOf(status.Rows, content.Judged.Is);
        if (content.Limit)
            KeepSmaller(status.SmallestHeadroom, PercentLeft(content.Content.Exact, *content.Limit));
    }
    for (const FilledFigure& filled : figures.Filled) {
        status.Filled = WorseOf(status.Filled, filled.Judged.Is);
        KeepSmaller(status.SmallestHeadroom, PercentLeft(filled.PointValue, filled.Limit));
    }
    status.Average = figures.Average.Judged.Is;
    KeepSmaller(status.SmallestHeadroom, figures.Average.HeadroomPercent().Exact);
    status.WithoutEntry = figures.WithoutEntry.size();
    return status;
}

Standing StandingOf(const CompanyStatus& status) {
    const State worst = WorseOf(WorseOf(status.Rows, status.Filled), status.Average);
    if (worst == State::Within) return Standing::Within;
    if (worst == State::TooEarly || worst == State::NotUsed) return Standing::Unknown;
    return Standing::Trouble;
}

void SortWorstFirst(std::vector<CompanyStatus>& companies) {
    std::ranges::stable_sort(companies, {}, [](const CompanyStatus& status) {
        return std::tuple(StandingOf(status),
                          status.SmallestHeadroom.value_or(std::numeric_limits<double>::infinity()));
    });
}

std::string StatusLine(const CompanyStatus& status) {
    std::string line =
        WholeNumberText(status.CompanyId) + '|' + Printable(Utf8FromCodePage(Trim(status.Name)));
    for (const std::string& text :
         {MonthOrNothing(status), StateText(status.Rows, status.Months),
          StateText(status.Filled, status.Months), StateText(status.Average, status.Months),
          HeadroomText(status), WholeNumberText(static_cast<std::int64_t>(status.WithoutEntry)),
          WholeNumberText(static_cast<std::int64_t>(status.Findings))})
        line += '|' + text;
    return line;
}

std::string StatusJson(const std::vector<CompanyStatus>& companies) {
    std::vector<std::string> objects;
    objects.reserve(companies.size());
    std::ranges::transform(companies, std::back_inserter(objects), JsonObject);
    return JsonLines(objects);
}
} // namespace mact
