#include "store/material_types.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_files.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Names = std::vector<std::string>;

class MaterialTypesTest : public testing::Test, public TestProgram {
protected:
    void WriteTable(const std::vector<HapContentRecord>& rows) {
        std::string content;
        for (const HapContentRecord& row : rows)
            content += Pack(HapContentLayout, row);
        WriteContent(DataFile("hapcontents.talvor"), content);
    }
    Names Types(bool isDistinct) {
        Names names;
        GetMaterialTypes(App, names, isDistinct);
        return names;
    }
    Names Methods(const std::optional<std::string>& type) {
        Names names;
        GetApplicationMethods(App, names, true, type);
        return names;
    }
};

TEST_F(MaterialTypesTest, TheDefaultTableHas29RowsAsPublished) {
    ASSERT_TRUE(CreateDefaultHapContents(App));
    struct Row {
        const char* Type;
        const char* Method;
        double Limit, Coefficient, Exponent, EmissionLimit;
    };
    const auto resin = [](const char* type, std::array<double, 6> limits, double emissionLimit) {
        constexpr std::array<const char*, 6> methods = {"Spray",
                                                        "Spray (Vacuum bagging after roll-out)",
                                                        "Spray (Vacuum bagging without roll-out)",
                                                        "Non-Spray",
                                                        "Non-spray (Vacuum bagging after roll-out)",
                                                        "Non-spray (Vacuum bagging without roll-out)"};
        constexpr std::array<double, 6> coefficients = {0.014, 0.01185, 0.00945, 0.014, 0.011, 0.0076};
        std::vector<Row> rows;
        for (std::size_t index = 0; index < 6; ++index)
            rows.push_back({type, methods[index], limits[index], coefficients[index],
                            index < 3 ? 2.425 : 2.275, emissionLimit});
        return rows;
    };
    std::vector<Row> expected = resin("Production resin", {28, 30, 33, 35, 39, 46}, 46);
    expected.push_back({"Production resin", "Closed Molding", -1, 0, 0, 46});
    expected.push_back({"Pigmented production gel", "All", 33, 0.445, 1.675, 159});
    expected.push_back({"Clear production gel coat", "All", 48, 0.445, 1.675, 291});
    for (const Row& row : resin("Tooling resin", {30, 30, 33, 39, 39, 46}, 54))
        expected.push_back(row);
    expected.push_back({"Tooling gel coat", "All", 40, 0.445, 1.675, 214});
    for (const Row& row : resin("Production resin (Filled)", {28, 30, 33, 35, 39, 46}, 46))
        expected.push_back(row);
    expected.push_back({"Production resin (Filled)", "Closed Molding", -1, 0, 0, 46});
    for (const Row& row : resin("Tooling resin (Filled)", {30, 30, 33, 39, 39, 46}, 54))
        expected.push_back(row);

    std::vector<HapContentRecord> rows;
    ASSERT_TRUE(FindHapContents(App, {}, rows));
    ASSERT_EQ(rows.size(), 29U);
    ASSERT_EQ(expected.size(), 29U);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        SCOPED_TRACE(index + 1);
        EXPECT_EQ(rows[index].MaterialType, expected[index].Type);
        EXPECT_EQ(rows[index].ApplicationMethod, expected[index].Method);
        EXPECT_EQ(rows[index].HapLimit, expected[index].Limit);
        EXPECT_EQ(rows[index].EfCoefficient, expected[index].Coefficient);
        EXPECT_EQ(rows[index].EfExponent, expected[index].Exponent);
        EXPECT_EQ(rows[index].EmissionLimit, expected[index].EmissionLimit);
    }
}

TEST_F(MaterialTypesTest, TheDefaultTableHasSevenTypesAndSevenMethodsForProductionResin) {
    ASSERT_TRUE(CreateDefaultHapContents(App));
    EXPECT_EQ(Types(true), (Names{"Production resin", "Pigmented production gel", "Clear production gel coat",
                                  "Tooling resin", "Tooling gel coat", "Production resin (Filled)",
                                  "Tooling resin (Filled)"}));
    EXPECT_EQ(Types(false).size(), 29U);
    EXPECT_EQ(Methods("Production resin").size(), 7U);
    EXPECT_EQ(Methods("Pigmented production gel"), Names{"All"});
}

TEST_F(MaterialTypesTest, MethodsAreFoundForATypeInOtherCapitals) {
    ASSERT_TRUE(CreateDefaultHapContents(App));
    EXPECT_EQ(Methods(" production RESIN "), Methods("Production resin"));
}

TEST_F(MaterialTypesTest, ToolingResinHasNoClosedMolding) {
    ASSERT_TRUE(CreateDefaultHapContents(App));
    std::vector<HapContentRecord> rows = {{}};
    EXPECT_FALSE(
        FindHapContents(App, {.MaterialType = "Tooling resin", .ApplicationMethod = "Closed Molding"}, rows));
    EXPECT_TRUE(rows.empty());
    EXPECT_TRUE(FindHapContents(
        App, {.MaterialType = "production resin", .ApplicationMethod = " closed molding"}, rows));
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].HapLimit, -1);
}

TEST_F(MaterialTypesTest, ANameThatIsPartOfAnEarlierOneIsNotListed) {
    WriteTable({{.MaterialType = "Production resin"},
                {.MaterialType = "resin"},
                {.MaterialType = "Resin"}, // case matters
                {.MaterialType = "Production resin"}});
    EXPECT_EQ(Types(true), (Names{"Production resin", "Resin"}));
}

TEST_F(MaterialTypesTest, TheDefaultsOverwriteTheirSlotsAndLeaveThoseBeyond) {
    std::vector<HapContentRecord> rows(30, HapContentRecord{.MaterialType = "Mine"});
    WriteTable(rows);
    ASSERT_TRUE(CreateDefaultHapContents(App));
    const std::string content = ContentOf(DataFile("hapcontents.talvor"));
    ASSERT_EQ(content.size(), 30U * 232);
    EXPECT_EQ(content.substr(std::size_t{28} * 232, 100), Padded("Tooling resin (Filled)", 100));
    EXPECT_EQ(content.substr(std::size_t{29} * 232, 100), Padded("Mine", 100));
}

TEST_F(MaterialTypesTest, DefaultsThatCannotBeWrittenLeaveTheTableAsItWas) {
    WriteTable(std::vector<HapContentRecord>(30, HapContentRecord{.MaterialType = "Mine"}));
    const std::string before = ContentOf(DataFile("hapcontents.talvor"));
    FailingFiles files;
    AppContext faulty{Prompts, Settings, Programs, Dialogs, Calendar, files, App.ProgramFolder};
    bool isWritten = false;
    for (int operation = 1; operation < 100; ++operation) {
        files.Start({operation, FaultKind::FillsUp});
        isWritten = static_cast<bool>(CreateDefaultHapContents(faulty));
        if (isWritten) break;
        EXPECT_EQ(ContentOf(DataFile("hapcontents.talvor")), before) << operation;
    }
    EXPECT_TRUE(isWritten);
}

TEST_F(MaterialTypesTest, AFolderInTheFilesPlaceIsShownOnceAndCountsAsEmpty) {
    std::filesystem::create_directory(DataFile("hapcontents.talvor"));
    EXPECT_EQ(Types(true), Names{});
    EXPECT_EQ(Prompts.Shown.size(), 1U);
}

} // namespace
} // namespace mact
