#include "benchmarks/operations.h"

#include "materials/material_store.h"
#include "overview/shop_figures.h"
#include "reports/emission_average_report.h"
#include "reports/reports.h"
#include "store/data_folder.h"
#include "transfer/transfer.h"
#include "usage/usage_store.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

namespace mact {
namespace {

using Path = std::filesystem::path;
using Paths = std::vector<Path>;

constexpr const char* LastMonths = "12/2005|11/2005|10/2005|9/2005|8/2005|7/2005|6/2005|5/2005|4/2005|3/2005|"
                                   "2/2005|1/2005|";

void Expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::fprintf(stderr, "The benchmark does not do what it measures: %s\n", what);
    std::exit(1);
}

void FindAllMaterials(BenchShop& shop) {
    std::vector<MaterialRecord> found;
    FindMaterials(shop.App(), {}, found);
    Expect(found.size() == static_cast<std::size_t>(shop.Records()), "all materials are found");
}
void FindMaterialById(BenchShop& shop) {
    std::vector<MaterialRecord> found;
    FindMaterials(shop.App(), {.MaterialId = static_cast<std::int16_t>(shop.Records() / 2)}, found);
    Expect(found.size() == 1, "one material is found");
}
void FindUsageOfMonths(BenchShop& shop) {
    std::vector<UsageRecord> found;
    FindUsage(shop.App(), {.Periods = LastMonths}, found);
    Expect(found.size() > static_cast<std::size_t>(shop.Records()) / 3, "half of the usage is found");
}
void FindUsageOfMaterial(BenchShop& shop) {
    // As a user might type it, not as it is stored.
    static const std::string text = [&] {
        std::vector<MaterialRecord> found;
        FindMaterials(shop.App(), {.MaterialId = std::int16_t{150}}, found);
        return " " + found.front().CustomId;
    }();
    std::vector<UsageRecord> found;
    FindUsage(shop.App(), {.MaterialText = text}, found);
    Expect(found.size() == 1, "the usage of one material is found");
}

void FillMaterials(BenchShop& shop) {
    std::vector<MaterialRecord> found;
    ListLines lines;
    if (FindMaterials(shop.App(), {}, found)) FillMaterialList(lines, found, true);
    Expect(lines.size() == static_cast<std::size_t>(shop.Records()), "all materials are listed");
}
void FillUsage(BenchShop& shop) {
    std::vector<UsageRecord> found;
    ListLines lines;
    if (FindUsage(shop.App(), {}, found)) FillUsageList(shop.App(), lines, found);
    Expect(lines.size() == static_cast<std::size_t>(shop.Records()), "all usage is listed");
}

template <auto Generate> void Report(BenchShop& shop) {
    Expect(Generate(shop.App(), {.EndText = LastMonth}) == ReportPublished, "a report is published");
}
void ReportOfAllMaterials(BenchShop& shop) {
    Expect(GenerateCompliantMaterialsReport(shop.App(), {}) == ReportPublished, "a report is published");
}

template <auto Import> void ImportLines(BenchShop& shop, const Path& lines) {
    int processed = 0;
    int errors = 0;
    Import(shop.App(), lines, processed, errors, {});
    Expect(processed == shop.Records() && errors == 0, "all lines are imported");
}
void ImportMaterials(BenchShop& shop) {
    shop.App().CurrentCompanyId = 2; // has no materials yet
    ImportLines<ImportMaterialFile>(shop, shop.MaterialLines());
    shop.App().CurrentCompanyId = 1;
}
void ImportUsage(BenchShop& shop) {
    ImportLines<ImportUsageFile>(shop, shop.UsageLines());
}

/// The usage record in the middle of the file, with the values that it has.
void SaveUsageAgain(BenchShop& shop) {
    static std::map<int, UsageRecord> records; // by the size of the shop
    const auto [known, isNew] = records.try_emplace(shop.Records());
    if (isNew) {
        std::vector<UsageRecord> found;
        FindUsage(shop.App(), {.UsageId = static_cast<std::int16_t>(shop.Records() / 2)}, found);
        known->second = found.front();
    }
    Expect(!SaveUsage(shop.App(), known->second), "usage is saved");
}
/// What no save can avoid: as many bytes to a new file and to the old one, both flushed, and one removal.
void SaveFloor(BenchShop& shop) {
    const std::string slot(UsageLayout.SlotLength(), 'x');
    const Path fresh = shop.App().ProgramFolder / "floor.new";
    for (const Path& path : {fresh, FloorOutput(shop)}) {
        const auto file = shop.App().Files.Open(path, OpenMode::Update);
        Expect(file && (*file)->WriteAt(0, slot) && (*file)->Flush(), "the floor writes its files");
    }
    Expect(bool(shop.App().Files.Remove(fresh)), "the floor removes its file");
}

constexpr int SixtyMonthEnds = 60;
/// Up to the last month of the reports.
void OverviewOfSixtyMonthEnds(BenchShop& shop) {
    const Result<ShopRecords> records = ReadShopRecords(shop.App());
    Expect(bool(records), "the records are read");
    const ShopFigures figures(*records);
    const MonthNumber last = *MonthOfPeriod(LastMonth);
    for (MonthNumber monthEnd = last - SixtyMonthEnds + 1; monthEnd <= last; ++monthEnd)
        benchmark::DoNotOptimize(figures.At(monthEnd));
}
/// What it is compared with: usage is read and converted once for each report.
void EmissionAverageFetch(BenchShop& shop) {
    Expect(bool(FetchEmissionAverage(shop.App(), {.EndText = LastMonth})), "the report is calculated");
}

Path ExportTarget(BenchShop& shop) {
    return shop.App().ProgramFolder / "export.txt";
}
template <auto Export> void ExportLines(BenchShop& shop) {
    int processed = 0;
    std::optional<int> errors;
    Export(shop.App(), ExportTarget(shop), processed, errors);
    Expect(processed == shop.Records() && errors.value_or(0) == 0, "all records are exported");
}

Path Nothing(BenchShop&) {
    return {};
}
Path CompliantPage(BenchShop& shop) {
    return shop.App().ProgramFolder / CompliantMaterialsFile;
}
Path WeightedPage(BenchShop& shop) {
    return shop.App().ProgramFolder / WeightedAverageFile;
}
Path EmissionPage(BenchShop& shop) {
    return shop.App().ProgramFolder / EmissionAverageFile;
}
Path AdditionalUsagePage(BenchShop& shop) {
    return shop.App().ProgramFolder / AdditionalHapUsageFile;
}
Path AdditionalEmissionPage(BenchShop& shop) {
    return shop.App().ProgramFolder / AdditionalHapEmissionFile;
}
Path NewMaterials(BenchShop& shop) {
    return MaterialsFile({shop.App().Files, DataFolder(shop.App()), 2});
}
Path Usage(BenchShop& shop) {
    return UsageFile(shop.App());
}

Paths MaterialsAlone(BenchShop& shop) {
    return {MaterialsFile(shop.App())};
}
Paths UsageAlone(BenchShop& shop) {
    return {UsageFile(shop.App())};
}
Paths Both(BenchShop& shop) {
    return {MaterialsFile(shop.App()), UsageFile(shop.App())};
}
Paths MaterialSource(BenchShop& shop) {
    return {shop.MaterialLines()};
}
Paths UsageSource(BenchShop& shop) {
    return {shop.UsageLines(), MaterialsFile(shop.App())};
}

} // namespace

const std::vector<Operation>& AllOperations() {
    static const std::vector<Operation> operations = [] {
        std::vector<Operation> all = {
            {"FindMaterials, all",              3, FindAllMaterials,                            MaterialsAlone, Nothing      },
            {"FindMaterials, by number",        3, FindMaterialById,                            MaterialsAlone, Nothing      },
            {"FindUsage, twelve months",        3, FindUsageOfMonths,                           UsageAlone,     Nothing      },
            {"FindUsage, by material text",     3, FindUsageOfMaterial,                         Both,           Nothing      },
            {"list of materials",               3, FillMaterials,                               MaterialsAlone, Nothing      },
            {"list of usage",                   3, FillUsage,                                   Both,           Nothing      },
            {"report, compliant, all",          3, ReportOfAllMaterials,                        MaterialsAlone, CompliantPage},
            {"report, compliant, used",         3, Report<GenerateCompliantMaterialsReport>,    Both,           CompliantPage},
            {"report, weighted average",        3, Report<GenerateWeightedAverageReport>,       Both,           WeightedPage },
            {"report, emission average",        3, Report<GenerateEmissionAverageReport>,       Both,           EmissionPage },
            {"report, additional HAP usage",    3, Report<GenerateAdditionalHapUsageReport>,    Both,
             AdditionalUsagePage                                                                                             },
            {"report, additional HAP emission", 3, Report<GenerateAdditionalHapEmissionReport>, Both,
             AdditionalEmissionPage                                                                                          },
            {"export of materials",             3, ExportLines<ExportMaterialFile>,             MaterialsAlone, ExportTarget },
            {"export of usage",                 3, ExportLines<ExportUsageFile>,                Both,           ExportTarget },
        };
        all.push_back({.Name = "save of one usage record",
                       .MostTimesFloor = 3,
                       .Run = SaveUsageAgain,
                       .Inputs = UsageAlone,
                       .Output = Nothing,
                       .Floor = SaveFloor});
        all.push_back({.Name = "import of materials",
                       .MostTimesFloor = 3,
                       .Run = ImportMaterials,
                       .Inputs = MaterialSource,
                       .Output = NewMaterials,
                       .IsOutputNew = true});
        all.push_back({.Name = "import of usage",
                       .MostTimesFloor = 4,
                       .Run = ImportUsage,
                       .Inputs = UsageSource,
                       .Output = Usage,
                       .IsOutputNew = true});
        all.push_back({.Name = "overview, 60 month ends",
                       .MostTimesFloor = 3,
                       .Run = OverviewOfSixtyMonthEnds,
                       .Inputs = Both,
                       .Output = Nothing,
                       .Floor = EmissionAverageFetch});
        return all;
    }();
    return operations;
}

Path FloorOutput(BenchShop& shop) {
    return shop.App().ProgramFolder / "floor.out";
}

void PrepareRun(const Operation& operation, BenchShop& shop) {
    std::error_code ignored;
    if (operation.IsOutputNew) std::filesystem::remove(operation.Output(shop), ignored);
}

namespace {

constexpr std::size_t ChunkLength = std::size_t{1} << 18;

/// The sum of the file's bytes, eight at a time, so that reading them cannot be optimised away.
std::uint64_t SumOf(BenchShop& shop, const Path& path, std::string& chunk) {
    const auto file = shop.App().Files.Open(path, OpenMode::Read);
    Expect(bool(file), "the floor reads its files");
    std::uint64_t sum = 0;
    std::uint64_t offset = 0;
    for (;;) {
        const Result<std::size_t> count = (*file)->ReadAt(offset, chunk);
        Expect(bool(count), "the floor reads its files");
        for (std::size_t at = 0; at + sizeof sum <= *count; at += sizeof sum) {
            std::uint64_t word = 0;
            std::memcpy(&word, chunk.data() + at, sizeof word);
            sum += word;
        }
        offset += *count;
        if (*count < chunk.size()) return sum;
    }
}

} // namespace

void RunFloor(const Operation& operation, BenchShop& shop, std::uint64_t outputBytes) {
    if (operation.Floor) {
        operation.Floor(shop);
        return;
    }
    std::string chunk(ChunkLength, 'x');
    std::uint64_t sum = 0;
    for (const Path& input : operation.Inputs(shop))
        sum += SumOf(shop, input, chunk);
    benchmark::DoNotOptimize(sum);
    if (outputBytes == 0) return;

    const auto file = shop.App().Files.Open(FloorOutput(shop), OpenMode::Replace);
    Expect(bool(file), "the floor writes its file");
    for (std::uint64_t offset = 0; offset < outputBytes; offset += chunk.size()) {
        const std::size_t length =
            static_cast<std::size_t>(std::min<std::uint64_t>(chunk.size(), outputBytes - offset));
        Expect(bool((*file)->WriteAt(offset, std::string_view(chunk).substr(0, length))),
               "the floor writes its file");
    }
    Expect(bool((*file)->Flush()), "the floor writes its file");
}
} // namespace mact
