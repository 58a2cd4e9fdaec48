#include "overview/break_even.h"
#include "overview/what_if.h"
#include "tests/overview/overview_shop.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);

/// Six shops with figures worked out by exact arithmetic, independently of this program.
QJsonArray Shops() {
    QFile file(QStringLiteral(MACT_SOURCE_FOLDER "/tests/data/overview/shops.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).array();
}

QJsonValue In(const QJsonObject& object, const char* key) {
    return object.value(QLatin1String(key));
}

std::vector<std::string> Texts(const QJsonValue& array) {
    std::vector<std::string> texts;
    for (const QJsonValue text : array.toArray())
        texts.push_back(text.toString().toStdString());
    return texts;
}

/// What the break-even contents are of.
MonthNumber LastMonthEndOf(const QJsonObject& shop) {
    const auto month = MonthOfPeriod(In(shop, "span").toArray().last().toString().toStdString());
    EXPECT_TRUE(month);
    return month.value_or(0);
}

void ExpectContent(const std::optional<double>& content, const QJsonValue& expected) {
    ASSERT_EQ(content.has_value(), !expected.isNull());
    EXPECT_TRUE(!content || std::abs(*content - expected.toDouble()) < 0.5001e-4);
}

class BreakEvenTest : public testing::Test {
protected:
    /// Of a shop with these import lines.
    std::vector<BreakEven> At2005(const std::vector<std::string>& materials,
                                  const std::vector<std::string>& usage) {
        Program.ImportMaterials(materials);
        Program.ImportUsage(usage);
        const Result<ShopRecords> read = ReadShopRecords(Program.App);
        EXPECT_TRUE(read);
        if (read) Shop = *read;
        return BreakEvensAt(ShopFigures(Shop), MonthEnd);
    }
    OverviewShop Program;
    ShopRecords Shop;
};

TEST_F(BreakEvenTest, SixShopsHaveTheContentsOfExactArithmetic) {
    int compared = 0;
    for (const QJsonValue each : Shops()) {
        const QJsonObject shop = each.toObject();
        SCOPED_TRACE(In(shop, "case").toString().toStdString());
        OverviewShop program;
        program.ImportMaterials(Texts(In(shop, "materials")));
        program.ImportUsage(Texts(In(shop, "usage")));
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        ASSERT_TRUE(records);
        const std::vector<BreakEven> contents = BreakEvensAt(ShopFigures(*records), LastMonthEndOf(shop));
        const QJsonObject expected = In(shop, "break_even").toObject();
        ASSERT_EQ(contents.size(), static_cast<std::size_t>(expected.size()));
        for (const BreakEven& content : contents) {
            const std::string& name = records->Materials[content.Material].CustomId;
            SCOPED_TRACE(name);
            const QJsonValue material = expected.value(QString::fromStdString(name));
            ASSERT_TRUE(material.isObject());
            ExpectContent(content.OfAverage, In(material.toObject(), "average_pct"));
            ExpectContent(content.OfRow, In(material.toObject(), "weighted_pct"));
            ++compared;
        }
    }
    EXPECT_EQ(compared, 3 + 2 + 1 + 4 + 2 + 13);
}

TEST_F(BreakEvenTest, FillsTheLimitWhenItIsTriedOut) {
    const std::vector<BreakEven> contents =
        At2005({"G1|gel|Pigmented production gel|All|9|33|0|0|0|0|0|0|0|0|0|0|0|0|0",
                "G2|gel|Pigmented production gel|All|9|30|0|0|0|0|0|0|0|0|0|0|0|0|0",
                "PR|resin|Production resin|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0",
                "FR|resin|Production resin (Filled)|Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|20"},
               {"G1|12|2005|1000|lbs", "G2|11|2005|0.3|mg", "PR|10|2005|9000|lbs", "FR|9|2005|4000|lbs"});
    ASSERT_EQ(contents.size(), 4u);
    const auto with = [&](std::size_t material, double content) {
        const Result<ShopRecords> changed =
            Applied(Shop, {
                              {.Kind = WhatIfKind::Content,
                               .MaterialId = Shop.Materials[material].MaterialId,
                               .Number = content}
        });
        EXPECT_TRUE(changed);
        return ShopFigures(*changed).At(MonthEnd);
    };
    for (const BreakEven& each : contents) {
        const AverageFigures average = with(each.Material, each.OfAverage.value_or(0)).Average;
        EXPECT_NEAR(average.Emissions.Exact, average.Allowance.Exact, 1e-9 * average.Allowance.Exact);
        EXPECT_EQ(each.OfRow.has_value(), each.Material != 3); // the filled resin
    }
    EXPECT_NEAR(with(1, contents[1].OfRow.value_or(0)).Contents[1].Content.Exact, 33, 1e-9);
    EXPECT_NEAR(with(2, contents[2].OfRow.value_or(0)).Contents[0].Content.Exact, 35, 1e-9);
}

TEST_F(BreakEvenTest, OfARowIsPossibleOnlyAboveZero) {
    EXPECT_EQ(BreakEven{.OfRow = 31.5}.PossibleOfRow(), 31.5);
    EXPECT_FALSE(BreakEven{.OfRow = 0}.PossibleOfRow());
    EXPECT_FALSE(BreakEven{.OfRow = -84}.PossibleOfRow());
    EXPECT_FALSE(BreakEven{}.PossibleOfRow());
}

TEST_F(BreakEvenTest, OfAMaterialAloneIsWhereItsEquationMeetsTheLimit) {
    const std::vector<BreakEven> contents =
        At2005({"FR|resin|Production resin (Filled)|Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|20"},
               {"FR|12|2005|22046|lbs"});
    ASSERT_EQ(contents.size(), 1u);
    ASSERT_TRUE(contents.front().OfAverage);
    // 0.014 h^2.425 * 0.8 = 46, whatever the amount.
    EXPECT_NEAR(0.014 * std::pow(*contents.front().OfAverage, 2.425) * 0.8, 46, 1e-9);
    EXPECT_FALSE(contents.front().OfRow); // a filled resin is in no row
}

TEST_F(BreakEvenTest, OfARowLeavesWhatTheOthersDoNotUse) {
    // 33 * 4000 lb = 132,000; the other takes 3000 lb * 30 = 90,000; 42,000 is left for 1000 lb.
    const std::vector<BreakEven> contents =
        At2005({"G1|gel|Pigmented production gel|All|9|33|0|0|0|0|0|0|0|0|0|0|0|0|0",
                "G2|gel|Pigmented production gel|All|9|30|0|0|0|0|0|0|0|0|0|0|0|0|0",
                "CM|resin|Production resin|Closed Molding|9|40|0|0|0|0|0|0|0|0|0|0|0|0|0"},
               {"G1|12|2005|1000|lbs", "G2|11|2005|3000|lbs", "CM|10|2005|1000|lbs"});
    ASSERT_EQ(contents.size(), 2u);
    EXPECT_EQ(contents[0].OfRow, 42);
    EXPECT_EQ(contents[1].OfRow, 33); // (132,000 - 33,000) / 3000
}

TEST_F(BreakEvenTest, WithoutAFiniteAnswerThereIsNone) {
    At2005({"FR|resin|Production resin (Filled)|Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|20"},
           {"FR|12|2005|1000|lbs"});
    Shop.Materials.front().Filler = 100; // nothing of it is emitted
    EXPECT_FALSE(BreakEvensAt(ShopFigures(Shop), MonthEnd).front().OfAverage);
    Shop.Materials.front().Filler = 20;
    Shop.Usage.front().Quantity = INFINITY;
    EXPECT_FALSE(BreakEvensAt(ShopFigures(Shop), MonthEnd).front().OfAverage);
}

} // namespace
} // namespace mact
