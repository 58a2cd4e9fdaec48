#include "overview/outlook.h"
#include "overview/overview_csv.h"
#include "overview/shop_figures.h"
#include "tests/overview/overview_shop.h"
#include "tests/overview/six_shops.h"

#include <gtest/gtest.h>

#include <map>

namespace mact {
namespace {

/// Report, exact, limit, state, cause; by figure and item.
using Shown = std::map<std::pair<std::string, std::string>, std::vector<std::string>>;

Shown ShownOf(const ShopFigures& shop, const MonthFigures& figures) {
    Shown shown;
    for (const FigureLine& line : LinesOf(shop, figures))
        shown[{std::string(line.Figure), line.Item}] = {line.Report, line.Exact, line.Limit, line.State,
                                                        std::string(CauseText(line.Judged.Why))};
    return shown;
}

void ExpectContents(const QJsonObject& month, const Shown& shown) {
    const QJsonObject rows = In(month, "weighted").toObject();
    for (const QString& row : rows.keys()) {
        const QJsonObject expected = rows.value(row).toObject();
        const std::vector<std::string> figure = {
            Short(In(expected, "report_pct")), Exact(In(expected, "rule_pct")), Short(In(expected, "limit")),
            In(expected, "overview_state").toString().toStdString(), CauseIn(expected)};
        const auto found = shown.find({"content", row.toStdString()});
        ASSERT_NE(found, shown.end()) << row.toStdString();
        EXPECT_EQ(found->second, figure) << row.toStdString();
    }
    EXPECT_EQ(std::ranges::count_if(shown, [](const auto& line) { return line.first.first == "content"; }),
              rows.size());
}

void ExpectFilled(const QJsonObject& month, const Shown& shown) {
    const QJsonObject filled = In(month, "filled").toObject();
    for (const QString& material : filled.keys()) {
        const QJsonObject expected = filled.value(material).toObject();
        const std::vector<std::string> figure = {
            "", Exact(In(expected, "point_value_rule")), Short(In(expected, "ceiling")),
            In(expected, "overview_state").toString().toStdString(), CauseIn(expected)};
        const auto found = shown.find({"filled", material.toStdString()});
        ASSERT_NE(found, shown.end());
        EXPECT_EQ(found->second, figure);
    }
}

void ExpectAverage(const QJsonObject& month, const Shown& shown) {
    const QJsonObject average = In(month, "average").toObject();
    const std::vector<std::string> emissions = {
        Short(In(average, "report_kg")), Exact(In(average, "rule_kg")), Short(In(average, "report_limit_kg")),
        In(average, "overview_state").toString().toStdString(), CauseIn(average)};
    EXPECT_EQ(shown.at({"emissions", ""}), emissions);
    EXPECT_EQ(shown.at({"allowance", ""})[1], Exact(In(average, "rule_limit_kg")));
    EXPECT_EQ(shown.at({"headroom", ""})[0], Short(In(average, "report_headroom_kg")));
    EXPECT_EQ(shown.at({"headroom_percent", ""})[0], Short(In(average, "report_headroom_pct")));
    const QJsonObject operations = In(average, "operations").toObject();
    for (const QString& operation : operations.keys()) {
        const QJsonObject expected = operations.value(operation).toObject();
        const QJsonValue report = In(expected, "report_point_value");
        const std::vector<std::string> figure = {report.isNull() ? "" : Short(report),
                                                 Exact(In(expected, "rule_point_value")),
                                                 Short(In(expected, "limit")), "", ""};
        EXPECT_EQ(shown.at({"point_value", operation.toStdString()}), figure);
    }
}

void ExpectMonths(const QJsonObject& month, const MonthFigures& figures) {
    EXPECT_EQ(figures.Months, In(month, "months_since_first_entry").toInt());
    std::vector<std::string> without;
    for (const MonthNumber each : figures.WithoutEntry)
        without.push_back(MonthText(each));
    EXPECT_EQ(without, Texts(In(month, "months_without_entry")));
}

/// Each material rounded to 0.01 kg, and filled resin under its method.
void ExpectAmounts(const QJsonObject& record, const ShopFigures& figures) {
    const double rounding = 0.005 * static_cast<double>(figures.Shop().Materials.size()) + 1e-6;
    for (const QString& month : record.keys()) {
        SCOPED_TRACE(month.toStdString());
        const QJsonObject expected = record.value(month).toObject();
        const MonthFigures shown = figures.At(*MonthOfPeriod(month.toStdString()));
        ASSERT_EQ(shown.Amounts.size(), static_cast<std::size_t>(expected.size()));
        for (const AmountFigure& amount : shown.Amounts) {
            const std::string item =
                amount.Item == "production resin, filled" ? "production resin, nonatomized" : amount.Item;
            EXPECT_NEAR(amount.Kilograms, expected.value(QString::fromStdString(item)).toDouble(), rounding);
        }
    }
}

/// As in "Table 2 pigmented gel coat", "filled FR-1" and "average".
std::string TroubleName(const FirstTrouble& trouble) {
    if (trouble.Figure == "emissions") return "average";
    return (trouble.Figure == "content" ? "Table 2 " : "filled ") + trouble.Item;
}

void ExpectFirstTroubles(const QJsonObject& expected, const ShopFigures& figures,
                         const std::vector<MonthFigures>& span) {
    std::map<std::string, std::string> troubles;
    for (const QString& name : expected.keys())
        troubles[name.toStdString()] = expected.value(name).toString().toStdString();
    std::map<std::string, std::string> shown;
    for (const FirstTrouble& trouble : FirstTroubles(figures, span))
        shown[TroubleName(trouble)] = MonthText(trouble.Month) + " (" + StateText(trouble.Is, 12) + ')';
    EXPECT_EQ(shown, troubles);
}

TEST(SixShopsTest, HaveTheFiguresOfExactArithmetic) {
    const QJsonArray shops = SixShops();
    ASSERT_EQ(shops.size(), 6);
    for (const auto& each : shops) {
        const QJsonObject shop = each.toObject();
        SCOPED_TRACE(In(shop, "case").toString().toStdString());
        OverviewShop program;
        program.ImportMaterials(Texts(In(shop, "materials")));
        program.ImportUsage(Texts(In(shop, "usage")));
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        ASSERT_TRUE(records);
        const ShopFigures figures(*records);
        std::vector<MonthFigures> span;
        for (const auto& monthEnd : In(shop, "month_ends").toArray()) {
            const QJsonObject month = monthEnd.toObject();
            SCOPED_TRACE(In(month, "month_end").toString().toStdString());
            const MonthFigures shown = figures.At(MonthIn(month, "month_end"));
            ExpectMonths(month, shown);
            ExpectContents(month, ShownOf(figures, shown));
            ExpectFilled(month, ShownOf(figures, shown));
            ExpectAverage(month, ShownOf(figures, shown));
            span.push_back(shown);
        }
        ExpectFirstTroubles(In(shop, "first_month_of_trouble").toObject(), figures, span);
        ExpectAmounts(In(shop, "monthly_record_kg").toObject(), figures);
    }
}

} // namespace
} // namespace mact
