#include "tests/overview/overview_shop.h"
#include "tests/overview/six_shops.h"
#include "tests/overview/stored_sheet.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(SheetOutlookShopsTest, SaysOfSixShopsWhatTheOverviewSaysOnceItIsStored) {
    std::mt19937 random(6);
    for (const auto& each : SixShops()) {
        const QJsonObject shop = each.toObject();
        SCOPED_TRACE(In(shop, "case").toString().toStdString());
        OverviewShop program;
        program.ImportMaterials(Texts(In(shop, "materials")));
        program.ImportUsage(Texts(In(shop, "usage")));
        for (const auto& monthEnd : In(shop, "month_ends").toArray()) {
            const MonthNumber month = MonthIn(monthEnd.toObject(), "month_end");
            SCOPED_TRACE(MonthText(month));
            ExpectSaidOnceStored(program.App,
                                 std::chrono::year{month / 12} /
                                     std::chrono::month{static_cast<unsigned>(month % 12 + 1)},
                                 random);
        }
    }
}

} // namespace
} // namespace mact
