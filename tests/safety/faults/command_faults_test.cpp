#include "tests/safety/faults/fault_sweep.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

struct SweptCommand {
    const char* Name;
    std::vector<std::string> Arguments; ///< "@" stands for the shop's folder
    bool IsImport = false;
};
void PrintTo(const SweptCommand& command, std::ostream* out) {
    *out << command.Name;
}

const std::vector<SweptCommand>& Commands() {
    static const std::vector<SweptCommand> commands = {
        {"ShowCompanies",                     {"companies"}                                              },
        {"AddCompany",                        {"add-company", "Gamma", "Dock 3"}                         },
        {"SelectCompany",                     {"select-company", "2"}                                    },
        {"ShowNames",                         {"names"}                                                  },
        {"ShowNamesOfANewCompany",            {"--company", "2", "names"}                                },
        {"SetNames",                          {"names", "a", "b", "c", "d", "e", "f"}                    },
        {"ImportMaterials",                   {"import-materials", "@/in/materials.txt"},                  true},
        {"ImportMaterialsOfANewCompany",
         {"--company", "2", "import-materials", "@/in/first materials.txt"},
         true},
        {"ImportUsage",                                {"import-usage", "@/in/usage.txt"},                                                                                           true},
        {"ExportMaterials",{"export-materials", "@/out/new.txt"}},
        {"ExportMaterialsAgain",                   {"export-materials", "@/out/old.txt"}                                                                       },
        {"ExportUsage",              {"export-usage", "@/out/new.txt"}                 },
        {"ReportOfAllMaterials",                       {"report", "compliant"}                                   },
        {"ReportCompliant",              {"report", "compliant", "--ending", "12/2005"}                           },
        {"ReportWeightedAverage",                   {"report", "weighted-average", "--ending", "12/2005"}                  },
        {"ReportEmissionAverage",             {"report", "emission-average", "--ending", "12/2005"}},
        {"ReportAdditionalUsage",             {"report", "additional-usage", "--ending", "12/2005"}      },
        {"ReportAdditionalEmission",             {"report", "additional-emission", "--ending", "12/2005"}      },
        {"Check",          {"check"}},
        {"Backup",                             {"backup"}                                                                     },
    };
    return commands;
}

class CommandFaults : public testing::TestWithParam<SweptCommand> {
protected:
    FaultShop Shop;
};

TEST_P(CommandFaults, LoseNothingAndAreToldOnce) {
    SweepFaults(Shop, {.Start = Shop.CommandLine(GetParam().Arguments),
                       .PrintsWhatIsThere = std::string_view(GetParam().Name).starts_with("Show"),
                       .IsImport = GetParam().IsImport,
                       .IsBackup = GetParam().Arguments.front() == "backup"});
}

INSTANTIATE_TEST_SUITE_P(Commands, CommandFaults, testing::ValuesIn(Commands()),
                         [](const auto& given) { return std::string(given.param.Name); });

TEST(RestoreFaults, LeaveTheOldDataOrThatOfTheSetAndAreTold) {
    FaultShop shop;
    PrepareRestore(shop);
    SweepFaults(shop, {.Start = shop.CommandLine({"restore", "5"}), .IsRestore = true});
}

TEST(FirstStartFaults, LoseNothingAndAreToldOnce) {
    FaultShop shop;
    FileTree files = shop.Files();
    std::erase_if(files, [](const auto& file) { return file.first.starts_with("program/data/"); });
    shop.Restore(files);
    SweepFaults(shop, {.Start = shop.CommandLine({"companies"}), .PrintsWhatIsThere = true});
}

/// Of the shop's three materials the second and third are deleted, and of its two usage records the first.
class UndeleteFaults : public testing::Test {
protected:
    FaultShop Shop;

    UndeleteFaults() {
        FileTree files = Shop.Files();
        std::string& materials = files.at("program/data/1_materials.talvor");
        for (const std::size_t slot : {1U, 2U})
            materials.replace(slot * 1444 + 681, 2, 2, '\0');
        files.at("program/data/1_usage.talvor").replace(21, 2, 2, '\0');
        Shop.Restore(files);
    }
};

TEST_F(UndeleteFaults, OfMaterialsLoseNothingAndAreToldOnce) {
    SweepFaults(Shop, {.Start = Shop.CommandLine({"undelete", "materials", "2", "3"})});
}
TEST_F(UndeleteFaults, OfUsageLoseNothingAndAreToldOnce) {
    SweepFaults(Shop, {.Start = Shop.CommandLine({"undelete", "usage", "1"})});
}
TEST_F(UndeleteFaults, OfTheListAreToldOnce) {
    SweepFaults(Shop, {.Start = Shop.CommandLine({"deleted"}), .PrintsWhatIsThere = true});
}

} // namespace
} // namespace mact
