#include "usage/usage_store.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/record_file.h"
#include "store/steady_reading.h"
#include "usage/usage_changes.h"

#include <algorithm>
#include <unordered_set>

namespace mact {
namespace {

/// The numbers of the materials met so far. On purpose, a number counts as met if its digits occur in those
/// of an earlier one: 2 after 12. All parts of the digits are kept, so that no long text need be searched.
class SeenMaterials {
public:
    /// False if the material was met before.
    bool Add(std::int16_t materialId) {
        const std::string digits = std::to_string(materialId);
        if (m_parts.contains(digits)) return false;
        for (std::size_t start = 0; start < digits.size(); ++start)
            for (std::size_t length = 1; start + length <= digits.size(); ++length)
                m_parts.insert(digits.substr(start, length));
        return true;
    }

private:
    std::unordered_set<std::string> m_parts;
};

/// A filter, and what it needs to judge one record after another.
class UsageMatcher {
public:
    UsageMatcher(const UsageFilter& filter, std::optional<MaterialIds> materialIds)
        : m_filter(filter), m_materialIds(std::move(materialIds)),
          m_periods(PeriodListKey(filter.Periods.value_or(""))) {}

    bool Passes(const UsageRecord& usage) {
        if (m_filter.UsageId && usage.UsageId != *m_filter.UsageId) return false;
        if (m_filter.MaterialId && usage.MaterialId != *m_filter.MaterialId) return false;
        if (m_filter.MaterialText && !IsOfMaterialText(usage)) return false;
        if (!IsOfMonth(usage)) return false;
        if (m_filter.Periods && !IsOfPeriods(usage)) return false;
        // Before the test for live records on purpose: a deleted record hides later ones of its material.
        if (m_filter.OneRecordPerMaterial && !m_seen.Add(usage.MaterialId)) return false;
        return usage.Active == m_filter.Active;
    }

private:
    bool IsOfMaterialText(const UsageRecord& usage) const {
        const std::optional<std::string>& text = (*m_materialIds)[usage.MaterialId];
        return text && IsSameName(*text, *m_filter.MaterialText); // no text: no live material
    }
    bool IsOfMonth(const UsageRecord& usage) const {
        if (!m_filter.Year && !m_filter.Month) return true;
        const PeriodPieces pieces = SplitPeriod(usage.Period);
        return (!m_filter.Year || IsSameName(pieces.Year, *m_filter.Year)) &&
               (!m_filter.Month || IsSameName(pieces.Month, *m_filter.Month));
    }
    bool IsOfPeriods(const UsageRecord& usage) const {
        return m_periods.find(PeriodKey(usage.Period)) != std::string::npos;
    }

    const UsageFilter& m_filter;              ///< outlives the matcher
    std::optional<MaterialIds> m_materialIds; ///< only if the filter needs them
    std::string m_periods;
    SeenMaterials m_seen;
};

Result<RecordFile> OpenToRead(const DataFiles& data) {
    return RecordFile::OpenForReading(data.Files, UsageFile(data), UsageLayout.SlotLength());
}

Result<RecordFile> OpenToWrite(const DataFiles& data) {
    return RecordFile::OpenForWriting(data.Files, UsageFile(data), UsageLayout.SlotLength());
}

using StoredUsage = StoredRecord<UsageRecord>;

Result<StoredUsage> WriteUsage(const DataFiles& data, UsageRecord record, bool keepsBefore) {
    record.Active = true; // whatever the caller passed
    Result<RecordFile> file = OpenToWrite(data);
    if (!file) return file.error();
    return WriteRecord(*file, UsageLayout, std::move(record), &UsageRecord::UsageId, keepsBefore);
}

Result<std::optional<StoredUsage>> MarkAsDeleted(const DataFiles& data, std::int16_t usageId) {
    Result<RecordFile> file = OpenToWrite(data);
    if (!file) return file.error();
    return MarkLiveRecordAsDeleted(*file, UsageLayout, usageId, &UsageRecord::UsageId, &UsageRecord::Active);
}

} // namespace

std::string PeriodKey(std::string_view period) {
    return '|' + ComparisonKey(period) + '|';
}

// The list of a report ends in "|" itself, so an empty period is found in it, on purpose.
std::string PeriodListKey(std::string_view periods) {
    return '|' + UpperCase(periods) + '|';
}

PeriodPieces SplitPeriod(std::string_view period) {
    const std::string_view text = Trim(period);
    const std::size_t first = std::min(text.find('/'), text.size());
    const std::string_view rest = text.substr(std::min(first + 1, text.size()));
    return {Trim(text.substr(0, first)), Trim(rest.substr(0, rest.find('/')))}; // any more are dropped
}

Done VisitUsage(const DataFiles& data, const std::function<void(const UsageRecord&)>& visit) {
    Result<RecordFile> file = OpenToRead(data);
    if (!file) return file.error();
    return ForEachRecord(*file, UsageLayout, visit);
}

Result<std::vector<UsageRecord>> ReadUsage(const DataFiles& data, const UsageFilter& filter) {
    std::vector<std::filesystem::path> files{UsageFile(data)};
    if (filter.MaterialText) files.push_back(MaterialsFile(data));
    return ReadSteadily(data.Files, files, [&]() -> Result<std::vector<UsageRecord>> {
        std::optional<MaterialIds> materialIds;
        if (filter.MaterialText) {
            Result<MaterialIds> read = ReadMaterialIds(data);
            if (!read) return read.error();
            materialIds = std::move(*read);
        }
        Result<RecordFile> file = OpenToRead(data);
        if (!file) return file.error();
        UsageMatcher matcher(filter, std::move(materialIds));
        return ReadRecords(*file, UsageLayout,
                           [&](const UsageRecord& usage) { return matcher.Passes(usage); });
    });
}

bool FindUsage(AppContext& app, const UsageFilter& filter, std::vector<UsageRecord>& results) {
    results.clear();
    Result<std::vector<UsageRecord>> found = ReadUsage(app, filter);
    if (ShowFailure(app, found)) return false;
    results = std::move(*found);
    return !results.empty();
}

Failed SaveUsage(AppContext& app, const UsageRecord& record) {
    const Result<StoredUsage> stored = WriteUsage(app, record, app.Changes != nullptr);
    if (ShowFailure(app, stored)) return true;
    NoteUsage(app, stored->IsNew ? "add" : "edit", *stored);
    return false;
}

Failed DeleteUsage(AppContext& app, std::int16_t usageId) {
    const Result<std::optional<StoredUsage>> deleted = MarkAsDeleted(app, usageId);
    if (ShowFailure(app, deleted) || !*deleted) return true; // also if there was nothing to delete
    NoteUsage(app, "delete", **deleted);
    return false;
}

Result<std::unordered_set<std::int16_t>> ReadUsedMaterials(const DataFiles& data) {
    const Result<std::vector<UsageRecord>> usage = ReadUsage(data);
    if (!usage) return usage.error();
    std::unordered_set<std::int16_t> used;
    for (const UsageRecord& record : *usage)
        used.insert(record.MaterialId);
    return used;
}

Result<bool> IsMaterialUsed(const DataFiles& data, std::int16_t materialId) {
    return ReadUsage(data, {.MaterialId = materialId}).transform([](const auto& found) {
        return !found.empty();
    });
}

UsageLines ListUsage(AppContext& app, const std::vector<UsageRecord>& records) {
    UsageLines usage;
    const Result<MaterialIds> materialIds = ReadMaterialIds(app);
    if (ShowFailure(app, materialIds)) return usage; // no line could name its material
    usage.Lines.reserve(records.size());
    usage.Records.reserve(records.size());
    bool hasShownFailure = false;
    for (std::size_t place = 0; place < records.size(); ++place) {
        const UsageRecord& record = records[place];
        if (!record.Active) continue;
        if (const std::optional<std::string>& material = (*materialIds)[record.MaterialId]) {
            std::string& line = usage.Lines.emplace_back(ListLine{{}, record.UsageId}).Text;
            line.reserve(material->size() + record.Period.size() + 3);
            AppendAll(line, *material, " (", Trim(record.Period), ")");
            usage.Records.push_back(place);
        } else if (!usage.Lines.empty()) {
            // On purpose: the line before it is the only way to a record whose material is gone.
            usage.Lines.back().ItemData = record.UsageId;
        } else if (!hasShownFailure) {
            ShowError(app,
                      {.Doing = "list usage record " + std::to_string(record.UsageId),
                       .Reason = "its material " + std::to_string(record.MaterialId) + " does not exist"});
            hasShownFailure = true;
        }
    }
    return usage;
}

void FillUsageList(AppContext& app, ListLines& list, const std::vector<UsageRecord>& records) {
    list = ListUsage(app, records).Lines;
}

std::string QuantityInWords(const UsageRecord& usage) {
    const std::string quantity = NumberText(usage.Quantity);
    if (usage.Unit == UnitMgal) return quantity + " Mgal";
    return usage.Unit == UnitLbs ? quantity + " lbs"
                                 : quantity + " (unit " + std::to_string(usage.Unit) + ')';
}

void FillUsageYears(ListLines& list, const std::vector<UsageRecord>& records) {
    list.clear();
    std::unordered_set<std::string> seen;
    for (const UsageRecord& usage : records) {
        if (!usage.Active) continue;
        const std::string year(SplitPeriod(usage.Period).Year);
        if (seen.insert(year).second) list.push_back({year, ParseInt32(year).value_or(0)});
    }
}
} // namespace mact
