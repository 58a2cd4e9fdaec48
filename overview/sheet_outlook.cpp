#include "overview/sheet_outlook.h"

#include "base/by_number.h"
#include "base/numbers.h"
#include "base/text.h"
#include "overview/answers.h"
#include "overview/months.h"
#include "overview/overview_csv.h"
#include "overview/untrusted_figures.h"
#include "overview/what_if.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace mact {
namespace {

ShopUse UseOf(const UsageRecord& record) {
    return {.Record = record.UsageId,
            .MaterialId = record.MaterialId,
            .Period = record.Period,
            .Quantity = record.Quantity,
            .Unit = record.Unit};
}

/// Behind the others if it has no number yet.
std::int16_t FileOrder(const ShopUse& use) {
    return use.Record == 0 ? std::numeric_limits<std::int16_t>::max() : use.Record;
}

/// What is worse with the sheet than now.
class WorseFigures {
public:
    WorseFigures(const ShopFigures& shop, const MonthFigures& now, const MonthFigures& with) {
        Add("emission average", now.Average.Judged, with.Average.Judged);
        for (const ContentComparison& content : Compare(now, with).Contents)
            Add(content.Item, content.JudgedBefore, content.JudgedAfter);
        for (const FilledFigure& filled : with.Filled) {
            const auto before = std::ranges::lower_bound(now.Filled, filled.Material, {},
                                                         &FilledFigure::Material); // in file order
            const bool wasUsed = before != now.Filled.end() && before->Material == filled.Material;
            Add(Trim(shop.Shop().Materials[filled.Material].CustomId),
                wasUsed ? before->Judged : Verdict{.Is = State::NotUsed}, filled.Judged);
        }
    }

    std::vector<std::string> Sentences() const {
        std::vector<std::string> sentences;
        const auto add = [&](std::string_view beginning, const std::vector<std::string>& names) {
            if (!names.empty()) sentences.push_back(std::string(beginning) + FirstFew(names) + '.');
        };
        add("Over with this sheet, and not now: ", m_over);
        add("Differs with this sheet, and not now: ", m_differing);
        add("Without an answer with this sheet, as a number is too large or not a number: ", m_withoutAnswer);
        return sentences;
    }

private:
    void Add(std::string_view item, const Verdict& now, const Verdict& with) {
        if (Badness(with.Is) <= Badness(now.Is)) return;
        if (with.Is == State::Over) m_over.push_back(CardName(item));
        if (with.Is == State::Differs)
            m_differing.push_back(CardName(item) + " (" + std::string(CauseText(with.Why)) + ')');
        if (with.Is == State::None) m_withoutAnswer.push_back(CardName(item));
    }

    std::vector<std::string> m_over;
    std::vector<std::string> m_differing;
    std::vector<std::string> m_withoutAnswer;
};

/// The same as with the sheet is not said twice.
std::string NowInWords(const MonthFigures& now, const MonthFigures& with) {
    const std::string beginning = "emission average ";
    const std::string middle = " of the allowance";
    std::string text = AverageInWords(now);
    if (text == AverageInWords(with)) return "as now";
    if (text.starts_with(beginning) && AverageInWords(with).starts_with(beginning)) {
        text.erase(text.find(middle), middle.size());
        text.erase(0, beginning.size());
    }
    return "now " + text;
}

/// "; 2 figures are over or differ (now 1)"; empty without any.
std::string TroublesWith(const MonthFigures& with, const MonthFigures* now) {
    const std::size_t troubles = CountTroubles(with);
    if (troubles == 0) return {};
    std::string text = "; " + TroublesInWords(troubles);
    if (now && CountTroubles(*now) != troubles)
        text += " (now " + WholeNumberText(static_cast<std::int64_t>(CountTroubles(*now))) + ')';
    return text;
}

/// ", 1,195.20 kg left"; empty where that says nothing.
std::string HeadroomWith(const AverageFigures& average) {
    constexpr double mostKg = 1e12; // a slip of the finger can have 300 digits
    if (!(std::abs(average.Headroom().Report) < mostKg)) return {};
    // Of an average that differs the kilograms are the reports' alone.
    const bool isAgreed = average.Judged.Is == State::Within || average.Judged.Is == State::Over;
    return isAgreed ? ", " + HeadroomInWords(average) : std::string();
}

/// `now` is null if there are no changes.
std::string LineOf(const MonthFigures& with, const MonthFigures* now, std::size_t findings) {
    std::string line = now ? "With this sheet, " : "As stored, ";
    line += ShortMonthName(with.MonthEnd) + ": " + AverageInWords(with);
    line += HeadroomWith(with.Average);
    if (with.Average.Judged.Is == State::None && !PercentOfAllowance(with.Average).empty())
        line += ", no exact answer";
    if (now) line += " (" + NowInWords(*now, with) + ')';
    return line + TroublesWith(with, now) + '.' + UntrustedSentence(findings);
}

} // namespace

Result<bool> SheetOutlook::Step(const DataFiles& data) {
    if (m_isRead) {
        if (!m_shop) m_shop = std::make_unique<ShopFigures>(m_records, m_options.Start);
        return true;
    }
    Result<OverviewOptions> options = ReadOverviewOptions(data);
    if (!options) return options.error();
    Result<ShopRecords> records = ReadShopRecords(data);
    if (!records) return records.error();
    m_options = std::move(*options);
    m_records = std::move(*records);
    m_storedUsage = m_records.Usage;
    m_isRead = true;
    return false;
}

void SheetOutlook::Store(const std::vector<UsageChange>& changes) {
    ByNumber<const UsageRecord*> instead;
    for (const UsageChange& change : changes)
        instead[change.Record.UsageId] = &change.Record;
    std::vector<ShopUse>& usage = m_records.Usage;
    usage.clear();
    for (const ShopUse& stored : m_storedUsage) {
        const UsageRecord* const record = std::exchange(instead[stored.Record], nullptr);
        if (!record)
            usage.push_back(stored);
        else if (record->Active)
            usage.push_back(UseOf(*record));
    }
    for (const UsageChange& change : changes)
        if (change.Record.Active && (change.Record.UsageId == 0 || instead[change.Record.UsageId]))
            usage.push_back(UseOf(change.Record));
    // The last digits of a sum depend on the order of its terms.
    if (!std::ranges::is_sorted(usage, {}, FileOrder)) std::ranges::stable_sort(usage, {}, FileOrder);
    m_shop->TakeUsage();
}

SheetAnswer SheetOutlook::AnswerFor(std::chrono::year_month month, const std::vector<UsageChange>& changes) {
    const MonthNumber monthEnd =
        MonthNumberOf(static_cast<int>(month.year()), static_cast<int>(static_cast<unsigned>(month.month())));
    if (!m_now || m_now->MonthEnd != monthEnd) {
        Store({});
        m_now = m_shop->At(monthEnd);
    }
    Store(changes);
    SheetAnswer answer{.Figures = m_shop->At(monthEnd)};
    const std::size_t findings = CountUntrusted(*m_shop, answer.Figures).Average;
    answer.Line = LineOf(answer.Figures, changes.empty() ? nullptr : &*m_now, findings);
    answer.Worse = WorseFigures(*m_shop, *m_now, answer.Figures).Sentences();
    return answer;
}
} // namespace mact
