#include "benchmarks/operations.h"

#include "store/material_types.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>

using namespace mact;

// mact_bench FOLDER [Google Benchmark's options]
//
// Runs every operation and its floor, the I/O that no implementation can avoid, on three shops, which it
// makes in FOLDER, and prints one table.
//
// mact_bench FOLDER --print-types
//
// Prints the material-type table of those shops.

namespace {

struct Size {
    const char* Name;
    int Records;
};
constexpr Size Sizes[] = {
    {"all",       MostRecords      },
    {"tenth",     MostRecords / 10 },
    {"hundredth", MostRecords / 100},
};

std::string RunName(const Operation& operation, const Size& size) {
    return std::string(operation.Name) + "/" + size.Name;
}
std::string FloorName(const Operation& operation, const Size& size) {
    return RunName(operation, size) + "/floor";
}

/// Times only `run`, not `prepare`.
template <class Prepare, class Run>
void Measure(benchmark::State& state, const Prepare& prepare, const Run& run) {
    for ([[maybe_unused]] const auto iteration : state) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        run();
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

void Register(const Operation& operation, const Size& size, BenchShop& shop) {
    benchmark::RegisterBenchmark(RunName(operation, size).c_str(),
                                 [&](benchmark::State& state) {
                                     Measure(
                                         state, [&] { PrepareRun(operation, shop); },
                                         [&] { operation.Run(shop); });
                                     shop.CheckNothingFailed();
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);

    benchmark::RegisterBenchmark(FloorName(operation, size).c_str(),
                                 [&](benchmark::State& state) {
                                     // How much the operation writes is known only once it has run.
                                     const std::filesystem::path output = operation.Output(shop);
                                     if (!output.empty() && !std::filesystem::exists(output))
                                         operation.Run(shop);
                                     const std::uint64_t bytes =
                                         output.empty() ? 0 : std::filesystem::file_size(output);
                                     const auto prepare = [&] {
                                         if (operation.IsOutputNew)
                                             std::filesystem::remove(FloorOutput(shop));
                                     };
                                     Measure(state, prepare, [&] { RunFloor(operation, shop, bytes); });
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// Keeps the median of each benchmark's repetitions, in ms.
class MedianReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
    /// 0 for a benchmark that was filtered out.
    double MedianOf(const std::string& name) const {
        const auto found = m_medians.find(name);
        return found == m_medians.end() ? 0 : found->second;
    }

private:
    std::map<std::string, double> m_medians;
};

const char* Judgement(double value, double most) {
    return value <= most ? "" : "  <-- above its target";
}

/// The longest that the operation may take at the limit, in ms: nobody notices 5.
double MostTime(const Operation& operation, double floor) {
    return std::max(operation.MostTimesFloor * floor, operation.Floor ? 0 : 5.0);
}

/// How many times longer all the records may take than a tenth of them. Where the floor itself grows faster
/// than the records, because a tenth of them fits into the processor's cache, the operation may do so too.
double MostGrowth(double growthOfFloor) {
    return std::max(1.3 * growthOfFloor, 12.0);
}

void PrintRatios(const MedianReporter& measured) {
    std::printf("%-32s %-9s %10s %10s %7s %11s\n", "operation", "size", "time, ms", "floor, ms", "ratio",
                "target, ms");
    for (const Operation& operation : AllOperations()) {
        for (const Size& size : Sizes) {
            const double time = measured.MedianOf(RunName(operation, size));
            const double floor = measured.MedianOf(FloorName(operation, size));
            if (time == 0 || floor == 0) continue;
            std::printf("%-32s %-9s %10.3f %10.3f %7.2f", operation.Name, size.Name, time, floor,
                        time / floor);
            const double most = MostTime(operation, floor);
            if (size.Records == MostRecords) std::printf(" %11.1f%s", most, Judgement(time, most));
            std::printf("\n");
        }
    }
}

void PrintGrowth(const MedianReporter& measured) {
    std::printf("\n%-32s %20s %20s %7s\n", "growth of the time", "hundredth to tenth", "tenth to all",
                "target");
    for (const Operation& operation : AllOperations()) {
        const double all = measured.MedianOf(RunName(operation, Sizes[0]));
        const double tenth = measured.MedianOf(RunName(operation, Sizes[1]));
        const double hundredth = measured.MedianOf(RunName(operation, Sizes[2]));
        if (all == 0 || tenth == 0 || hundredth == 0) continue;
        const double most = MostGrowth(measured.MedianOf(FloorName(operation, Sizes[0])) /
                                       measured.MedianOf(FloorName(operation, Sizes[1])));
        std::printf("%-32s %20.1f %20.1f %7.1f%s\n", operation.Name, tenth / hundredth, all / tenth, most,
                    Judgement(all / tenth, most));
    }
}

/// The material-type table, as sqlite3 imports it.
void PrintTypes(AppContext& app) {
    const Result<std::vector<HapContentRecord>> rows = ReadHapContents(app);
    if (!rows) std::exit(1);
    for (const HapContentRecord& row : *rows)
        std::printf("%s|%g|%s|%g|%g|%g\n", row.MaterialType.c_str(), row.HapLimit,
                    row.ApplicationMethod.c_str(), row.EfCoefficient, row.EfExponent, row.EmissionLimit);
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::fprintf(stderr, "mact_bench FOLDER [Google Benchmark's options]\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::vector<std::unique_ptr<BenchShop>> shops;
    for (const Size& size : Sizes) {
        shops.push_back(std::make_unique<BenchShop>(folder / size.Name, size.Records));
        for (const Operation& operation : AllOperations())
            Register(operation, size, *shops.back());
    }

    if (argc == 3 && argv[2] == std::string("--print-types")) {
        PrintTypes(shops.front()->App());
        return 0;
    }

    // Interleaved, so that whatever else the machine does slows an operation and its floor alike.
    std::string program = argv[0];
    std::string options[] = {"--benchmark_repetitions=9", "--benchmark_min_time=0.1",
                             "--benchmark_enable_random_interleaving=true"};
    std::vector<char*> arguments{program.data()};
    for (std::string& option : options)
        arguments.push_back(option.data());
    arguments.insert(arguments.end(), argv + 2, argv + argc);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    MedianReporter measured;
    benchmark::RunSpecifiedBenchmarks(&measured);
    PrintRatios(measured);
    PrintGrowth(measured);
    return 0;
}
