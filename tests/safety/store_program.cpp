#include "base/messages.h"
#include "base/text.h"
#include "materials/material_changes.h"
#include "platform/os_files.h"
#include "store/companies.h"
#include "tests/support/scripted_services.h"
#include "usage/usage_changes.h"
#include "usage/usage_store.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

/// store_program FOLDER COMMAND ARGUMENT... does one store operation for company 1 of the program folder, as
/// a window does it. The status is 0 if it was done and 1 if not; messages go to the error output.
///
/// A material's state is told by its description and its HAP content, a usage record's by its quantity.

using namespace mact;

namespace {

using Arguments = std::vector<std::string>;

std::int16_t Number(const std::string& text) {
    return static_cast<std::int16_t>(std::stoi(text));
}

MaterialEntry Material(const std::string& name, int state) {
    return {.CustomId = name,
            .Description = "state " + std::to_string(state),
            .MaterialType = "Production resin",
            .ApplicationMethod = "Spray",
            .Density = 9.5,
            .HapContent = static_cast<double>(state % 100),
            .Comments = std::string(255, static_cast<char>('a' + state % 26)),
            .Contents = "1|2|3|4|5|6",
            .Factors = "7|8|9|10|11|12"};
}

bool SaveMaterialNamed(AppContext& app, std::int16_t id, const std::string& name, int state) {
    return !SaveMaterial(app, Material(name, state), id == 0 ? std::optional<std::int16_t>{} : id);
}
bool DeleteMaterialNumber(AppContext& app, std::int16_t id) {
    return !DeleteMaterial(app, id, [&](std::int16_t material) { return IsMaterialUsed(app, material); });
}
bool SaveUsageNumber(AppContext& app, std::int16_t id, const std::string& period, double quantity) {
    return !SaveUsage(
        app, {.UsageId = id, .MaterialId = 1, .Period = period, .Quantity = quantity, .Unit = UnitLbs});
}

/// Records `first` and `first` + 2 are edited, and a month added that no record has.
bool SaveUsageTogetherFrom(AppContext& app, std::int16_t first, const std::string& period, double quantity) {
    std::vector<UsageChange> changes;
    for (const int number : {first + 0, first + 2}) {
        const auto read = ReadUsage(app, {.UsageId = static_cast<std::int16_t>(number)});
        if (!read || read->empty()) return false;
        changes.push_back({.Record = read->front(), .AsRead = read->front()});
    }
    changes.emplace_back().Record = {.MaterialId = 1, .Period = period};
    for (UsageChange& change : changes) {
        change.Record.Quantity = quantity;
        change.Record.Unit = UnitLbs;
    }
    UsageOutcome outcome;
    return !SaveUsageTogether(app, changes, outcome);
}

constexpr double Edited = 1000; ///< pounds more

/// Record `first` is edited, record `first` + 2 deleted, and a month added that no record has.
bool ChangeUsageFrom(AppContext& app, std::int16_t first, const std::string& period) {
    std::vector<UsageChange> changes;
    const Done read = VisitUsage(app, [&](const UsageRecord& usage) {
        if (usage.UsageId == first || usage.UsageId == first + 2)
            changes.push_back({.Record = usage, .AsRead = usage});
    });
    if (!read || changes.size() != 2) return false;
    changes[0].Record.Quantity += Edited;
    changes[1].Record.Active = false;
    changes.emplace_back().Record = {.MaterialId = 1, .Period = period, .Quantity = 5, .Unit = UnitLbs};
    const Result<UsageOutcome> outcome = ChangeUsage(app, changes);
    return outcome && outcome->Refused.empty();
}

/// As the list does it. A refusal is a failure without a message.
bool TakeBack(AppContext& app, HistoryKind kind) {
    const auto isUsed = [&](std::int16_t material) { return IsMaterialUsed(app, material); };
    const Result<HistoryRefusal> refusal = app.Changes->Undo({kind, app.CurrentCompanyId}, app, isUsed);
    return !ShowFailure(app, refusal) && refusal->Reasons.empty();
}

/// Takes back what ChangeUsageFrom has done, in one step.
bool TakeBackUsageFrom(AppContext& app, std::int16_t first, const std::string& period) {
    std::vector<StoredRecord<UsageRecord>> stored;
    const Done read = VisitUsage(app, [&](const UsageRecord& usage) {
        const bool isNew = usage.Period == period;
        if (!isNew && usage.UsageId != first && usage.UsageId != first + 2) return;
        stored.push_back({usage, usage, isNew});
        if (usage.UsageId == first) stored.back().Before->Quantity -= Edited;
        stored.back().Before->Active = true;
    });
    if (!read || stored.size() != 3) return false;
    NoteUsageTogether(app, "change usage", stored);
    return TakeBack(app, HistoryKind::Usage);
}

/// Takes back an import that has stored these materials.
bool TakeBackImport(AppContext& app, std::int16_t first, std::int16_t last) {
    std::vector<StoredRecord<MaterialRecord>> stored;
    const Done read = VisitMaterials(app, [&](const MaterialRecord& material) {
        if (material.MaterialId >= first && material.MaterialId <= last)
            stored.push_back({.Record = material, .IsNew = true});
    });
    if (!read || static_cast<int>(stored.size()) != last - first + 1) return false;
    NoteMaterials(app, "import materials", stored);
    return TakeBack(app, HistoryKind::Materials);
}

bool SaveCompanyNumber(AppContext& app, std::int16_t id, const std::string& name) {
    // Its answer is always 0; the message tells.
    SaveCompany(app, name, "Dock 1", id == 0 ? std::optional<std::int16_t>{} : id);
    return static_cast<ScriptedPrompts&>(app.Prompts).Shown.empty();
}

/// As a quick user would. Without it no reader would ever find the files at rest.
constexpr auto AfterAStep = std::chrono::milliseconds(20);

/// Does it again while another copy holds the file for longer than a writer waits.
bool Persist(AppContext& app, const std::function<bool()>& operation) {
    auto& shown = static_cast<ScriptedPrompts&>(app.Prompts).Shown;
    for (;;) {
        if (operation()) {
            std::this_thread::sleep_for(AfterAStep);
            return true;
        }
        if (shown.size() != 1 ||
            !shown.front().Text.ends_with("another running copy of the program is working with it."))
            return false;
        shown.clear();
    }
}

/// Step `state` of a known sequence: the first and the last of the materials that are there at first get the
/// state, in this order, a material that tells it is appended, and the one appended before is deleted.
bool StepMaterials(AppContext& app, std::int16_t last, int state) {
    if (!Persist(app, [&] { return SaveMaterialNamed(app, 1, "First", state); }) ||
        !Persist(app, [&] { return SaveMaterialNamed(app, last, "Last", state); }) ||
        !Persist(app, [&] { return SaveMaterialNamed(app, 0, "Added", state); }))
        return false;
    std::vector<MaterialRecord> added;
    FindMaterials(app, {.CustomId = "Added"}, added);
    return added.size() <= 1 ||
           Persist(app, [&] { return DeleteMaterialNumber(app, added.front().MaterialId); });
}
/// The same with usage of the months 1/1900, 12/1900 and 6/1900.
bool StepUsage(AppContext& app, std::int16_t last, int state) {
    if (!Persist(app, [&] { return SaveUsageNumber(app, 1, "1/1900", state); }) ||
        !Persist(app, [&] { return SaveUsageNumber(app, last, "12/1900", state); }) ||
        !Persist(app, [&] { return SaveUsageNumber(app, 0, "6/1900", state); }))
        return false;
    std::vector<UsageRecord> added;
    FindUsage(app, {.Periods = "6/1900"}, added);
    return added.size() <= 1 || Persist(app, [&] { return !DeleteUsage(app, added.front().UsageId); });
}

/// Prints the numbers of the live records.
bool List(AppContext& app) {
    std::vector<MaterialRecord> materials;
    FindMaterials(app, {}, materials);
    for (const MaterialRecord& material : materials)
        std::cout << "material " << material.MaterialId << '\n';
    std::vector<UsageRecord> usage;
    FindUsage(app, {}, usage);
    for (const UsageRecord& record : usage)
        std::cout << "usage " << record.UsageId << '\n';
    return static_cast<ScriptedPrompts&>(app.Prompts).Shown.empty();
}

bool Run(AppContext& app, const std::string& command, const Arguments& given) {
    if (command == "save-material")
        return SaveMaterialNamed(app, Number(given.at(0)), given.at(1), Number(given.at(2)));
    if (command == "delete-material") return DeleteMaterialNumber(app, Number(given.at(0)));
    if (command == "save-usage")
        return SaveUsageNumber(app, Number(given.at(0)), given.at(1), Number(given.at(2)));
    if (command == "save-usage-together")
        return SaveUsageTogetherFrom(app, Number(given.at(0)), given.at(1), Number(given.at(2)));
    if (command == "change-usage") return ChangeUsageFrom(app, Number(given.at(0)), given.at(1));
    if (command == "take-back") return TakeBackUsageFrom(app, Number(given.at(0)), given.at(1));
    if (command == "take-back-import") return TakeBackImport(app, Number(given.at(0)), Number(given.at(1)));
    if (command == "delete-usage") return !DeleteUsage(app, Number(given.at(0)));
    if (command == "save-company") return SaveCompanyNumber(app, Number(given.at(0)), given.at(1));
    if (command == "list") return List(app);
    const bool hasMaterials = command == "step-materials";
    if (!hasMaterials && command != "step-usage") return false;
    const int end = Number(given.at(2));
    for (int state = Number(given.at(1)); state <= end; ++state)
        if (!(hasMaterials ? StepMaterials : StepUsage)(app, Number(given.at(0)), state)) return false;
    return true;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 3) return EXIT_FAILURE;
    ScriptedPrompts prompts;
    ScriptedSettings settings;
    ScriptedPrograms programs;
    ScriptedDialogs dialogs;
    ScriptedClock calendar;
    OsFiles files;
    AppContext app{prompts, settings, programs, dialogs, calendar, files, PathFromUtf8(argv[1]), 1};
    History changes;
    app.Changes = &changes;
    const bool isDone = Run(app, argv[2], Arguments(argv + 3, argv + argc));
    for (const Prompt& prompt : prompts.Shown)
        std::cerr << prompt.Text << '\n';
    return isDone ? EXIT_SUCCESS : EXIT_FAILURE;
}
