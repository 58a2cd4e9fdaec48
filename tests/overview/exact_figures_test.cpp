#include "overview/overview_csv.h"
#include "overview/shop_figures.h"
#include "tests/overview/generated_shop.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/random_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace mact {
namespace {

__extension__ using Whole = __int128;

/// A fraction of whole numbers to six decimals, halves away from zero, without zeros at the end.
std::string SixDecimals(Whole numerator, Whole denominator) {
    const Whole millionths = (numerator * 1'000'000 * 2 + denominator) / (denominator * 2);
    std::string digits;
    for (Whole rest = millionths; rest > 0 || digits.size() < 7; rest /= 10)
        digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(rest % 10)));
    digits.insert(digits.size() - 6, ".");
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.ends_with('.')) digits.pop_back();
    return digits;
}

/// Pounds times 100,000: both units give whole numbers.
Whole PoundsOf(const GeneratedShop& shop, const GeneratedUse& use) {
    // Mgal / 1000 * lb/gal / 100 * 1000 gal/Mgal
    return use.IsInMgal ? Whole(use.Quantity) * shop.Materials[use.Material].Density * 1000
                        : Whole(use.Quantity) * 100;
}

struct ExactShop {
    std::map<std::string, Whole> Pounds{};      ///< by row of Table 2
    std::map<std::string, Whole> PoundsOfHap{}; ///< times 10,000, by row
    std::map<std::string, Whole> MonthPounds{}; ///< of the last month, by item
    long double Emissions = 0;
    long double Allowance = 0;
};

const char* AmountItem(const DefaultType& type) {
    if (*type.Operation == '\0') return "closed molding";
    if (!type.IsFilled) return type.Row;
    return std::string_view(type.Operation) == "production resin" ? "production resin, filled"
                                                                  : "tooling resin, filled";
}

ExactShop CalculateExactly(const GeneratedShop& shop, MonthNumber monthEnd) {
    ExactShop exact;
    for (const GeneratedUse& use : shop.Usage) {
        const MonthNumber month = MonthNumberOf(use.Year, use.Month);
        if (month > monthEnd || month + WindowMonths <= monthEnd) continue;
        const GeneratedMaterial& material = shop.Materials[use.Material];
        const DefaultType& type = DefaultTypes()[material.Type];
        const Whole pounds = PoundsOf(shop, use);
        if (month == monthEnd && pounds > 0) exact.MonthPounds[AmountItem(type)] += pounds;
        if (*type.Operation == '\0' || pounds == 0) continue;
        if (*type.Row != '\0') {
            exact.Pounds[type.Row] += pounds;
            exact.PoundsOfHap[type.Row] += pounds * material.HapContent;
        }
        const long double megagrams = static_cast<long double>(pounds) / 1e5L / 2.2046L / 1000;
        const long double filled = type.IsFilled ? static_cast<long double>(100 - material.Filler) / 100 : 1;
        exact.Emissions += megagrams * filled * static_cast<long double>(type.Coefficient) *
                           std::pow(static_cast<long double>(material.HapContent) / 100,
                                    static_cast<long double>(type.Exponent));
        exact.Allowance += megagrams * static_cast<long double>(type.EmissionLimit);
    }
    return exact;
}

void ExpectExact(const ShopFigures& shop, const GeneratedShop& made, MonthNumber monthEnd) {
    const ExactShop exact = CalculateExactly(made, monthEnd);
    std::map<std::string, std::string> contents;
    for (const auto& [row, pounds] : exact.Pounds)
        contents[row] = SixDecimals(exact.PoundsOfHap.at(row), pounds * 100);
    std::map<std::string, std::string> amounts;
    for (const auto& [item, pounds] : exact.MonthPounds)
        amounts[item] = SixDecimals(pounds, 220'460); // 100,000 times 2.2046
    const MonthFigures figures = shop.At(monthEnd);
    std::map<std::string, std::string> shownContents;
    std::map<std::string, std::string> shownAmounts;
    for (const FigureLine& line : LinesOf(shop, figures)) {
        if (line.Figure == "content") shownContents[line.Item] = line.Exact;
        if (line.Figure == "amount") shownAmounts[line.Item] = line.Exact;
    }
    EXPECT_EQ(shownContents, contents);
    EXPECT_EQ(shownAmounts, amounts);
    const double noise = 1e-12 * static_cast<double>(exact.Allowance);
    EXPECT_NEAR(figures.Average.Emissions.Exact, static_cast<double>(exact.Emissions), noise);
    EXPECT_NEAR(figures.Average.Allowance.Exact, static_cast<double>(exact.Allowance), noise);
}

TEST(ExactFiguresTest, AreThoseOfFractionsWorkedOutApart) {
    ForEachSeed(20, [](unsigned seed) {
        OverviewShop program;
        const GeneratedShop made = GenerateShop(seed);
        program.ImportMaterials(made.MaterialLines());
        program.ImportUsage(made.UsageLines());
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        ASSERT_TRUE(records);
        const ShopFigures shop(*records);
        for (MonthNumber monthEnd = MonthNumberOf(2004, 1); monthEnd <= MonthNumberOf(2007, 6); ++monthEnd) {
            SCOPED_TRACE(MonthText(monthEnd));
            ExpectExact(shop, made, monthEnd);
        }
    });
}

} // namespace
} // namespace mact
