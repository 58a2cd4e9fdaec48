#pragma once

#include "materials/material_store.h"
#include "overview/answers.h"
#include "overview/overview_csv.h"
#include "overview/sheet_outlook.h"
#include "overview/untrusted_figures.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

namespace mact {

/// Everything that the overview says of a month end, as text.
inline std::string EverythingSaid(const ShopFigures& shop, const MonthFigures& figures) {
    std::string said = OverviewCsv(shop, figures) + VerdictLine(figures, 0) + '\n';
    for (const Answer& answer : AnswersOf(shop, figures, CountUntrusted(shop, figures)))
        said += answer.Text + '\n';
    return said;
}

inline void ReadAll(SheetOutlook& outlook, const DataFiles& data) {
    for (;;) {
        const Result<bool> isReady = outlook.Step(data);
        ASSERT_TRUE(isReady);
        if (*isReady) return;
    }
}

/// Of each material the first record of the month is edited, deleted or left, and half of those without one
/// get one, as the rows of a sheet would.
inline std::vector<UsageChange> RandomChanges(AppContext& app, std::chrono::year_month month,
                                              std::mt19937& random) {
    const auto period = std::to_string(static_cast<unsigned>(month.month())) + '/' +
                        std::to_string(static_cast<int>(month.year()));
    const auto fill = [&](UsageRecord& record) {
        record.Quantity = static_cast<double>(random() % 40000000) / 1000;
        record.Unit = UnitLbs;
        if (random() % 8 == 0) record.Quantity = 0;
        if (random() % 3 != 0) return;
        record.Quantity /= 8192; // as many thousand gallons are about as many pounds
        record.Unit = UnitMgal;
    };
    std::vector<MaterialRecord> materials;
    FindMaterials(app, {}, materials);
    std::vector<UsageChange> changes;
    for (const MaterialRecord& material : materials) {
        std::vector<UsageRecord> found;
        FindUsage(app, {.Periods = period, .MaterialId = material.MaterialId}, found);
        UsageChange change{
            .Record = {.MaterialId = material.MaterialId, .Period = period}
        };
        if (!found.empty()) change = {.Record = found.front(), .AsRead = found.front()};
        if (random() % 2 == 0) continue;
        fill(change.Record);
        if (!found.empty() && random() % 4 == 0) change.Record.Active = false;
        changes.push_back(std::move(change));
    }
    return changes;
}

/// Asks first, then stores the changes and compares with what the overview says then.
inline void ExpectSaidOnceStored(AppContext& app, std::chrono::year_month month, std::mt19937& random) {
    SheetOutlook outlook;
    ReadAll(outlook, app);
    outlook.AnswerFor(month, RandomChanges(app, month, random)); // is forgotten
    const std::vector<UsageChange> changes = RandomChanges(app, month, random);
    const SheetAnswer answer = outlook.AnswerFor(month, changes);

    UsageOutcome outcome;
    ASSERT_FALSE(SaveUsageTogether(app, changes, outcome));
    ASSERT_TRUE(outcome.Refused.empty());
    const Result<ShopRecords> records = ReadShopRecords(app);
    ASSERT_TRUE(records);
    const ShopFigures shop(*records);
    const MonthFigures stored = shop.At(answer.Figures.MonthEnd);
    EXPECT_EQ(EverythingSaid(outlook.Shop(), answer.Figures), EverythingSaid(shop, stored));
    EXPECT_NE(answer.Line.find(ShortMonthName(stored.MonthEnd) + ": " + AverageInWords(stored)),
              std::string::npos);
    // To the last digit.
    EXPECT_EQ(answer.Figures.Average.Emissions.Exact, stored.Average.Emissions.Exact);
    EXPECT_EQ(answer.Figures.Average.Allowance.Exact, stored.Average.Allowance.Exact);
}
} // namespace mact
