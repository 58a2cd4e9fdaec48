#include "usage/usage_store.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/record_file.h"

#include <algorithm>
#include <unordered_set>

namespace {

/// The materials whose numbers a later one is not to occur in.
///
/// The rule is a search for the decimal number in the text of all numbers seen so far. All parts of a
/// number's text that are numbers themselves are few, so they are kept instead of that text.
class SeenMaterials {
public:
    bool Contains(std::int16_t materialId) const { return m_parts.contains(std::to_string(materialId)); }
    void Add(std::int16_t materialId) {
        const std::string digits = std::to_string(materialId);
        for (std::size_t start = 0; start < digits.size(); ++start)
            for (std::size_t length = 1; start + length <= digits.size(); ++length)
                m_parts.insert(digits.substr(start, length));
    }

private:
    std::unordered_set<std::string> m_parts;
};

/// A filter with what it needs to judge a record.
class UsageTest {
public:
    UsageTest(const UsageFilter& filter, MaterialTextMap materialTexts)
        : m_filter(filter), m_materialTexts(std::move(materialTexts)) {
        if (filter.Periods) m_periods = '|' + UpperCase(*filter.Periods) + '|';
    }

    bool Passes(const UsageRecord& usage) {
        if (m_filter.UsageId && usage.UsageId != *m_filter.UsageId) return false;
        if (m_filter.Periods && !IsInPeriods(usage)) return false;
        if (m_filter.MaterialId && usage.MaterialId != *m_filter.MaterialId) return false;
        if (m_filter.MaterialText && !IsOfMaterialText(usage)) return false;
        const PeriodPieces pieces = SplitPeriod(usage.Period);
        if (m_filter.Year && !EqualsIgnoringCase(pieces.Year, Trim(*m_filter.Year))) return false;
        if (m_filter.Month && !EqualsIgnoringCase(pieces.Month, Trim(*m_filter.Month))) return false;
        if (m_filter.OneRecordPerMaterial) {
            if (m_seen.Contains(usage.MaterialId)) return false;
            m_seen.Add(usage.MaterialId); // before the next test: a deleted record hides later live ones
        }
        return usage.Active == m_filter.Active;
    }

private:
    bool IsInPeriods(const UsageRecord& usage) const {
        return m_periods.find('|' + ComparisonKey(usage.Period) + '|') != std::string::npos;
    }
    bool IsOfMaterialText(const UsageRecord& usage) const {
        const auto found = m_materialTexts.find(usage.MaterialId);
        return found != m_materialTexts.end() &&
               EqualsIgnoringCase(found->second, Trim(*m_filter.MaterialText));
    }

    const UsageFilter& m_filter;
    MaterialTextMap m_materialTexts;
    std::string m_periods;
    SeenMaterials m_seen;
};

Result<RecordFile> OpenToWrite(AppContext& app) {
    return RecordFile::OpenForWriting(app.Files, UsageFile(app), UsageLayout.SlotLength());
}

Result<std::int16_t> WriteUsage(AppContext& app, UsageRecord record) {
    record.Active = true;
    Result<RecordFile> file = OpenToWrite(app);
    if (!file) return file.error();
    return WriteRecord(*file, UsageLayout, record, &UsageRecord::UsageId);
}

Result<bool> MarkAsDeleted(AppContext& app, std::int16_t usageId) {
    Result<RecordFile> file = OpenToWrite(app);
    if (!file) return file.error();
    return MarkLiveRecordAsDeleted(*file, UsageLayout, usageId, &UsageRecord::UsageId, &UsageRecord::Active);
}

} // namespace

PeriodPieces SplitPeriod(std::string_view period) {
    const std::vector<std::string_view> pieces = Split(Trim(period), '/');
    return {Trim(pieces[0]), pieces.size() > 1 ? Trim(pieces[1]) : std::string_view{}};
}

Done VisitUsage(AppContext& app, const std::function<void(const UsageRecord&)>& visit) {
    Result<RecordFile> file = RecordFile::OpenForReading(app.Files, UsageFile(app), UsageLayout.SlotLength());
    if (!file) return file.error();
    return ForEachRecord(*file, UsageLayout, visit);
}

Result<std::vector<UsageRecord>> ReadUsage(AppContext& app, const UsageFilter& filter) {
    MaterialTextMap materialTexts;
    if (filter.MaterialText) {
        Result<MaterialTextMap> texts = ReadMaterialTexts(app);
        if (!texts) return texts.error();
        materialTexts = std::move(*texts);
    }
    UsageTest test(filter, std::move(materialTexts));
    std::vector<UsageRecord> found;
    const Done read = VisitUsage(app, [&](const UsageRecord& usage) {
        if (test.Passes(usage)) found.push_back(usage);
    });
    if (!read) return read.error();
    return found;
}

bool FindUsage(AppContext& app, const UsageFilter& filter, std::vector<UsageRecord>& results) {
    results.clear();
    Result<std::vector<UsageRecord>> found = ReadUsage(app, filter);
    if (!found) {
        ShowError(app, found.error());
        return false;
    }
    results = std::move(*found);
    return !results.empty();
}

Failed SaveUsage(AppContext& app, const UsageRecord& record) {
    const Result<std::int16_t> written = WriteUsage(app, record);
    if (!written) ShowError(app, written.error());
    return !written;
}

Failed DeleteUsage(AppContext& app, std::int16_t usageId) {
    const Result<bool> deleted = MarkAsDeleted(app, usageId);
    if (!deleted) ShowError(app, deleted.error());
    return !deleted || !*deleted;
}

Result<bool> IsMaterialUsed(AppContext& app, std::int16_t materialId) {
    const Result<std::vector<UsageRecord>> found = ReadUsage(app, {.MaterialId = materialId});
    if (!found) return found.error();
    return !found->empty();
}

void FillUsageList(AppContext& app, ListLines& list, const std::vector<UsageRecord>& records) {
    list.clear();
    const Result<MaterialTextMap> texts = ReadMaterialTexts(app);
    if (!texts) {
        ShowError(app, texts.error());
        return;
    }
    bool hasShownFailure = false;
    for (const UsageRecord& usage : records) {
        if (!usage.Active) continue;
        const auto material = texts->find(usage.MaterialId);
        if (material != texts->end()) {
            std::string line = material->second + " (";
            line += Trim(usage.Period);
            line += ')';
            list.push_back({line, usage.UsageId});
        } else if (!list.empty()) {
            list.back().ItemData = usage.UsageId;
        } else if (!hasShownFailure) {
            ShowError(app, {"Cannot list usage record " + std::to_string(usage.UsageId) + ": its material " +
                            std::to_string(usage.MaterialId) + " does not exist."});
            hasShownFailure = true;
        }
    }
}

void FillUsageYears(ListLines& list, const std::vector<UsageRecord>& records) {
    list.clear();
    std::unordered_set<std::string> seen;
    for (const UsageRecord& usage : records) {
        if (!usage.Active) continue;
        const std::string year(SplitPeriod(usage.Period).Year);
        if (seen.insert(year).second) list.push_back({year, ParseInt16(year).value_or(0)});
    }
}
