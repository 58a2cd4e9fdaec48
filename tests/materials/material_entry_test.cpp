#include "materials/material_entry.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TypedMaterial Complete() {
    return {.CustomId = "GC-100",
            .Description = "White gel coat",
            .MaterialType = "Production resin",
            .ApplicationMethod = "Spray",
            .Density = "9.2",
            .HapContent = "35"};
}

/// One fault in an otherwise complete form.
struct FaultCase {
    const char* Name;
    void (*Spoil)(TypedMaterial& material);
    MaterialField Field;
    const char* Errors;
};
void PrintTo(const FaultCase& fault, std::ostream* out) {
    *out << fault.Name;
}

const FaultCase FaultCases[] = {
    {"EmptyCustomId",             [](TypedMaterial& material) { material.CustomId.clear(); },          MaterialField::CustomId,
     "- You must provide Material ID.\r\n"                                                                                                                                                     },
    {"BlankCustomId",             [](TypedMaterial& material) { material.CustomId = "  "; },           MaterialField::CustomId,
     "- You must provide Material ID.\r\n"                                                                                                                                                     },
    {"BlankDescription",          [](TypedMaterial& material) { material.Description = " "; },
     MaterialField::Description,                                                                                                      "- You must provide Description for material.\r\n"       },
    {"NoMaterialType",            [](TypedMaterial& material) { material.MaterialType.reset(); },
     MaterialField::MaterialType,                                                                                                     "- You must select material type.\r\n"                   },
    {"NoApplicationMethod",       [](TypedMaterial& material) { material.ApplicationMethod.reset(); },
     MaterialField::ApplicationMethod,                                                                                                "- You must select application type.\r\n"                },
    {"EmptyDensity",              [](TypedMaterial& material) { material.Density.clear(); },           MaterialField::Density,
     "- Density should be a numeric value.\r\n"                                                                                                                                                },
    {"DensityWithComma",          [](TypedMaterial& material) { material.Density = "9,2"; },           MaterialField::Density,
     "- Density should be a numeric value.\r\n"                                                                                                                                                },
    {"HapContentWithPercentSign", [](TypedMaterial& material) { material.HapContent = "35%"; },
     MaterialField::HapContent,                                                                                                       "- HAP Content limit should be a numeric value(%).\r\n"  },
    {"EmptyEmissionFactor",       [](TypedMaterial& material) { material.HasEmissionFactor = true; },
     MaterialField::EmissionFactor,                                                                                                   "- Emission factor should be a proper numeric value.\r\n"},
    {"EmissionFactorOfLetters",
     [](TypedMaterial& material) {
         material.HasEmissionFactor = true;
         material.EmissionFactor = "some";
     },                                                                                                MaterialField::EmissionFactor, "- Emission factor should be a proper numeric value.\r\n"},
    {"EmptyFiller",
     [](TypedMaterial& material) {
         material.CanHaveFiller = true;
         material.Filler.clear();
     },                                                                                                MaterialField::Filler,         "- Your must specify filler for this resin.\r\n"         },
    {"FillerOfLetters",
     [](TypedMaterial& material) {
         material.CanHaveFiller = true;
         material.Filler = "much";
     },                                                                                                MaterialField::Filler,         "- Your must specify filler for this resin.\r\n"         },
};

class MaterialEntryFaultTest : public testing::TestWithParam<FaultCase> {};

TEST_P(MaterialEntryFaultTest, IsReportedAlone) {
    TypedMaterial material = Complete();
    GetParam().Spoil(material);
    EXPECT_EQ(CheckMaterialEntry(material).Text(), GetParam().Errors);
    EXPECT_EQ(FirstFaultyField(material), GetParam().Field);
}

INSTANTIATE_TEST_SUITE_P(Faults, MaterialEntryFaultTest, testing::ValuesIn(FaultCases),
                         [](const auto& test) { return std::string(test.param.Name); });

TEST(MaterialEntryTest, ACompleteEntryHasNoErrors) {
    EXPECT_TRUE(CheckMaterialEntry(Complete()).IsEmpty());
    EXPECT_EQ(FirstFaultyField(Complete()), std::nullopt);
}

TEST(MaterialEntryTest, AllFaultsAreReportedInTheOrderOfTheForm) {
    const TypedMaterial material{.HasEmissionFactor = true, .CanHaveFiller = true, .Filler = ""};
    EXPECT_EQ(CheckMaterialEntry(material).Text(), "- You must provide Material ID.\r\n"
                                                   "- You must provide Description for material.\r\n"
                                                   "- You must select material type.\r\n"
                                                   "- You must select application type.\r\n"
                                                   "- Density should be a numeric value.\r\n"
                                                   "- HAP Content limit should be a numeric value(%).\r\n"
                                                   "- Emission factor should be a proper numeric value.\r\n"
                                                   "- Your must specify filler for this resin.\r\n");
    EXPECT_EQ(FirstFaultyField(material), MaterialField::CustomId);
}

TEST(MaterialEntryTest, NoRangeIsChecked) {
    TypedMaterial material = Complete();
    material.Density = "-1";
    material.HapContent = "150";
    EXPECT_TRUE(CheckMaterialEntry(material).IsEmpty());
}

TEST(MaterialEntryTest, AnEmissionFactorThatIsNotWantedIsNotChecked) {
    TypedMaterial material = Complete();
    material.EmissionFactor = "some";
    EXPECT_TRUE(CheckMaterialEntry(material).IsEmpty());
}

TEST(MaterialEntryTest, AFillerThatCannotBeTypedIsNotChecked) {
    TypedMaterial material = Complete();
    material.Filler = "";
    EXPECT_TRUE(CheckMaterialEntry(material).IsEmpty());
}

TEST(MaterialEntryTest, TextsAreSavedTrimmedAndNumbersAsNumbers) {
    TypedMaterial material = Complete();
    material.CustomId = " GC-100  ";
    material.Description = "  White gel coat ";
    material.Density = " 9.25 ";
    material.HapContent = "1e1";
    material.HasEmissionFactor = true;
    material.EmissionFactor = " 12.5 ";
    material.Comments = " Stack test ";
    material.CanHaveFiller = true;
    material.Filler = " 20 ";
    const MaterialEntry entry = ToMaterialEntry(material);
    EXPECT_EQ(entry.CustomId, "GC-100");
    EXPECT_EQ(entry.Description, "White gel coat");
    EXPECT_EQ(entry.MaterialType, "Production resin");
    EXPECT_EQ(entry.ApplicationMethod, "Spray");
    EXPECT_EQ(entry.Density, 9.25);
    EXPECT_EQ(entry.HapContent, 10);
    EXPECT_EQ(entry.EmissionFactor, 12.5);
    EXPECT_EQ(entry.Comments, "Stack test");
    EXPECT_EQ(entry.Filler, 20);
}

TEST(MaterialEntryTest, AnEmissionFactorThatIsNoNumberIsSavedAsNone) {
    TypedMaterial material = Complete();
    EXPECT_EQ(ToMaterialEntry(material).EmissionFactor, 0);
    material.EmissionFactor = "some";
    EXPECT_EQ(ToMaterialEntry(material).EmissionFactor, 0);
}

TEST(MaterialEntryTest, SixValuesAreJoinedByBarsInTheirOrder) {
    const SixPollutants pollutants{
        {{"1", "10"}, {"2.5", "20"}, {"3", "30"}, {"4", "40"}, {"5", "50"}, {"6", "60.5"}}
    };
    EXPECT_EQ(JoinedContents(pollutants), "1|2.5|3|4|5|6");
    EXPECT_EQ(JoinedFactors(pollutants), "10|20|30|40|50|60.5");
    TypedMaterial material = Complete();
    material.Pollutants = pollutants;
    EXPECT_EQ(ToMaterialEntry(material).Contents, "1|2.5|3|4|5|6");
    EXPECT_EQ(ToMaterialEntry(material).Factors, "10|20|30|40|50|60.5");
}

TEST(MaterialEntryTest, ValuesThatWereNeverTypedAreSixZeros) {
    EXPECT_EQ(ToMaterialEntry(Complete()).Contents, "0|0|0|0|0|0");
    EXPECT_EQ(ToMaterialEntry(Complete()).Factors, "0|0|0|0|0|0");
}

TEST(PollutantValuesTest, NumbersPass) {
    EXPECT_TRUE(CheckPollutants({
                                    {{"1", "-2"}, {" 3 ", "1e3"}}
    })
                    .IsEmpty());
}

TEST(PollutantValuesTest, FaultsOfManyRowsAreOneMessage) {
    EXPECT_EQ(CheckPollutants({
                                  {{"a", "1"}, {"1", "b"}, {"", ""}}
    })
                  .Text(),
              "- All the values for contents and emission factors should be valid numeric values.\r\n");
}

TEST(PollutantValuesTest, AnEmptyContentIsAFault) {
    EXPECT_FALSE(CheckPollutants({{{"", "0"}}}).IsEmpty());
}

TEST(PollutantValuesTest, AnEmissionFactorAloneIsAFault) {
    EXPECT_FALSE(CheckPollutants({{{"0", "x"}}}).IsEmpty());
}

TEST(PollutantValuesTest, ARowThatIsNotUsedIsNotChecked) {
    EXPECT_TRUE(CheckPollutants({{{"a", "b", false}}}).IsEmpty());
}

TEST(FillerTest, TheTwoNamesCountToTheLetter) {
    EXPECT_TRUE(TakesFiller("Production resin (Filled)"));
    EXPECT_TRUE(TakesFiller("Tooling resin (Filled)"));
    EXPECT_FALSE(TakesFiller("Production resin"));
    EXPECT_FALSE(TakesFiller("PRODUCTION RESIN (FILLED)"));
    EXPECT_FALSE(TakesFiller("Tooling gel coat (Filled)"));
    EXPECT_FALSE(TakesFiller(""));
}

} // namespace
} // namespace mact
