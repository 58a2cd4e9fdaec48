#include "tests/transfer/transfer_fixture.h"

#include <array>

namespace mact {
namespace {

class UsageImportTest : public TransferTest {
protected:
    UsageImportTest() { AddMaterial("GC-110"); }

    std::string Log() const { return ContentOf(UsageLogFile()); }
    /// Imports each line by itself: + for one that was stored, - for one that was rejected.
    std::string Stored(const std::vector<std::string>& lines) {
        std::string stored;
        for (const std::string& line : lines) {
            ImportUsage(line + "\r\n");
            stored += Errors == 0 ? '+' : '-';
        }
        return stored;
    }
    /// The same with all lines in one file.
    std::string StoredAtOnce(const std::vector<std::string>& lines) {
        std::string content;
        for (const std::string& line : lines)
            content += line + "\r\n";
        ImportUsage(content);
        std::string stored;
        for (std::size_t number = 1; number <= lines.size(); ++number)
            stored +=
                Log().find("REC#  : " + std::to_string(number) + "\r\n") == std::string::npos ? '+' : '-';
        return stored;
    }
    std::string PeriodBytes(std::size_t index) const {
        return ContentOf(UsageData()).substr(index * 32 + 4, 7);
    }
};

std::string Entry(const std::string& line, const std::string& message) {
    return "REC#  : 1\r\nRECORD: " + line + "\r\n" + message + "\r\n\r\n";
}

TEST_F(UsageImportTest, AGoodLineInPoundsIsStored) {
    ImportUsage("GC-110|3|2005|120.5|lbs\r\n");
    ASSERT_EQ(Usage().size(), 1U);
    const UsageRecord usage = Usage()[0];
    EXPECT_EQ(usage.UsageId, 1);
    EXPECT_EQ(usage.MaterialId, 1);
    EXPECT_EQ(usage.Period, "3/2005");
    EXPECT_EQ(usage.Quantity, 120.5);
    EXPECT_EQ(usage.Unit, 2);
    EXPECT_EQ(Log(), "");
}

TEST_F(UsageImportTest, TheSameLineAgainInTheSameFileIsADuplicate) {
    ImportUsage("GC-110|3|2005|120.5|lbs\r\nGC-110|3|2005|120.5|lbs\r\n");
    EXPECT_EQ(Usage().size(), 1U);
    EXPECT_EQ(Log(), "REC#  : 2\r\nRECORD: GC-110|3|2005|120.5|lbs\r\n"
                     "ERROR : Usage with this material and date already exsists.\r\n\r\n");
}

TEST_F(UsageImportTest, TheSlotIsThirtyTwoBytesWithZeroBytesBehindItsFields) {
    ImportUsage("GC-110|3|2005|2|lbs\r\n");
    EXPECT_EQ(ContentOf(UsageData()), std::string("\x01\0"
                                                  "\x01\0"
                                                  "3/2005 "
                                                  "\0\0\0\0\0\0\0\x40"
                                                  "\x02\0"
                                                  "\xFF\xFF"
                                                  "\0\0\0\0\0\0\0\0\0",
                                                  32));
}

struct UnitCase {
    std::string_view Name;
    std::string_view Unit;
    std::int16_t Stored; ///< 0 = rejected
};
std::string CaseName(const testing::TestParamInfo<UnitCase>& info) {
    return std::string(info.param.Name);
}
class UsageImportUnit : public UsageImportTest, public testing::WithParamInterface<UnitCase> {};
TEST_P(UsageImportUnit, IsStoredOrRejected) {
    const std::string line = "GC-110|3|2005|1|" + std::string(GetParam().Unit);
    ImportUsage(line + "\r\n");
    if (GetParam().Stored == 0) {
        EXPECT_EQ(Log(), Entry(line, "ERROR : Invalid unit. Unit can only be lbs or mgl."));
        EXPECT_TRUE(Usage().empty());
    } else {
        EXPECT_EQ(Usage().at(0).Unit, GetParam().Stored);
    }
}
constexpr UnitCase UnitCases[] = {
    {"Lbs",             "lbs",  2},
    {"LbInCapitals",    "LB",   2},
    {"Mg",              "mg",   1},
    {"MgsInMixedCase",  "mGs",  1},
    {"MgalOfTheExport", "Mgal", 0},
    {"LbsBehindABlank", " lbs", 0},
    {"LbsBeforeABlank", "lbs ", 0},
    {"Empty",           "",     0},
    {"MglOfTheMessage", "mgl",  0},
};
INSTANTIATE_TEST_SUITE_P(Units, UsageImportUnit, testing::ValuesIn(UnitCases), CaseName);

TEST_F(UsageImportTest, AYearOfTwoDigitsIsStored) {
    ImportUsage("GC-110|3|05|1|lbs\r\n");
    EXPECT_EQ(PeriodBytes(0), "3/05   ");
}

TEST_F(UsageImportTest, AYearOfFiveDigitsFitsBehindAShortMonth) {
    ImportUsage("GC-110|3|12345|1|lbs\r\n");
    EXPECT_EQ(PeriodBytes(0), "3/12345");
}

TEST_F(UsageImportTest, AYearOfFiveDigitsIsCutBehindALongMonth) {
    ImportUsage("GC-110|10|12345|1|lbs\r\n");
    EXPECT_EQ(PeriodBytes(0), "10/1234");
}

TEST_F(UsageImportTest, AYearThatIsNoNumberIsRejected) {
    ImportUsage("GC-110|3|MMV|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|3|MMV|1|lbs",
                           "ERROR : Invalid year. This value shoud be a proper 4 degit year."));
}

TEST_F(UsageImportTest, ANegativeYearIsStored) {
    ImportUsage("GC-110|3|-5|1|lbs\r\n");
    EXPECT_EQ(PeriodBytes(0), "3/-5   ");
    EXPECT_EQ(Errors, 0);
}

TEST_F(UsageImportTest, AMonthThatRoundsToOneIsRejected) {
    ImportUsage("GC-110|0.6|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|0.6|2005|1|lbs",
                           "ERROR : Invalid Month. Month can be a numeric value between 1 to 12."));
}

TEST_F(UsageImportTest, AMonthThatRoundsToTwelveIsRejected) {
    ImportUsage("GC-110|12.3|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|12.3|2005|1|lbs",
                           "ERROR : Invalid Month. Month can be a numeric value between 1 to 12."));
}

TEST_F(UsageImportTest, AnEmptyMonthIsRejected) {
    ImportUsage("GC-110||2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110||2005|1|lbs",
                           "ERROR : Invalid Month. Month can be a numeric value between 1 to 12."));
}

TEST_F(UsageImportTest, MonthZeroIsRejected) {
    ImportUsage("GC-110|0|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|0|2005|1|lbs",
                           "ERROR : Invalid Month. Month can be a numeric value between 1 to 12."));
}

TEST_F(UsageImportTest, MonthThirteenIsRejected) {
    ImportUsage("GC-110|13|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|13|2005|1|lbs",
                           "ERROR : Invalid Month. Month can be a numeric value between 1 to 12."));
}

TEST_F(UsageImportTest, AMonthInWordsIsRejectedAndTheImportGoesOn) {
    ImportUsage("GC-110|March|2005|1|lbs\r\nGC-110|3|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|March|2005|1|lbs",
                           "ERROR : Invalid Month. Month can be a numeric value between 1 to 12."));
    EXPECT_EQ(Usage().size(), 1U);
}

TEST_F(UsageImportTest, AMonthWithAFractionPassesAndItsPeriodIsCut) {
    ImportUsage("GC-110|3.5|2005|1|lbs\r\nGC-110|12.5|2005|1|lbs\r\n");
    EXPECT_EQ(PeriodBytes(0), "3.5/200"); // 3.5/2005 has eight characters
    EXPECT_EQ(Processed, 2);
    EXPECT_EQ(Errors, 1); // 12.5 is beyond 12
}

TEST_F(UsageImportTest, AnUnknownMaterialIsRejected) {
    ImportUsage("GC-111|3|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-111|3|2005|1|lbs", "ERROR : Invalid Material ID."));
}

TEST_F(UsageImportTest, AByteOrderMarkBelongsToTheFirstMaterialId) {
    ImportUsage("\xEF\xBB\xBFGC-110|3|2005|1|lbs\r\nGC-110|4|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("\xEF\xBB\xBFGC-110|3|2005|1|lbs", "ERROR : Invalid Material ID."));
    EXPECT_EQ(Usage().size(), 1U);
}

TEST_F(UsageImportTest, ADeletedMaterialIsUnknown) {
    Delete(1);
    ImportUsage("GC-110|3|2005|1|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|3|2005|1|lbs", "ERROR : Invalid Material ID."));
}

TEST_F(UsageImportTest, TheMaterialIsFoundWhateverBlanksAndCase) {
    ImportUsage("  gc-110 |3|2005|1|lbs\r\n");
    EXPECT_EQ(Usage().at(0).MaterialId, 1);
}

TEST_F(UsageImportTest, AQuantityThatIsNoNumberIsRejected) {
    ImportUsage("GC-110|3|2005|1,5|lbs\r\n");
    EXPECT_EQ(Log(), Entry("GC-110|3|2005|1,5|lbs",
                           "ERROR : Invalid Quantity. Quantity should be a proper numeric value."));
}

TEST_F(UsageImportTest, TheChecksAreMadeInTheirOrder) {
    struct Repair {
        std::string_view Message; ///< why the line is rejected
        std::size_t Field;        ///< the field that is then set to Text
        std::string_view Text;
    };
    constexpr Repair repairs[] = {
        {"ERROR : Invalid Material ID.",                                         0, "GC-110"},
        {"ERROR : Invalid Month. Month can be a numeric value between 1 to 12.", 1, "3"     },
        {"ERROR : Invalid year. This value shoud be a proper 4 degit year.",     2, "2005"  },
        {"ERROR : Usage with this material and date already exsists.",           2, "2006"  },
        {"ERROR : Invalid Quantity. Quantity should be a proper numeric value.", 3, "1"     },
        {"ERROR : Invalid unit. Unit can only be lbs or mgl.",                   4, "lbs"   },
    };
    for (const std::string period : {"0/MMV", "3/MMV", "3/2005"}) // each period on the way exists already
        EXPECT_FALSE(SaveUsage(App, {.MaterialId = 1, .Period = period, .Quantity = 1, .Unit = UnitLbs}));
    std::array<std::string, 5> fields{"GC-111", "0", "MMV", "x", "gal"};
    const auto line = [&fields] {
        return fields[0] + '|' + fields[1] + '|' + fields[2] + '|' + fields[3] + '|' + fields[4];
    };
    for (const Repair& repair : repairs) {
        ImportUsage(line() + "\r\n");
        EXPECT_EQ(Log(), Entry(line(), std::string(repair.Message)));
        fields.at(repair.Field) = repair.Text;
    }
    ImportUsage(line() + "\r\n");
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(Usage().size(), 4U);
}

TEST_F(UsageImportTest, ADuplicateIsToldBeforeItsQuantity) {
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "+");
    ImportUsage("GC-110|3|2005|x|x\r\n");
    EXPECT_EQ(Log(),
              Entry("GC-110|3|2005|x|x", "ERROR : Usage with this material and date already exsists."));
}

TEST_F(UsageImportTest, FourAndSixFieldsAreRejectedByTheirNumber) {
    ImportUsage("GC-110|3|2005|1\r\nGC-110|3|2005|1|lbs|\r\n\r\n");
    EXPECT_EQ(Log(), "GC-110|3|2005|1    ***** Invalid number of delimited fields ******\r\n"
                     "GC-110|3|2005|1|lbs|    ***** Invalid number of delimited fields ******\r\n"
                     "    ***** Invalid number of delimited fields ******\r\n");
    EXPECT_EQ(Processed, 3);
    EXPECT_EQ(Errors, 3);
}

// Which periods are duplicates: the finder compares the period asked for with the stored one, cut and
// trimmed.

struct PeriodCase {
    std::string_view Name;
    std::string_view First; ///< month|year
    std::string_view Second;
    std::string_view Stored; ///< + and - for each
};
std::string PeriodCaseName(const testing::TestParamInfo<PeriodCase>& info) {
    return std::string(info.param.Name);
}
class UsageImportPeriod : public UsageImportTest, public testing::WithParamInterface<PeriodCase> {
protected:
    std::vector<std::string> Lines() const {
        return {"GC-110|" + std::string(GetParam().First) + "|1|lbs",
                "GC-110|" + std::string(GetParam().Second) + "|1|lbs"};
    }
    /// Whether the finder itself finds the second line's period when the first line is stored.
    bool FinderFinds() {
        std::string period(GetParam().Second);
        period.replace(period.find('|'), 1, "/");
        std::vector<UsageRecord> found;
        return FindUsage(App, {.Periods = period, .MaterialText = "GC-110"}, found);
    }
};
TEST_P(UsageImportPeriod, IsADuplicateWithinOneFile) {
    EXPECT_EQ(StoredAtOnce(Lines()), GetParam().Stored);
}
TEST_P(UsageImportPeriod, IsADuplicateOfAnEarlierRun) {
    EXPECT_EQ(Stored(Lines()), GetParam().Stored);
}
TEST_P(UsageImportPeriod, IsADuplicateAsTheFinderHasIt) {
    Stored({Lines()[0]});
    EXPECT_EQ(FinderFinds(), GetParam().Stored == "+-");
}
constexpr PeriodCase PeriodCases[] = {
    {"Same",                         "3|2005",   "3|2005",   "+-"},
    {"OtherMonth",                   "3|2005",   "4|2005",   "++"},
    {"ElevenIsNotOne",               "11|2005",  "1|2005",   "++"},
    {"LeadingZeroIsAnotherPeriod",   "3|2005",   "03|2005",  "++"},
    {"LeadingBlankIsNotFoundAgain",  " 3|2005",  " 3|2005",  "++"},
    {"LeadingBlankIsStoredTrimmed",  " 3|2005",  "3|2005",   "+-"},
    {"BlankBehindTheYear",           "3|2005 ",  "3|2005 ",  "++"},
    {"BlankBehindTheYearIsTrimmed",  "3|2005 ",  "3|2005",   "+-"},
    {"BlankWithin",                  "3 |2005",  "3 |2005",  "+-"},
    {"BlankWithinIsAnotherPeriod",   "3 |2005",  "3|2005",   "++"},
    {"CutYearIsNotFoundAgain",       "10|12345", "10|12345", "++"},
    {"CutYearIsFoundByWhatItBecame", "10|12345", "10|1234",  "+-"},
    {"ExponentWhateverItsCase",      "1e0|2005", "1E0|200",  "+-"},
};
INSTANTIATE_TEST_SUITE_P(Periods, UsageImportPeriod, testing::ValuesIn(PeriodCases), PeriodCaseName);

TEST_F(UsageImportTest, ADeletedUsageRecordIsNoDuplicate) {
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "+");
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "+");
    EXPECT_EQ(Usage().at(0).UsageId, 2);
}

TEST_F(UsageImportTest, TwoMaterialsMayBeUsedInOneMonth) {
    AddMaterial("B");
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs", "B|3|2005|1|lbs"}), "++");
}

TEST_F(UsageImportTest, OfTwoMaterialsWithOneIdentifierTheFirstIsUsed) {
    AddMaterial("gc-110");
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "+");
    EXPECT_EQ(Usage().at(0).MaterialId, 1);
}

TEST_F(UsageImportTest, UsageOfTheSecondMaterialWithThatIdentifierIsADuplicateToo) {
    AddMaterial("gc-110");
    EXPECT_FALSE(SaveUsage(App, {.MaterialId = 2, .Period = "3/2005", .Quantity = 1, .Unit = UnitLbs}));
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "-");
}

TEST_F(UsageImportTest, UsageOfADeletedMaterialIsNoDuplicate) {
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "+");
    Delete(1);
    AddMaterial("GC-110");
    EXPECT_EQ(Stored({"GC-110|3|2005|1|lbs"}), "+");
    EXPECT_EQ(Usage().at(1).MaterialId, 2);
}

TEST_F(UsageImportTest, FieldsOf16MegabytesCountLikeShortOnes) {
    const std::string zeros(16'000'000, '0');
    const std::string blanks(16'000'000, ' ');
    EXPECT_TRUE(StoredAtOnce({
                    "GC-110|3|2005|2|lbs",
                    "GC-110|" + zeros + "3|2005|2|lbs",  // a month all the same, and another text than 3/2005
                    "GC-110|3|" + zeros + "2005|2|lbs",  // a year
                    "GC-110|4|2005|" + zeros + "2|lbs",  // a quantity
                    "GC-110" + blanks + "|5|2005|2|lbs", // the Material ID
                    "GC-110|" + blanks + "3|2005|2|lbs",
                    "GC-110|6|2005|2|lbs" + blanks,
                }) == "++++++-");
    ASSERT_EQ(Usage().size(), 6U);
    EXPECT_EQ(PeriodBytes(1), "0000000");
    EXPECT_EQ(PeriodBytes(2), "3/00000");
    EXPECT_EQ(Usage()[3].Quantity, 2);
    EXPECT_EQ(PeriodBytes(5), "       ");
}

TEST_F(UsageImportTest, ALineOfMoreThan16MegabytesIsRejectedAndItsEntryHasItsBeginningAndItsLength) {
    const std::string line(16777217, 'x');
    ImportUsage(line + "\r\nGC-110|3|2005|2|lbs\r\n");
    EXPECT_EQ(Processed, 2);
    EXPECT_EQ(Errors, 1);
    EXPECT_EQ(Usage().size(), 1U);
    EXPECT_EQ(Log(), "REC#  : 1\r\nRECORD: " + std::string(100, 'x') +
                         "... (the beginning of a line of 16777217 bytes)\r\n"
                         "ERROR : Line is too long. It can have 16777216 bytes at most.\r\n\r\n");
}

} // namespace
} // namespace mact
