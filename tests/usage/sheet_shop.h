#pragma once

#include "materials/material_record.h"
#include "tests/support/test_program.h"
#include "usage/month_sheet.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {

/// A shop whose materials and usage a test writes record by record, for a sheet of March 2005.
class SheetShop : public testing::Test, public TestProgram {
protected:
    static constexpr std::chrono::year_month March{std::chrono::year{2005}, std::chrono::March};

    /// Returns the new material's number.
    std::int16_t Add(const std::string& customId, double density = 10, bool isLive = true) {
        m_materials += Pack(MaterialLayout, {.MaterialId = ++m_count,
                                             .CustomId = customId,
                                             .Density = density,
                                             .Description = "about " + customId,
                                             .Active = isLive});
        WriteContent(DataFile("1_materials.talvor"), m_materials);
        return m_count;
    }
    void Use(std::int16_t materialId, const std::string& period, double quantity,
             std::int16_t unit = UnitLbs) {
        EXPECT_FALSE(
            SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = quantity, .Unit = unit}));
    }
    const SheetRecords& Read() {
        Result<SheetRecords> records = SheetRecords::Read(App);
        EXPECT_TRUE(records);
        m_records = std::make_unique<SheetRecords>(std::move(*records));
        return *m_records;
    }
    MonthSheet Sheet(std::chrono::year_month month = March) { return {Read(), month}; }

    /// The rows as "GC-110 12.5 lbs", without what they lack.
    static std::vector<std::string> RowsOf(const MonthSheet& sheet) {
        std::vector<std::string> rows;
        for (const SheetRow& row : sheet.Rows()) {
            std::string& text = rows.emplace_back(row.Material.CustomId);
            if (!row.Quantity.empty()) text += ' ' + row.Quantity;
            if (row.Unit) text += *row.Unit == UnitLbs ? " lbs" : " Mgal";
        }
        return rows;
    }
    using Texts = std::vector<std::string>;

private:
    std::string m_materials;
    std::int16_t m_count = 0;
    std::unique_ptr<SheetRecords> m_records;
};
} // namespace mact
