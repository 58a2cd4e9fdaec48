#include "overview/attention.h"

#include "tests/overview/made_shop.h"
#include "tests/overview/overview_shop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

namespace mact {
namespace {

using Texts = std::vector<std::string>;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

const char* const InMaterials = "1_materials.talvor, record 1, \"PR-A\": ";

/// A material with use in lbs at the month end, and nothing wrong.
class AttentionTest : public testing::Test {
public:
    AttentionTest() {
        Shop.AddMaterial("PR-A");
        Shop.AddUse(1);
    }
    ShopMaterial& Material() { return Shop.Records.Materials.front(); }
    ShopUse& Use() { return Shop.Records.Usage.front(); }
    Texts AboutMaterial(const std::string& what) { return {InMaterials + what}; }

    MadeShop Shop;
};

TEST_F(AttentionTest, GoodRecordsNeedNone) {
    EXPECT_TRUE(Shop.Attentions().empty());
}

TEST_F(AttentionTest, NoRecordsNeedNone) {
    EXPECT_TRUE(MadeShop().Attentions().empty());
}

// Periods

TEST_F(AttentionTest, PeriodWithLeadingZeroIsInNoFigureOfAnyMonthEnd) {
    Shop.AddUse(1, "03/2005");
    const Texts expected = {"1_usage.talvor, record 2, \"PR-A\": its period \"03/2005\" is not written as in "
                            "3/2005: it counts in no figure"};
    EXPECT_EQ(Shop.NotTrusted(), expected);
    EXPECT_EQ(Shop.NotTrusted(MonthNumberOf(2030, 1)), expected);
    EXPECT_EQ(Shop.NotTrusted(MonthNumberOf(1950, 1)), expected);
}

TEST_F(AttentionTest, EmptyPeriodCountsAtEveryMonthEnd) {
    Shop.AddUse(1, "");
    const Texts expected = {"1_usage.talvor, record 2, \"PR-A\": its period is empty: it counts at every "
                            "month end and in no month"};
    EXPECT_EQ(Shop.NotTrusted(), expected);
    EXPECT_EQ(Shop.NotTrusted(MonthNumberOf(2030, 1)), expected);
}

TEST_F(AttentionTest, MonthsOutsideOneToTwelveAreFindings) {
    for (const char* const period : {"0/2005", "13/2005", "3/05", "3-2005", "3/20055"}) {
        Use().Period = period;
        EXPECT_EQ(Shop.NotTrusted().size(), 1U) << period;
    }
}

TEST_F(AttentionTest, EveryWayToWriteAMonthInTheWindowIsNoFinding) {
    for (const char* const period : {"1/2005", "12/2005", " 3/2005 "}) {
        Use().Period = period;
        EXPECT_TRUE(Shop.NotTrusted().empty()) << period;
    }
}

TEST_F(AttentionTest, PeriodWithABarMayCountOnce) {
    Use().Period = "1/2005|";
    EXPECT_EQ(Shop.NotTrusted(), Texts{"1_usage.talvor, record 1, \"PR-A\": its period \"1/2005|\" is not "
                                       "written as in 3/2005: it counts at one month end at most"});
}

TEST_F(AttentionTest, YearBeforeAnyReportIsAFinding) {
    Use().Period = "1/1899"; // the first report is of 2/1899 to 1/1900
    EXPECT_EQ(Shop.NotTrusted(),
              Texts{"1_usage.talvor, record 1, \"PR-A\": its period \"1/1899\" is too early for any report"});
    Use().Period = "2/1899";
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, ControlCharactersOfAPeriodAreNotShown) {
    Use().Period = "3\n\x1b";
    ASSERT_EQ(Shop.NotTrusted().size(), 1U);
    EXPECT_NE(Shop.NotTrusted().front().find("\"3??\""), std::string::npos);
}

// Units and quantities

TEST_F(AttentionTest, UnknownUnitCountsAsMgal) {
    Shop.AddUse(1, "11/2005", 1, 3);
    EXPECT_EQ(Shop.NotTrusted(), Texts{"1_usage.talvor, record 2, \"PR-A\", 11/2005: its unit 3 is neither 1 "
                                       "(Mgal) nor 2 (lbs): it counts as Mgal"});
}

TEST_F(AttentionTest, MgalIsAKnownUnit) {
    Shop.AddUse(1, "11/2005", 1, UnitMgal);
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, UseOutsideTheWindowIsLeftOut) {
    Shop.AddUse(1, "12/2004", 1, 3); // the window begins with 1/2005
    EXPECT_TRUE(Shop.NotTrusted().empty());
    EXPECT_EQ(Shop.NotTrusted(MonthNumberOf(2005, 11)).size(), 1U);
    EXPECT_TRUE(Shop.NotTrusted(MonthNumberOf(2004, 11)).empty());
}

TEST_F(AttentionTest, NegativeQuantityIsTakenOff) {
    Use().Quantity = -5;
    EXPECT_EQ(Shop.NotTrusted(),
              Texts{"1_usage.talvor, record 1, \"PR-A\", 12/2005: its quantity -5 is below "
                    "0: it is taken off the sums"});
}

TEST_F(AttentionTest, QuantityThatIsNoNumberHasNoAnswer) {
    for (const double quantity : {NotANumber, Infinite, -Infinite}) {
        Use().Quantity = quantity;
        EXPECT_EQ(Shop.NotTrusted(),
                  Texts{"1_usage.talvor, record 1, \"PR-A\", 12/2005: its quantity is not a "
                        "finite number: figures with it have no answer"});
    }
}

TEST_F(AttentionTest, QuantityOfZeroIsNoFinding) {
    Use().Quantity = 0;
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, SumThatIsTooLargeHasNoAnswer) {
    Use().Quantity = 1.5e308;
    Shop.AddUse(1, "11/2005", 1.5e308);
    EXPECT_EQ(Shop.NotTrusted(), AboutMaterial("its use adds up to more than can be calculated: figures with "
                                               "it have no answer"));
}

TEST_F(AttentionTest, SecondUseOfAMonthNamesTheFirst) {
    Shop.AddUse(1, "11/2005");
    Shop.AddUse(1, "12/2005");
    EXPECT_EQ(Shop.NotTrusted(),
              Texts{"1_usage.talvor, record 3, \"PR-A\", 12/2005: its material and month are "
                    "those of record 1 too: both are added up"});
}

TEST_F(AttentionTest, SameMonthOfAnotherMaterialIsNoFinding) {
    Shop.AddMaterial("PR-B");
    Shop.AddUse(2);
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, SecondUseOfAMonthOutsideTheWindowIsLeftOut) {
    Shop.AddUse(1, "12/2004");
    Shop.AddUse(1, "12/2004");
    EXPECT_TRUE(Shop.NotTrusted().empty());
    EXPECT_EQ(Shop.NotTrusted(MonthNumberOf(2004, 12)).size(), 1U);
}

// Materials

TEST_F(AttentionTest, MissingMaterialCountsNowhere) {
    Shop.AddUse(7);
    const std::vector<Attention> found = Shop.Attentions();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].Text,
              "1_usage.talvor, record 2, 12/2005: its material 7 does not exist or is deleted: "
              "it counts in no figure");
    EXPECT_EQ(found[0].Use, 1U);
    EXPECT_FALSE(found[0].Material);
}

TEST_F(AttentionTest, TypeAndMethodOutsideTheTableCountNowhere) {
    Material().ApplicationMethod = "Brush";
    EXPECT_EQ(Shop.NotTrusted(), AboutMaterial("its type and method, \"Production resin\" and \"Brush\", are "
                                               "not in the material-type table: its use counts in no "
                                               "figure"));
}

TEST_F(AttentionTest, TypeAndMethodAreComparedIgnoringCase) {
    Material().MaterialType = "PRODUCTION RESIN";
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, MaterialWithoutUseInTheWindowIsLeftOut) {
    Material().HapContent = 150;
    Use().Period = "12/2004";
    EXPECT_TRUE(Shop.NotTrusted().empty());
    EXPECT_EQ(Shop.NotTrusted(MonthNumberOf(2004, 12)).size(), 1U);
    Use().Quantity = 0;
    EXPECT_TRUE(Shop.NotTrusted(MonthNumberOf(2004, 12)).empty());
}

TEST_F(AttentionTest, DensityZeroIsTroubleForMgal) {
    Material().Density = 0;
    Use().Unit = UnitMgal;
    EXPECT_EQ(Shop.NotTrusted(), AboutMaterial("its density 0 is 0: its use in Mgal counts as nothing"));
    EXPECT_TRUE(Shop.WorthALook().empty());
    Use().Unit = 3; // which counts as Mgal
    EXPECT_EQ(Shop.NotTrusted().size(), 2U);
}

TEST_F(AttentionTest, DensityZeroOfPoundsIsWorthALook) {
    Material().Density = 0;
    EXPECT_TRUE(Shop.NotTrusted().empty());
    EXPECT_EQ(Shop.WorthALook(), AboutMaterial("its density 0 is outside 7 to 16 lb/gal: no figure of these "
                                               "months needs it, since its use is in lbs"));
}

TEST_F(AttentionTest, DensityBelowZeroOrNoNumberIsTroubleForMgal) {
    Use().Unit = UnitMgal;
    Material().Density = -9;
    EXPECT_EQ(Shop.NotTrusted(),
              AboutMaterial("its density -9 is below 0: its use in Mgal is taken off the sums"));
    Material().Density = Infinite;
    EXPECT_EQ(Shop.NotTrusted().size(), 1U);
}

struct ContentCase {
    const char* Name;
    double Content;
    const char* What; ///< empty: no finding
};
class ContentTest : public AttentionTest, public testing::WithParamInterface<ContentCase> {};

TEST_P(ContentTest, ContentIsJudged) {
    Material().HapContent = GetParam().Content;
    const std::string what = GetParam().What;
    EXPECT_EQ(Shop.NotTrusted(), what.empty() ? Texts{} : AboutMaterial("its HAP content " + what));
}

constexpr ContentCase ContentCases[] = {
    {"Negative",     -1,    "-1 is below 0: figures with it come out too low"                                },
    {"Zero",         0,     "0 is 0: its use counts as free of HAP"                                          },
    {"Fraction",     0.34,  "0.34 is below 1, like a fraction typed as percent: figures may come out too low"},
    {"JustBelowOne", 0.999,
     "0.999 is below 1, like a fraction typed as percent: figures may come out too low"                      },
    {"One",          1,     ""                                                                               },
    {"Hundred",      100,   ""                                                                               },
    {"AboveHundred", 100.1, "100.1 is above 100: figures with it come out too high"                          },
};
INSTANTIATE_TEST_SUITE_P(Contents, ContentTest, testing::ValuesIn(ContentCases),
                         [](const auto& tested) { return std::string(tested.param.Name); });

TEST_F(AttentionTest, ContentThatIsNoNumberHasNoAnswer) {
    Material().HapContent = NotANumber;
    ASSERT_EQ(Shop.NotTrusted().size(), 1U);
    EXPECT_NE(Shop.NotTrusted().front().find("is not a finite number"), std::string::npos);
}

TEST_F(AttentionTest, ContentOfClosedMoldingIsInNoFigure) {
    Material().ApplicationMethod = "Closed Molding";
    Material().HapContent = 0;
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, AmountsThatTheAverageRoundsAwayAreTrouble) {
    Use().Quantity = 11; // 4.99 kg
    EXPECT_EQ(Shop.NotTrusted(), AboutMaterial("its use of 11 lb in twelve months is 0.00 Mg in the emission "
                                               "average, which leaves it out"));
    Use().Quantity = 11.03; // 5.003 kg
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, AmountsOfTheWholeWindowAreRoundedTogether) {
    Use().Quantity = 11;
    Shop.AddUse(1, "11/2005", 11);
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, ClosedMoldingIsNotRoundedAway) {
    Material().ApplicationMethod = "Closed Molding";
    Use().Quantity = 1;
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, UseOfANumberThatTwoMaterialsHaveCountsForBoth) {
    Shop.AddMaterial("PR-B").MaterialId = 1;
    EXPECT_EQ(Shop.NotTrusted(),
              (Texts{"1_materials.talvor, record 1, \"PR-A\": its number 1 is that of record 2 too: the same "
                     "use counts for both",
                     "1_materials.talvor, record 2, \"PR-B\": its number 1 is that of record 1 too: the same "
                     "use counts for both"}));
}

// Worth a look

TEST_F(AttentionTest, MonthsWithoutEntryAreNamedFromTheStartMonthOn) {
    Use().Period = "9/2005";
    Shop.AddUse(1, "11/2005", 0);
    const std::vector<Attention> found = Shop.Attentions();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].Text,
              "1_usage.talvor: 10/2005 has no entry; whether anything was used then, no record tells");
    EXPECT_EQ(found[0].Month, MonthNumberOf(2005, 10));
    EXPECT_EQ(found[1].Month, MonthNumberOf(2005, 12));
    EXPECT_EQ(found[0].Kind, AttentionKind::WorthALook);
}

TEST_F(AttentionTest, MonthsWithoutEntryBeforeTheWindowAreLeftOut) {
    Use().Period = "11/2004";
    Shop.AddUse(1, "1/2005"); // 12/2004 is missing
    for (int month = 2; month <= 12; ++month)
        Shop.AddUse(1, MonthText(MonthNumberOf(2005, month)));
    EXPECT_TRUE(Shop.WorthALook().empty());
}

/// Use of another material, so that the month has an entry, in the six or so months before the last.
class RegularUseTest : public AttentionTest {
public:
    RegularUseTest() { Shop.AddMaterial("PR-B"); }
    void UseBeforeLastMonth(int months) {
        for (int month = 12 - months; month < 12; ++month)
            Shop.AddUse(2, MonthText(MonthNumberOf(2005, month)));
    }
};

TEST_F(RegularUseTest, SixMonthsOfUseButNotTheLastAreNoticed) {
    UseBeforeLastMonth(6);
    EXPECT_EQ(Shop.WorthALook(),
              Texts{"1_materials.talvor, record 2, \"PR-B\": it was used in 6 of the twelve "
                    "months, but has no entry for 12/2005"});
}

TEST_F(RegularUseTest, FiveMonthsOfUseAreNotRegular) {
    UseBeforeLastMonth(5);
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(RegularUseTest, QuantityOfZeroIsAnEntry) {
    UseBeforeLastMonth(6);
    Shop.AddUse(2, "12/2005", 0);
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(RegularUseTest, MonthsOfZeroAreNotUse) {
    UseBeforeLastMonth(5);
    Shop.AddUse(2, "6/2005", 0);
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(RegularUseTest, MonthsBeforeTheWindowAreNotCounted) {
    UseBeforeLastMonth(5);
    Shop.AddUse(2, "12/2004");
    for (int month = 1; month < 7; ++month) // no month is without entry
        Shop.AddUse(1, MonthText(MonthNumberOf(2005, month)));
    EXPECT_TRUE(Shop.WorthALook().empty());
}

/// Two months of 1000 lb before the month end.
class MedianTest : public AttentionTest {
public:
    MedianTest() {
        Shop.AddUse(1, "10/2005");
        Shop.AddUse(1, "11/2005");
    }
};

TEST_F(MedianTest, FiveTimesTheMedianIsUsual) {
    Use().Quantity = 5000;
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(MedianTest, OverFiveTimesTheMedianIsNoticed) {
    Use().Quantity = 5001;
    const std::vector<Attention> found = Shop.Attentions();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(
        found[0].Text,
        "1_usage.talvor, record 1, \"PR-A\", 12/2005: its month's 5001 lb is over five times the median "
        "of 3 months with use, 1000 lb: perhaps Mgal and lbs were mixed up");
    EXPECT_EQ(found[0].Use, 0U);
    EXPECT_EQ(found[0].Material, 0U);
}

TEST_F(MedianTest, FifthOfTheMedianIsUsual) {
    Use().Quantity = 200;
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(MedianTest, UnderAFifthOfTheMedianIsNoticed) {
    Use().Quantity = 199;
    ASSERT_EQ(Shop.WorthALook().size(), 1U);
    EXPECT_NE(Shop.WorthALook().front().find("199 lb is under a fifth of the median"), std::string::npos);
}

TEST_F(MedianTest, PoundsTypedAsMgalAreNoticed) {
    Use().Unit = UnitMgal; // 1000 * 9 * 1000 lb
    ASSERT_EQ(Shop.WorthALook().size(), 1U);
    EXPECT_NE(Shop.WorthALook().front().find("9000000 lb is over five times"), std::string::npos);
}

TEST_F(MedianTest, MedianOfAnEvenCountIsBetweenTheTwoInTheMiddle) {
    Shop.AddUse(1, "9/2005", 3000);
    Use().Quantity = 11000; // 1000 1000 3000 11000: the median is 2000
    ASSERT_EQ(Shop.WorthALook().size(), 1U);
    EXPECT_NE(Shop.WorthALook().front().find("4 months with use, 2000 lb"), std::string::npos);
    Use().Quantity = 10000;
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(MedianTest, MedianIsOfTheWholeFile) {
    Shop.Records.Usage[1].Period = "10/2001";
    Shop.Records.Usage[2].Period = "11/2001";
    for (int month = 1; month < 12; ++month) // no month is without entry
        Shop.AddUse(2, MonthText(MonthNumberOf(2005, month)), 0);
    Shop.AddMaterial("PR-B");
    Use().Quantity = 5001;
    EXPECT_EQ(Shop.WorthALook().size(), 1U);
}

TEST_F(AttentionTest, TwoMonthsHaveNoMedian) {
    Shop.AddUse(1, "11/2005", 100000);
    Shop.AddUse(1, "10/2005", 0); // not used then
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(AttentionTest, DensityFromSevenToSixteenIsUsual) {
    Use().Unit = UnitMgal;
    Use().Quantity = 1;
    for (const double density : {7.0, 16.0}) {
        Material().Density = density;
        EXPECT_TRUE(Shop.WorthALook().empty()) << density;
    }
    Material().Density = 6.99;
    EXPECT_EQ(Shop.WorthALook(),
              AboutMaterial("its density 6.99 is outside 7 to 16 lb/gal: its pounds follow from it"));
    Material().Density = 16.01;
    EXPECT_EQ(Shop.WorthALook().size(), 1U);
}

TEST_F(AttentionTest, FilledResinIsNoticedWithOrWithoutFiller) {
    Material().MaterialType = "Production resin (Filled)";
    EXPECT_EQ(Shop.WorthALook(), AboutMaterial("it is a filled resin with filler 0, as an import leaves it: "
                                               "the exact figures take it as neat"));
    Material().Filler = 30;
    EXPECT_EQ(Shop.WorthALook(),
              AboutMaterial("its filler 30 lowers the exact figures, but no report applies it"));
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, FillerOutsideZeroToHundredIsTrouble) {
    Material().MaterialType = "Production resin (Filled)";
    for (const double filler : {-1.0, 100.1, NotANumber}) {
        Material().Filler = filler;
        EXPECT_EQ(Shop.NotTrusted().size(), 1U) << filler;
        EXPECT_TRUE(Shop.WorthALook().empty()) << filler;
    }
    Material().Filler = 100;
    EXPECT_TRUE(Shop.NotTrusted().empty());
}

TEST_F(AttentionTest, FillerOfAnotherResinIsInNoFigure) {
    Material().Filler = 30;
    EXPECT_TRUE(Shop.Attentions().empty());
}

TEST_F(AttentionTest, VacuumBaggingAboveThePlainLimitIsNoticed) {
    Material().ApplicationMethod = "Spray (Vacuum bagging after roll-out)";
    EXPECT_TRUE(Shop.WorthALook().empty()); // 28, the limit of Spray
    Material().HapContent = 28.5;
    EXPECT_EQ(Shop.WorthALook(),
              AboutMaterial("its HAP content 28.5 is above 28, the limit of Table 2 for "
                            "production resin, atomized; limits for vacuum bagging are not "
                            "in Table 2"));
}

TEST_F(AttentionTest, PlainMethodAboveItsLimitIsLeftToTheFigures) {
    Material().HapContent = 40;
    EXPECT_TRUE(Shop.Attentions().empty());
}

TEST_F(AttentionTest, ClosedMoldingWithoutAnyCoatIsNoticed) {
    Material().ApplicationMethod = "Closed Molding";
    EXPECT_EQ(Shop.WorthALook(),
              AboutMaterial("closed molding is used, but no gel coat or skin coat in twelve "
                            "months: if there is any, its use is missing from the "
                            "figures"));
    Shop.AddMaterial("GC", "Pigmented production gel", "All");
    EXPECT_EQ(Shop.WorthALook().size(), 1U); // it is not used
    Shop.AddUse(2);
    EXPECT_TRUE(Shop.WorthALook().empty());
}

TEST_F(AttentionTest, SkinCoatIsACoatOfClosedMolding) {
    Material().ApplicationMethod = "Closed Molding";
    Shop.AddMaterial("SC").Description = "Skin Coat resin";
    Shop.AddUse(2);
    EXPECT_EQ(Shop.WorthALook().size(), 1U); // for its description alone
    EXPECT_EQ(Shop.WorthALook().front().find("closed molding"), std::string::npos);
}

TEST_F(AttentionTest, AlternateFactorIsInNoReport) {
    Material().EmissionFactor = 12.5;
    EXPECT_EQ(Shop.WorthALook(), AboutMaterial("its alternate emission factor 12.5 is in no report and no "
                                               "figure; 63.5710(d) wants the equations of Table 3"));
}

TEST_F(AttentionTest, DescriptionsThatMayBeExemptAreNoticedIgnoringCase) {
    for (const char* const description : {"Repair resin", "SKIN COAT", "a VinylEster"}) {
        Material().Description = description;
        EXPECT_EQ(Shop.WorthALook().size(), 1U) << description;
    }
    EXPECT_EQ(
        Shop.WorthALook(),
        AboutMaterial("its description has \"vinylester\": 63.5698(d) may exempt some such use (up to 1 "
                      "% of gel coat, 5 % of resin); the figures count all of it"));
    Material().Description = "Layup resin, skincoat";
    EXPECT_TRUE(Shop.WorthALook().empty());
}

// Order and text

TEST_F(AttentionTest, TroubleComesFirstThenFileOrder) {
    Material().EmissionFactor = 1;
    Shop.AddMaterial("PR-B").HapContent = 0;
    Shop.AddUse(2, "10/2005", -1); // 11/2005 is without entry
    Shop.AddMaterial("PR-C").HapContent = 150;
    Shop.AddUse(3);
    std::vector<std::string> order;
    for (const Attention& found : Shop.Attentions())
        order.push_back(found.Text.substr(0, found.Text.find(": ")));
    EXPECT_EQ(order,
              (Texts{"1_materials.talvor, record 2, \"PR-B\"", "1_materials.talvor, record 3, \"PR-C\"",
                     "1_usage.talvor, record 2, \"PR-B\", 10/2005", "1_usage.talvor",
                     "1_materials.talvor, record 1, \"PR-A\""}));
}

TEST_F(AttentionTest, MaterialIdIsShownInUtf8OnOneLine) {
    Material().CustomId = "Gr\xFCn\n";
    Material().HapContent = 0;
    ASSERT_EQ(Shop.NotTrusted().size(), 1U);
    EXPECT_EQ(Shop.NotTrusted().front().find("1_materials.talvor, record 1, \"Gr\xC3\xBCn?\": "), 0U);
}

TEST(AttentionOfStoredRecords, ImportedFilledResinIsNoticed) {
    OverviewShop shop;
    shop.ImportMaterials({"FR|filled|Production resin (Filled)|Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    shop.ImportUsage({"FR|7|2004|4000|lbs"});
    const Result<ShopRecords> records = ReadShopRecords(shop.App);
    ASSERT_TRUE(records);
    const ShopFigures figures(*records);
    const std::vector<Attention> found = FindAttention(figures, MonthNumberOf(2004, 7), 1);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].Text.find("1_materials.talvor, record 1, \"FR\": it is a filled resin"), 0U);
}

TEST(AttentionOfMadeShops, WhatIsNotTrustedCanBeSoughtAlone) {
    MadeShop shop;
    shop.AddMaterial("A").HapContent = 0;
    shop.AddMaterial("B").EmissionFactor = 3;
    shop.AddMaterial("C", "Production resin (Filled)").Description = "repair";
    shop.AddMaterial("D", "No such type").Density = 3;
    shop.AddMaterial("E", "Production resin", "Closed Molding").Density = -1;
    for (std::int16_t material = 1; material <= 6; ++material)
        shop.AddUse(material, "11/2005", 1000 * material, UnitMgal);
    shop.AddUse(1, "11/2005", 3, 7);
    shop.AddUse(2, "03/2005");
    const ShopFigures figures(shop.Records);
    std::vector<std::string> texts;
    for (const Attention& finding : FindNotTrusted(figures, MadeShop::MonthEnd, 1))
        texts.push_back(finding.Text);
    // A content of 0, a type that is not in the table, a density below 0, a material that is gone, a unit, a
    // month twice, and a period.
    EXPECT_EQ(texts.size(), 7U);
    EXPECT_EQ(texts, shop.NotTrusted());
    EXPECT_FALSE(shop.WorthALook().empty());
}

// Speed

double SecondsOf(const MadeShop& shop, std::size_t expected) {
    const ShopFigures figures(shop.Records);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(FindAttention(figures, MadeShop::MonthEnd, 1).size(), expected);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(AttentionAtTheLimit, EveryMaterialAndUseIsFoundFast) {
    MadeShop shop;
    for (int number = 1; number <= 32767; ++number) {
        shop.AddMaterial("PR-" + std::to_string(number)).HapContent = 0;
        shop.AddUse(static_cast<std::int16_t>(number), "12/2005", 1000, 3);
    }
    EXPECT_LT(SecondsOf(shop, std::size_t{2} * 32767), 2); // quadratic: minutes
}

TEST(AttentionAtTheLimit, AllUseOfOneMonthIsFoundFast) {
    MadeShop shop;
    for (int number = 1; number <= 32767; ++number) {
        shop.AddMaterial("PR-" + std::to_string(number));
        shop.AddUse(1);
    }
    EXPECT_LT(SecondsOf(shop, 32766), 2);
}
} // namespace
} // namespace mact
