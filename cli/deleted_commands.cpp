#include "cli/deleted_commands.h"

#include "base/numbers.h"
#include "cli/record_text.h"
#include "cli/refusals.h"
#include "materials/material_changes.h"
#include "usage/usage_changes.h"

#include <algorithm>
#include <iostream>

namespace mact {
namespace {

constexpr const char* MaterialsName = "materials";
constexpr const char* UsageName = "usage";

std::string LineOf(const MaterialRecord& material) {
    return std::string(MaterialsName) + '|' + std::to_string(material.MaterialId) + '|' +
           Shown(material.CustomId);
}

std::string LineOf(const DeletedUsage& deleted) {
    const UsageRecord& usage = deleted.Usage;
    // An unknown unit is shown as the export writes it.
    return std::string(UsageName) + '|' + std::to_string(usage.UsageId) + '|' + Shown(deleted.CustomId) +
           '|' + Shown(usage.Period) + '|' + NumberText(usage.Quantity) +
           (usage.Unit == UnitMgal ? "|Mgal" : "|lbs");
}

template <class Deleted> void PrintLinesOf(const std::vector<Deleted>& deleted) {
    for (const Deleted& record : deleted)
        std::cout << LineOf(record) << '\n';
}

std::int16_t NumberOf(const MaterialRecord& material) {
    return material.MaterialId;
}
std::int16_t NumberOf(const DeletedUsage& deleted) {
    return deleted.Usage.UsageId;
}

/// The deleted records with these numbers. A record without content stands for a number
/// that is not among them, so that what is wrong with it is found where the others are judged.
template <class Deleted, class Make>
std::vector<Deleted> Asked(const std::vector<Deleted>& deleted, const std::vector<std::int16_t>& numbers,
                           const Make& makeEmpty) {
    std::vector<Deleted> asked;
    asked.reserve(numbers.size());
    for (const std::int16_t number : numbers) {
        const auto numberOf = [](const Deleted& each) { return NumberOf(each); };
        const auto found = std::ranges::lower_bound(deleted, number, {}, numberOf); // in file order
        const bool isFound = found != deleted.end() && NumberOf(*found) == number;
        asked.push_back(isFound ? *found : makeEmpty(number));
    }
    return asked;
}

std::vector<std::int16_t> SortedOnce(std::vector<std::int16_t> numbers) {
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

template <class Deleted>
ExitStatus Tell(AppContext& app, const Result<std::vector<Failure>>& refusals,
                const std::vector<Deleted>& asked) {
    if (!refusals) return Fail(app, refusals.error());
    for (const Failure& refusal : *refusals)
        std::cerr << Printable(SentenceOf(refusal)) << '\n';
    if (refusals->empty())
        PrintLinesOf(asked);
    else if (asked.size() > 1)
        std::cerr << "None of the records was brought back.\n";
    return refusals->empty() ? StatusDone : StatusRejected;
}

ExitStatus BringBackMaterials(AppContext& app, const std::vector<std::int16_t>& numbers) {
    const Result<std::vector<MaterialRecord>> deleted = ReadDeletedMaterials(app);
    if (!deleted) return Fail(app, deleted.error());
    const std::vector<MaterialRecord> asked = Asked(*deleted, numbers, [](std::int16_t number) {
        return MaterialRecord{.MaterialId = number, .Active = false};
    });
    return Tell(app, UndeleteMaterials(app, asked), asked);
}

ExitStatus BringBackUsage(AppContext& app, const std::vector<std::int16_t>& numbers) {
    const Result<std::vector<DeletedUsage>> deleted = ReadDeletedUsage(app);
    if (!deleted) return Fail(app, deleted.error());
    const std::vector<DeletedUsage> asked = Asked(*deleted, numbers, [](std::int16_t number) {
        return DeletedUsage{
            {.UsageId = number, .Active = false}
        };
    });
    std::vector<UsageRecord> records;
    records.reserve(asked.size());
    for (const DeletedUsage& each : asked)
        records.push_back(each.Usage);
    return Tell(app, UndeleteUsage(app, records), asked);
}

} // namespace

ExitStatus ListDeleted(AppContext& app) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const Result<std::vector<MaterialRecord>> materials = ReadDeletedMaterials(app);
    if (!materials) return Fail(app, materials.error());
    const Result<std::vector<DeletedUsage>> usage = ReadDeletedUsage(app);
    if (!usage) return Fail(app, usage.error());
    PrintLinesOf(*materials);
    PrintLinesOf(*usage);
    return StatusDone;
}

ExitStatus Undelete(AppContext& app, const std::string& file, const std::vector<std::int16_t>& numbers) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const auto bringBack = file == MaterialsName ? BringBackMaterials : BringBackUsage;
    return bringBack(app, SortedOnce(numbers));
}

const std::vector<std::string>& RecordFileNames() {
    static const std::vector<std::string> names = {MaterialsName, UsageName};
    return names;
}
} // namespace mact
