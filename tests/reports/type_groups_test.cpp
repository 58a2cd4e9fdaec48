#include "reports/type_groups.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

HapContentRecord Row(const char* type, const char* method, double limit = 0) {
    return {.MaterialType = type, .HapLimit = limit, .ApplicationMethod = method};
}

/// Each group as "name: method, method".
std::vector<std::string> Shown(const std::vector<TypeGroup>& groups) {
    std::vector<std::string> shown;
    for (const TypeGroup& group : groups) {
        std::string line = group.Name + ':';
        for (const HapContentRecord& method : group.Methods)
            line += ' ' + method.ApplicationMethod;
        shown.push_back(line);
    }
    return shown;
}
using Lines = std::vector<std::string>;

TEST(GroupByTypeTest, SortsTheTypesAndKeepsTheMethodsInFileOrder) {
    EXPECT_EQ(Shown(GroupByType({Row("Resin", "Spray"), Row("Gel", "All"), Row("Resin", "Brush")})),
              (Lines{"Gel: All", "Resin: Spray Brush"}));
}

TEST(GroupByTypeTest, SortsWithoutRegardToCase) {
    EXPECT_EQ(Shown(GroupByType({Row("beta", "1"), Row("Alpha", "2"), Row("\xE9lan", "3"),
                                 Row("\xC9"
                                     "a",
                                     "4")})),
              (Lines{"Alpha: 2", "beta: 1",
                     "\xC9"
                     "a: 4",
                     "\xE9lan: 3"}));
}

TEST(GroupByTypeTest, NamesAreTrimmed) {
    EXPECT_EQ(Shown(GroupByType({Row(" Resin ", "Spray"), Row("Resin", "Brush")})),
              (Lines{"Resin: Spray Brush"}));
}

TEST(GroupByTypeTest, NamesThatDifferInCaseAreTwoGroupsInFileOrderWithTheMethodsOfBoth) {
    EXPECT_EQ(Shown(GroupByType({Row("resin", "Spray"), Row("Resin", "Brush")})),
              (Lines{"resin: Spray Brush", "Resin: Spray Brush"}));
}

TEST(GroupByTypeTest, NameWithinAnEarlierOneIsNotListed) {
    EXPECT_EQ(Shown(GroupByType({Row("Production resin", "Spray"), Row("resin", "Brush")})),
              (Lines{"Production resin: Spray"}));
}

TEST(GroupByTypeTest, MethodThatIsListedTwiceStaysTwice) {
    EXPECT_EQ(Shown(GroupByType({Row("Gel", "All"), Row("Gel", "All")})), (Lines{"Gel: All All"}));
}

TEST(GroupByTypeTest, TypeOfClosedMoldingAloneIsAGroupWithoutMethods) {
    EXPECT_EQ(Shown(GroupByType({Row("Resin", "Closed Molding")})), (Lines{"Resin:"}));
}

TEST(IsClosedMoldingTest, BlanksAroundAreIgnoredAndCaseIsNot) {
    EXPECT_TRUE(IsClosedMolding("Closed Molding"));
    EXPECT_TRUE(IsClosedMolding(" Closed Molding "));
    EXPECT_FALSE(IsClosedMolding("Closed molding"));
    EXPECT_FALSE(IsClosedMolding("Closed Moldings"));
}

std::string IdsOf(const MaterialsByMethod& materials, const HapContentRecord& row) {
    std::string ids;
    for (const AveragedMaterial& material : materials.Of(row))
        ids += material.CustomId + ' ';
    return ids;
}

TEST(MaterialsByMethodTest, FindsTypeAndMethodTrimmedAndWithoutRegardToCaseInFileOrder) {
    MaterialsByMethod materials;
    materials.Add("Resin", "Spray", {.CustomId = "1"});
    materials.Add("Gel", "Spray", {.CustomId = "2"});
    materials.Add(" RESIN", "spray ", {.CustomId = "3"});
    EXPECT_EQ(IdsOf(materials, Row("resin", " Spray")), "1 3 ");
    EXPECT_EQ(IdsOf(materials, Row("Gel", "Spray")), "2 ");
    EXPECT_EQ(IdsOf(materials, Row("Gel", "All")), "");
    EXPECT_EQ(IdsOf(materials, Row("Putty", "Spray")), "");
}

TEST(MaterialsByMethodTest, TypeAndMethodAreNotRunTogether) {
    MaterialsByMethod materials;
    materials.Add("AB", "C", {.CustomId = "1"});
    EXPECT_EQ(IdsOf(materials, Row("A", "BC")), "");
}

} // namespace
} // namespace mact
