#include "materials/material_hints.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

const std::vector<HapContentRecord> Types = {
    {.MaterialType = "Production resin",
     .HapLimit = 28,
     .ApplicationMethod = "Spray",
     .EfCoefficient = 0.014,
     .EfExponent = 2.425                                                                                                                    },
    {.MaterialType = "Production resin",
     .HapLimit = 35,
     .ApplicationMethod = "Non-Spray",
     .EfCoefficient = 0.014,
     .EfExponent = 2.275                                                                                                                    },
    {.MaterialType = "Production resin", .HapLimit = -1, .ApplicationMethod = "Closed Molding"},
    {.MaterialType = "Production resin (Filled)",
     .HapLimit = 28,
     .ApplicationMethod = "Spray",
     .EfCoefficient = 0.014,
     .EfExponent = 2.425},
};

/// A sprayed production resin without doubts.
TypedMaterial Resin(const char* content) {
    return {.MaterialType = "Production resin",
            .ApplicationMethod = "Spray",
            .Density = "9.2",
            .HapContent = content};
}

std::string Doubts(const TypedMaterial& material) {
    return HintsOn(material, Types).Doubts.Text;
}

TEST(MaterialHintsTest, SayLimitAndPointValueOfTypeMethodAndContent) {
    const MaterialHints hints = HintsOn(Resin("28"), Types);
    EXPECT_EQ(hints.Figures.Text,
              "Limit: 28 wt%. Point value: 45.24 kg/Mg."); // 0.014 * 28^2.425 = 45.2362...
    EXPECT_FALSE(hints.Figures.IsDoubtful);
    EXPECT_EQ(hints.Doubts.Text, "");
    EXPECT_FALSE(hints.Doubts.IsDoubtful);
    TypedMaterial other = Resin("35");
    other.ApplicationMethod = "Non-Spray";
    EXPECT_EQ(HintsOn(other, Types).Figures.Text, "Limit: 35 wt%. Point value: 45.59 kg/Mg.");
}

TEST(MaterialHintsTest, SayTheLimitWithoutAContent) {
    EXPECT_EQ(HintsOn(Resin(""), Types).Figures.Text, "Limit: 28 wt%.");
    EXPECT_EQ(HintsOn(Resin("3o"), Types).Figures.Text, "Limit: 28 wt%.");
}

TEST(MaterialHintsTest, ClosedMoldingHasNoLimit) {
    TypedMaterial material = Resin("60");
    material.ApplicationMethod = "Closed Molding";
    const MaterialHints hints = HintsOn(material, Types);
    EXPECT_EQ(hints.Figures.Text, "No HAP limit applies.");
    EXPECT_EQ(hints.Doubts.Text, "");
}

TEST(MaterialHintsTest, SayNothingOfAnUnknownTypeOrMethod) {
    TypedMaterial material = Resin("28");
    material.ApplicationMethod.reset();
    EXPECT_EQ(HintsOn(material, Types).Figures.Text, "");
    material.ApplicationMethod = "Brush";
    EXPECT_EQ(HintsOn(material, Types).Figures.Text, "");
    EXPECT_EQ(HintsOn(Resin("28"), {}).Figures.Text, "");
}

TEST(MaterialHintsTest, SayWhatBecomesOfAFillerAndAnEmissionFactor) {
    TypedMaterial material = Resin("28");
    material.MaterialType = "Production resin (Filled)";
    material.CanHaveFiller = true;
    material.Filler = "40";
    EXPECT_EQ(HintsOn(material, Types).Figures.Text,
              "Limit: 28 wt%. Point value: 45.24 kg/Mg. The filler is stored, but no report applies it.");
    material.Filler = "0";
    EXPECT_EQ(HintsOn(material, Types).Figures.Text, "Limit: 28 wt%. Point value: 45.24 kg/Mg.");
    material.HasEmissionFactor = true;
    EXPECT_EQ(
        HintsOn(material, Types).Figures.Text,
        "Limit: 28 wt%. Point value: 45.24 kg/Mg. The emission factor is stored, but no report applies it.");
}

TEST(MaterialHintsTest, DoubtADensityThatNoResinHas) {
    TypedMaterial material = Resin("28");
    material.Density = "0.92";
    const Hint doubts = HintsOn(material, Types).Doubts;
    EXPECT_EQ(doubts.Text, "A density of 0.92 lb/gal is unusual: resins and gel coats have 7 to 16.");
    EXPECT_TRUE(doubts.IsDoubtful);
    for (const char* usual : {"7", "16", "", "x"}) {
        material.Density = usual;
        EXPECT_EQ(Doubts(material), "") << usual;
    }
    material.Density = "16.1";
    EXPECT_EQ(Doubts(material), "A density of 16.1 lb/gal is unusual: resins and gel coats have 7 to 16.");
}

TEST(MaterialHintsTest, DoubtAContentOverTheLimit) {
    EXPECT_EQ(Doubts(Resin("28.5")), "A HAP content of 28.5 wt% is over the limit of 28 wt%.");
    EXPECT_EQ(Doubts(Resin("28")), "");
}

TEST(MaterialHintsTest, DoubtAFractionForAPercentage) {
    EXPECT_EQ(Doubts(Resin("0.28")), "The HAP content is a percentage: 0.28 means 0.28 %.");
    EXPECT_EQ(Doubts(Resin("1")), "");
    EXPECT_EQ(Doubts(Resin("0")), "");
}

TEST(MaterialHintsTest, DoubtAContentThatIsNoPercentage) {
    EXPECT_EQ(Doubts(Resin("130")), "A HAP content of 130 wt% cannot be: it is 0 to 100.");
    EXPECT_EQ(Doubts(Resin("-4")), "A HAP content of -4 wt% cannot be: it is 0 to 100.");
    EXPECT_EQ(HintsOn(Resin("-4"), Types).Figures.Text, "Limit: 28 wt%."); // the power has no result
}

TEST(MaterialHintsTest, SeveralDoubtsAreAllSaid) {
    TypedMaterial material = Resin("0.5");
    material.Density = "92";
    EXPECT_EQ(Doubts(material), "A density of 92 lb/gal is unusual: resins and gel coats have 7 to 16. "
                                "The HAP content is a percentage: 0.5 means 0.5 %.");
}

} // namespace
} // namespace mact
