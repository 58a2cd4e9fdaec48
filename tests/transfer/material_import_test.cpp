#include "tests/transfer/transfer_fixture.h"

#include <array>

namespace mact {
namespace {

class MaterialImportTest : public TransferTest {
protected:
    std::string Log() const { return ContentOf(MaterialLogFile()); }
};

/// The log entry for the only line of a file.
std::string Entry(const std::string& line, const std::string& message) {
    return "REC#  : 1\r\nRECORD: " + line + "\r\n" + message + "\r\n\r\n";
}

std::string Joined(const std::vector<std::string>& fields) {
    std::string line = fields.at(0);
    for (std::size_t index = 1; index < fields.size(); ++index)
        line += '|' + fields[index];
    return line;
}

TEST_F(MaterialImportTest, AGoodLineIsStoredFieldByField) {
    ImportMaterials(
        "GC-1|White gel|Pigmented production gel|All|10.4|32.5|1|2|3|4|5|6|7|8|9|10|11|12|13\r\n");
    ASSERT_EQ(Materials().size(), 1U);
    const MaterialRecord material = Materials()[0];
    EXPECT_EQ(material.MaterialId, 1);
    EXPECT_EQ(material.CustomId, "GC-1");
    EXPECT_EQ(material.Description, "White gel");
    EXPECT_EQ(material.MaterialType, "Pigmented production gel");
    EXPECT_EQ(material.ApplicationMethod, "All");
    EXPECT_EQ(material.Density, 10.4);
    EXPECT_EQ(material.HapContent, 32.5);
    EXPECT_EQ(material.EmissionFactor, 0);
    EXPECT_EQ(material.Comments, "");
    EXPECT_EQ(material.Filler, 0);
}

TEST_F(MaterialImportTest, TheTwelveNumbersAreContentAndFactorInTurn) {
    ImportMaterials("A|d|Production resin|Spray|9|28|1|2|3|4|5|6|7|8|9|10|11|12|0\r\n");
    ASSERT_EQ(Materials().size(), 1U);
    const MaterialRecord material = Materials()[0];
    for (std::size_t pair = 0; pair < 6; ++pair) {
        EXPECT_EQ(material.*PollutantContents[pair], static_cast<double>(2 * pair + 1));
        EXPECT_EQ(material.*PollutantFactors[pair], static_cast<double>(2 * pair + 2));
    }
}

TEST_F(MaterialImportTest, AStoredSlotIsAsLongAsEveryOther) {
    ImportMaterials(GoodMaterial("A") + GoodMaterial("B"));
    const std::string data = ContentOf(MaterialData());
    ASSERT_EQ(data.size(), 2U * 1444U);
    EXPECT_EQ(data.substr(0, 3), std::string("\x01\0A", 3));
    EXPECT_EQ(data.substr(1444, 3), std::string("\x02\0B", 3));
    EXPECT_EQ(data.substr(681, 2), "\xFF\xFF"); // live
    EXPECT_EQ(data.substr(787, 657), std::string(657, '\0'));
}

TEST_F(MaterialImportTest, TextsAreStoredUntrimmed) {
    ImportMaterials(" A |  two blanks|production RESIN| spray |9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    const std::string data = ContentOf(MaterialData());
    ASSERT_EQ(data.size(), 1444U);
    EXPECT_EQ(data.substr(2, 100), " A " + std::string(97, ' '));
    EXPECT_EQ(data.substr(102, 100), "production RESIN" + std::string(84, ' '));
    EXPECT_EQ(data.substr(202, 100), " spray " + std::string(93, ' '));
    EXPECT_EQ(data.substr(581, 100), "  two blanks" + std::string(88, ' '));
}

TEST_F(MaterialImportTest, AMaterialTypeIsStoredWithTheBlanksAroundIt) {
    ImportMaterials("A|d|  Production resin |Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    const std::string data = ContentOf(MaterialData());
    ASSERT_EQ(data.size(), 1444U);
    EXPECT_EQ(data.substr(102, 100), "  Production resin " + std::string(81, ' '));
}

TEST_F(MaterialImportTest, ImportedRecordsFollowTheExistingOnes) {
    AddMaterial("A");
    AddMaterial("B");
    Delete(2);
    ImportMaterials(GoodMaterial("C"));
    ASSERT_EQ(Materials().size(), 2U);
    EXPECT_EQ(Materials()[1].MaterialId, 3);
}

TEST_F(MaterialImportTest, AllGoodLinesLeaveAnEmptyLog) {
    WriteContent(MaterialLogFile(), "of the run before");
    ImportMaterials(GoodMaterial("A"));
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(Processed, 1);
    EXPECT_EQ(Errors, 0);
}

TEST_F(MaterialImportTest, ALineOfEighteenFieldsIsRejectedWithoutItsNumber) {
    ImportMaterials("A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Log(), "A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0"
                     "    ***** Invalid number of delimited fields ******\r\n");
    EXPECT_EQ(Errors, 1);
    EXPECT_TRUE(Materials().empty());
}

TEST_F(MaterialImportTest, ATrailingBarIsATwentiethField) {
    ImportMaterials("A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0|\r\n");
    EXPECT_EQ(Log(), "A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0|"
                     "    ***** Invalid number of delimited fields ******\r\n");
    EXPECT_TRUE(Materials().empty());
}

TEST_F(MaterialImportTest, AnEmptyLineIsRejectedByItsFieldCount) {
    ImportMaterials("\r\n");
    EXPECT_EQ(Log(), "    ***** Invalid number of delimited fields ******\r\n");
    EXPECT_EQ(Processed, 1);
    EXPECT_EQ(Errors, 1);
}

TEST_F(MaterialImportTest, AnExistingMaterialIdIsRejectedWhateverItsCase) {
    AddMaterial("gc-\xE9"); // é, and É below
    ImportMaterials(" GC-\xC9 |d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Log(), Entry(" GC-\xC9 |d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0",
                           "ERROR : Material with this id already exsists."));
}

TEST_F(MaterialImportTest, TheSecondOfTwoEqualLinesIsRejected) {
    ImportMaterials(GoodMaterial("A") + GoodMaterial("a"));
    EXPECT_EQ(Materials().size(), 1U);
    EXPECT_EQ(Log(), "REC#  : 2\r\n"
                     "RECORD: a|a resin|Production resin|Spray|9.1|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n"
                     "ERROR : Material with this id already exsists.\r\n\r\n");
}

TEST_F(MaterialImportTest, TheIdentifierOfADeletedMaterialIsFree) {
    AddMaterial("A");
    Delete(1);
    ImportMaterials(GoodMaterial("A"));
    EXPECT_EQ(Errors, 0);
    EXPECT_EQ(Materials().at(0).MaterialId, 2);
}

TEST_F(MaterialImportTest, ASecondMaterialWithoutIdentifierExistsAlready) {
    ImportMaterials(GoodMaterial("") + GoodMaterial("  "));
    EXPECT_EQ(Materials().size(), 1U);
    EXPECT_EQ(Errors, 1);
}

TEST_F(MaterialImportTest, AnIdentifierThatIsCutIsNotFoundByItsFullText) {
    const std::string longId = std::string(100, 'a') + "bcd";
    ImportMaterials(GoodMaterial(longId) + GoodMaterial(longId) + GoodMaterial(std::string(100, 'A')));
    EXPECT_EQ(Materials().size(), 2U);
    EXPECT_EQ(Errors, 1); // the third: it is what the first was stored as
}

TEST_F(MaterialImportTest, BlanksThatPushAnIdentifierOutOfItsFieldLeaveAnEmptyOne) {
    ImportMaterials(GoodMaterial(std::string(100, ' ') + "A") + GoodMaterial("A") + GoodMaterial(""));
    EXPECT_EQ(Materials().size(), 2U);
    EXPECT_EQ(Errors, 1); // the third
}

TEST_F(MaterialImportTest, ADescriptionOfBlanksIsRejected) {
    ImportMaterials("A|   |Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Log(), Entry("A|   |Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0",
                           "ERROR : Description field cant not be empty."));
}

TEST_F(MaterialImportTest, ADescriptionWithLeadingBlanksIsStoredWithThem) {
    ImportMaterials("A|  x|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Materials().at(0).Description, "  x");
}

TEST_F(MaterialImportTest, AMethodThatTheTypeLacksIsRejected) {
    ImportMaterials("A|d|Tooling resin|Closed Molding|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Log(), Entry("A|d|Tooling resin|Closed Molding|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0",
                           "ERROR : Invalid spelling and/or combination of material type and/or "
                           "Application method."));
}

TEST_F(MaterialImportTest, ADensityThatIsNoNumberIsRejected) {
    ImportMaterials("A|d|Production resin|Spray|9,1|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Log(), Entry("A|d|Production resin|Spray|9,1|28|0|0|0|0|0|0|0|0|0|0|0|0|0",
                           "ERROR : Invalid density, it should be a numeric value"));
}

TEST_F(MaterialImportTest, AHapContentThatIsNoNumberIsRejected) {
    ImportMaterials("A|d|Production resin|Spray|9|28%|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Log(), Entry("A|d|Production resin|Spray|9|28%|0|0|0|0|0|0|0|0|0|0|0|0|0",
                           "ERROR : Invalid HAP contents, it should be a numeric value."));
}

TEST_F(MaterialImportTest, APollutantEntryEndsWithTwoEmptyLines) {
    ImportMaterials("A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|x|0\r\n");
    EXPECT_EQ(Log(), Entry("A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|x|0",
                           "ERROR : Content/Emission factor in one/many of additional pollutants is "
                           "non-numeric. It should be numeric value. If there is no value please write "
                           "0.\r\n"));
}

TEST_F(MaterialImportTest, AnEmptyPollutantNumberIsRejected) {
    ImportMaterials("A|d|Production resin|Spray|9|28||0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Errors, 1);
    EXPECT_NE(Log().find("additional pollutants is non-numeric"), std::string::npos);
}

TEST_F(MaterialImportTest, AFillerThatIsNoNumberIsRejected) {
    ImportMaterials("A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|\r\n");
    EXPECT_EQ(Log(), Entry("A|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|",
                           "ERROR : Invalid filler, it should be a numeric value. If this is not a filled "
                           "risin please use 0."));
}

TEST_F(MaterialImportTest, OnlyTheFirstFailingCheckIsReported) {
    ImportMaterials("A||nonsense|none|x|x|x|x|x|x|x|x|x|x|x|x|x|x|x\r\n");
    EXPECT_EQ(Log(), Entry("A||nonsense|none|x|x|x|x|x|x|x|x|x|x|x|x|x|x|x",
                           "ERROR : Description field cant not be empty."));
}

TEST_F(MaterialImportTest, TheChecksAreMadeInTheOrderOfTheFields) {
    constexpr std::string_view exists = "ERROR : Material with this id already exsists.";
    constexpr std::string_view description = "ERROR : Description field cant not be empty.";
    constexpr std::string_view type = "ERROR : Invalid spelling and/or combination of material type and/or "
                                      "Application method.";
    constexpr std::string_view density = "ERROR : Invalid density, it should be a numeric value";
    constexpr std::string_view hap = "ERROR : Invalid HAP contents, it should be a numeric value.";
    constexpr std::string_view pollutant =
        "ERROR : Content/Emission factor in one/many of additional pollutants is non-numeric. It should be "
        "numeric value. If there is no value please write 0.\r\n";
    constexpr std::string_view filler = "ERROR : Invalid filler, it should be a numeric value. If this is "
                                        "not a filled risin please use 0.";
    struct Repair {
        std::string_view Message; ///< why the line is rejected
        std::string_view Field;   ///< what its field is then set to
    };
    constexpr std::array<Repair, 19> repairs{
        {{exists, "B"},
         {description, "d"},
         {type, "Production resin"},
         {type, "Spray"},
         {density, "9"},
         {hap, "28"},
         {pollutant, "1"},
         {pollutant, "2"},
         {pollutant, "3"},
         {pollutant, "4"},
         {pollutant, "5"},
         {pollutant, "6"},
         {pollutant, "7"},
         {pollutant, "8"},
         {pollutant, "9"},
         {pollutant, "10"},
         {pollutant, "11"},
         {pollutant, "12"},
         {filler, "0"}}
    };
    AddMaterial("A");
    std::vector<std::string> fields{"A", " ", "nonsense", "none"};
    fields.resize(19, "x");
    for (std::size_t index = 0; index < repairs.size(); ++index) {
        ImportMaterials(Joined(fields) + "\r\n");
        EXPECT_EQ(Log(), Entry(Joined(fields), std::string(repairs[index].Message)));
        fields[index] = repairs[index].Field;
    }
    ImportMaterials(Joined(fields) + "\r\n");
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(Materials().size(), 2U);
}

TEST_F(MaterialImportTest, NumbersMayHaveBlanksSignPointAndExponent) {
    ImportMaterials("A|d|Production resin|Spray| 9.5 |+2.8e1|-1|.5|0|0|0|0|0|0|0|0|0|0|0\r\n");
    ASSERT_EQ(Materials().size(), 1U);
    EXPECT_EQ(Materials()[0].Density, 9.5);
    EXPECT_EQ(Materials()[0].HapContent, 28);
    EXPECT_EQ(Materials()[0].Content1, -1);
    EXPECT_EQ(Materials()[0].Factor1, .5);
}

TEST_F(MaterialImportTest, EveryKindOfLineEndEndsALineAndTheLastNeedsNone) {
    std::string lines;
    for (const auto& [id, end] : {
             std::pair{"A", "\r\n"},
             {"B", "\n"  },
             {"C", "\r"  },
             {"D", ""    }
    }) {
        const std::string line = GoodMaterial(id);
        lines += line.substr(0, line.size() - 2) + end;
    }
    ImportMaterials(lines);
    EXPECT_EQ(Materials().size(), 4U);
    EXPECT_EQ(Processed, 4);
    EXPECT_EQ(Errors, 0);
}

TEST_F(MaterialImportTest, TheLogEndsItsLinesWithCrLfWhateverTheSource) {
    ImportMaterials("a\nb\rc");
    EXPECT_EQ(Log(), "a    ***** Invalid number of delimited fields ******\r\n"
                     "b    ***** Invalid number of delimited fields ******\r\n"
                     "c    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(MaterialImportTest, BytesBeyondAsciiPassUnchangedIntoRecordAndLog) {
    // é ß Ø €, and one unassigned byte
    ImportMaterials("Gel \xE9\xDF\xD8\x80\x81|d|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n"
                    "\xE9\xDF\xD8\x80\x81\r\n");
    EXPECT_EQ(Materials().at(0).CustomId, "Gel \xE9\xDF\xD8\x80\x81");
    EXPECT_EQ(Log(), "\xE9\xDF\xD8\x80\x81    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(MaterialImportTest, AByteOrderMarkBelongsToTheFirstIdentifier) {
    ImportMaterials("\xEF\xBB\xBF" + GoodMaterial("A"));
    EXPECT_EQ(Materials().at(0).CustomId, "\xEF\xBB\xBF"
                                          "A");
}

TEST_F(MaterialImportTest, AnEmptyFileIsAnImportOfNothing) {
    ImportMaterials("");
    EXPECT_EQ(Processed, 0);
    EXPECT_EQ(Errors, 0);
    EXPECT_EQ(Log(), "");
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(MaterialImportTest, AMissingTypeTableRejectsEveryLine) {
    std::filesystem::remove(DataFile("hapcontents.talvor"));
    ImportMaterials(GoodMaterial("A"));
    EXPECT_EQ(Errors, 1);
}

TEST_F(MaterialImportTest, ThousandsOfRecordsAreStoredInOrder) {
    std::string lines;
    for (int number = 1; number <= 1000; ++number)
        lines += GoodMaterial("M" + std::to_string(number)) + (number % 100 == 0 ? "bad\r\n" : "");
    ImportMaterials(lines);
    EXPECT_EQ(Processed, 1010);
    EXPECT_EQ(Errors, 10);
    const std::vector<MaterialRecord> materials = Materials();
    ASSERT_EQ(materials.size(), 1000U);
    for (std::size_t index = 0; index < materials.size(); ++index) {
        EXPECT_EQ(materials[index].MaterialId, static_cast<std::int16_t>(index + 1));
        EXPECT_EQ(materials[index].CustomId, "M" + std::to_string(index + 1));
    }
}

constexpr std::size_t LongestLine = 16777216;

TEST_F(MaterialImportTest, ALineOf16MegabytesIsStoredLikeAnyOther) {
    const std::string fields = "|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0";
    const std::string line = "A|" + std::string(LongestLine - fields.size() - 2, 'd') + fields;
    ASSERT_EQ(line.size(), LongestLine);
    ImportMaterials(line + "\r\n" + GoodMaterial("B"));
    EXPECT_EQ(Processed, 2);
    EXPECT_EQ(Errors, 0);
    ASSERT_EQ(Materials().size(), 2U);
    EXPECT_EQ(Materials()[0].Description, std::string(100, 'd'));
    EXPECT_EQ(Materials()[1].CustomId, "B");
}

TEST_F(MaterialImportTest, ALineOf16MegabytesIsLoggedWhole) {
    const std::string line(LongestLine, 'x');
    ImportMaterials(line);
    EXPECT_EQ(Errors, 1);
    EXPECT_TRUE(Log() == line + "    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(MaterialImportTest, ALongerLineIsRejectedAndItsEntryHasItsBeginningAndItsLength) {
    const std::string beginning = "A|" + std::string(98, 'd');
    const std::string line = beginning + std::string(LongestLine + 1 - 100, 'e');
    ImportMaterials(GoodMaterial("A") + line + "\r\n" + GoodMaterial("B"));
    EXPECT_EQ(Processed, 3);
    EXPECT_EQ(Errors, 1);
    EXPECT_EQ(Materials().size(), 2U);
    EXPECT_EQ(Log(), "REC#  : 2\r\nRECORD: " + beginning +
                         "... (the beginning of a line of 16777217 bytes)\r\n"
                         "ERROR : Line is too long. It can have 16777216 bytes at most.\r\n\r\n");
}

TEST_F(MaterialImportTest, ABlankBehind100CharactersAndMoreIsADifferentMaterialId) {
    const std::string longest(100, 'A');
    ImportMaterials(GoodMaterial(longest) + GoodMaterial(longest + " A") + GoodMaterial(longest + "  "));
    EXPECT_EQ(Errors, 1); // the last, which has only blanks behind it
    EXPECT_EQ(Materials().size(), 2U);
}

} // namespace
} // namespace mact
