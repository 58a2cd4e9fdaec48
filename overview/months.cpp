#include "overview/months.h"

#include "base/numbers.h"
#include "base/text.h"
#include "reports/report_period.h"

#include <algorithm>
#include <array>

namespace mact {
namespace {

constexpr std::array<std::string_view, 12> Names = {"January",   "February", "March",    "April",
                                                    "May",       "June",     "July",     "August",
                                                    "September", "October",  "November", "December"};

bool AreDigits(std::string_view text) {
    return std::ranges::all_of(text, [](char character) { return character >= '0' && character <= '9'; });
}

std::string FourDigits(int year) {
    const std::string digits = WholeNumberText(year);
    return std::string(4 - std::min<std::size_t>(digits.size(), 4), '0') + digits;
}

std::string_view NameOf(MonthNumber month) {
    return Names[static_cast<std::size_t>(month % 12)];
}

} // namespace

std::optional<MonthNumber> MonthOfPeriod(std::string_view period) {
    const std::string_view text = Trim(period);
    const std::size_t slash = text.find('/');
    if (slash != 1 && slash != 2) return std::nullopt;
    const std::string_view month = text.substr(0, slash);
    const std::string_view year = text.substr(slash + 1);
    if (year.size() != 4 || !AreDigits(month) || !AreDigits(year) || month[0] == '0') return std::nullopt;
    const int number = month.size() == 1 ? month[0] - '0' : (month[0] - '0') * 10 + (month[1] - '0');
    if (number > 12) return std::nullopt;
    int yearNumber = 0;
    for (const char digit : year)
        yearNumber = yearNumber * 10 + (digit - '0');
    return MonthNumberOf(yearNumber, number);
}

std::string MonthText(MonthNumber month) {
    return WholeNumberText(month % 12 + 1) + '/' + FourDigits(month / 12);
}

std::string ShortMonthName(MonthNumber month) {
    const auto number = static_cast<unsigned>(month % 12 + 1);
    return ShortMonthName(std::chrono::year{month / 12} / std::chrono::month{number});
}

std::string LongMonthName(MonthNumber month) {
    return std::string(NameOf(month)) + ' ' + FourDigits(month / 12);
}
} // namespace mact
