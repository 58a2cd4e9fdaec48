#include "overview/file_damage.h"

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "check/record_findings.h"
#include "materials/material_record.h"
#include "usage/usage_record.h"

namespace mact {
namespace {

constexpr std::size_t MostLines = 20;

/// A missing file has nothing wrong with it.
template <class Layout, class Number>
Done FindIn(const DataFiles& data, const std::filesystem::path& path, const Layout& layout, Number numberOf,
            const FindingTaker& take) {
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return Success();
    const FileFindings findings(PathText(path.filename()), take);
    const Result<bool> checked =
        VisitCheckedRecords(data.Files, path, layout, findings, [&](std::int16_t record, const auto& stored) {
            findings.CheckNumber(record, numberOf(stored));
        });
    if (!checked) return checked.error();
    return Success();
}

} // namespace

Result<std::vector<std::string>> FindFileDamage(const DataFiles& data) {
    std::vector<std::string> lines;
    std::size_t more = 0;
    const FindingTaker take = [&](const Finding& finding) {
        if (lines.size() < MostLines)
            lines.push_back(LineOf(finding));
        else
            ++more;
    };
    const Done materials = FindIn(
        data, MaterialsFile(data), MaterialLayout,
        [](const MaterialRecord& material) { return material.MaterialId; }, take);
    if (!materials) return materials.error();
    const Done usage = FindIn(
        data, UsageFile(data), UsageLayout, [](const UsageRecord& use) { return use.UsageId; }, take);
    if (!usage) return usage.error();
    if (more > 0)
        lines.push_back("More findings like these: " + WholeNumberText(static_cast<std::int64_t>(more)));
    return lines;
}
} // namespace mact
