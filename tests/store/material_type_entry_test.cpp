#include "store/material_type_entry.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

std::string ErrorsOf(const MaterialTypeEntry& entry) {
    return CheckMaterialTypeEntry(entry).Text();
}

} // namespace

TEST(MaterialTypeEntry, CompleteEntryHasNoErrors) {
    EXPECT_EQ(ErrorsOf({"Production resin", "1", "28"}), "");
}

TEST(MaterialTypeEntry, SpacesAroundAreNotCounted) {
    EXPECT_EQ(ErrorsOf({" Production resin ", " 2 ", " 28.5 "}), "");
}

TEST(MaterialTypeEntry, NameOfSpacesIsReported) {
    EXPECT_EQ(ErrorsOf({"  ", "1", "28"}), "- You must provide Material Type Name.\r\n");
}

TEST(MaterialTypeEntry, TypeThatIsNoNumberIsReported) {
    EXPECT_EQ(ErrorsOf({"Resin", "one", "28"}), "- Material type can only be a numeric value (1 or 2).\r\n");
}

TEST(MaterialTypeEntry, AnyNumberPassesAsType) {
    EXPECT_EQ(ErrorsOf({"Resin", "3", "28"}), "");
}

TEST(MaterialTypeEntry, LimitThatIsNoNumberIsReported) {
    EXPECT_EQ(ErrorsOf({"Resin", "1", "28%"}), "- HAP Content limit should be a numeric value(%).\r\n");
}

TEST(MaterialTypeEntry, EmptyEntryIsReportedInTheOrderOfTheForm) {
    EXPECT_EQ(ErrorsOf({}), "- You must provide Material Type Name.\r\n"
                            "- Material type can only be a numeric value (1 or 2).\r\n"
                            "- HAP Content limit should be a numeric value(%).\r\n");
}
} // namespace mact
