#include "usage/usage_store.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/record_file.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <unordered_set>

namespace mact {
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

template <auto Member> auto Stored(std::string_view slot) {
    return Peek<UsageLayout, Member>(slot);
}

/// Whether a stored period is in a list of them.
class PeriodMatcher {
public:
    explicit PeriodMatcher(std::string_view periods) : m_periods('|' + UpperCase(periods) + '|') {}

    /// The period as stored, with the spaces at its end.
    bool Contains(std::string_view period) {
        // Few periods and many records: an answer is kept, and found again by the period's seven bytes.
        assert(period.size() == 7);
        const std::uint64_t key = LoadLittleEndian<std::uint32_t>(period.data()) |
                                  std::uint64_t{LoadLittleEndian<std::uint32_t>(period.data() + 3)} << 24U;
        for (std::uint64_t place = key * 0x9E3779B97F4A7C15U >> 56U;; ++place) {
            Answer& answer = m_answers[place % m_answers.size()];
            if (answer.Period == key) [[likely]]
                return answer.IsListed;
            if (answer.Period == NoPeriod) return Keep(answer, key, IsListed(period));
        }
    }

private:
    static constexpr std::uint64_t NoPeriod = ~std::uint64_t{0}; // more than seven bytes
    struct Answer {
        std::uint64_t Period = NoPeriod;
        bool IsListed = false;
    };
    bool Keep(Answer& answer, std::uint64_t period, bool isListed) {
        if (++m_answersKept > m_answers.size() / 2) { // a damaged file
            m_answers.fill({});
            m_answersKept = 1;
        }
        answer = {period, isListed};
        return isListed;
    }
    bool IsListed(std::string_view period) const {
        return m_periods.find('|' + ComparisonKey(period) + '|') != std::string::npos;
    }

    std::string m_periods;
    std::array<Answer, 256> m_answers{};
    std::size_t m_answersKept = 0;
};

/// A filter with what it needs to judge a record by its slot.
class UsageMatcher {
public:
    UsageMatcher(const UsageFilter& filter, std::optional<MaterialTextMap> materialTexts)
        : m_filter(filter), m_materialTexts(std::move(materialTexts)) {
        if (filter.Periods) m_periods.emplace(*filter.Periods);
    }

    bool Passes(std::string_view slot) {
        // A deleted record hides later live ones of its material.
        if (!m_isOfPeriodsAlone) return HasFields(slot) && IsOfPeriods(slot) && IsFirst(slot) && IsLive(slot);
        // The filter of the reports, without a jump for each of the tests.
        const bool isLive = IsLive(slot);
        const bool isOfPeriods = IsOfPeriods(slot);
        return static_cast<bool>(static_cast<int>(isLive) & static_cast<int>(isOfPeriods));
    }

private:
    bool IsLive(std::string_view slot) const { return Stored<&UsageRecord::Active>(slot) == m_filter.Active; }
    bool IsOfPeriods(std::string_view slot) {
        return !m_periods || m_periods->Contains(Stored<&UsageRecord::Period>(slot));
    }
    bool HasFields(std::string_view slot) const {
        if (m_filter.UsageId && Stored<&UsageRecord::UsageId>(slot) != *m_filter.UsageId) return false;
        if (m_filter.MaterialId && Stored<&UsageRecord::MaterialId>(slot) != *m_filter.MaterialId)
            return false;
        if (m_filter.MaterialText && !IsOfMaterialText(slot)) return false;
        return !(m_filter.Year || m_filter.Month) || IsOfMonth(slot);
    }
    bool IsOfMaterialText(std::string_view slot) const {
        const auto text = m_materialTexts->Of(Stored<&UsageRecord::MaterialId>(slot));
        return text && EqualsIgnoringCase(*text, Trim(*m_filter.MaterialText));
    }
    bool IsFirst(std::string_view slot) {
        if (!m_filter.OneRecordPerMaterial) return true;
        const std::int16_t material = Stored<&UsageRecord::MaterialId>(slot);
        if (m_seen.Contains(material)) return false;
        m_seen.Add(material);
        return true;
    }
    bool IsOfMonth(std::string_view slot) const {
        const PeriodPieces pieces = SplitPeriod(Stored<&UsageRecord::Period>(slot));
        return (!m_filter.Year || EqualsIgnoringCase(pieces.Year, Trim(*m_filter.Year))) &&
               (!m_filter.Month || EqualsIgnoringCase(pieces.Month, Trim(*m_filter.Month)));
    }

    const UsageFilter& m_filter;
    bool m_isOfPeriodsAlone = !m_filter.UsageId && !m_filter.MaterialId && !m_filter.MaterialText &&
                              !m_filter.Year && !m_filter.Month && !m_filter.OneRecordPerMaterial;
    std::optional<MaterialTextMap> m_materialTexts; ///< where the filter needs them
    std::optional<PeriodMatcher> m_periods;
    SeenMaterials m_seen;
};

Result<RecordFile> OpenToRead(AppContext& app) {
    return RecordFile::OpenForReading(app.Files, UsageFile(app), UsageLayout.SlotLength());
}

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
    const std::string_view text = Trim(period);
    const std::size_t first = std::min(text.find('/'), text.size());
    const std::string_view rest = text.substr(std::min(first + 1, text.size()));
    return {Trim(text.substr(0, first)), Trim(rest.substr(0, rest.find('/')))};
}

Done VisitUsage(AppContext& app, const std::function<void(const UsageRecord&)>& visit) {
    Result<RecordFile> file = OpenToRead(app);
    if (!file) return file.error();
    return ForEachRecord<UsageLayout>(*file, visit);
}

Result<std::vector<UsageRecord>> ReadUsage(AppContext& app, const UsageFilter& filter) {
    std::optional<MaterialTextMap> materialTexts;
    if (filter.MaterialText) {
        Result<MaterialTextMap> texts = ReadMaterialTexts(app);
        if (!texts) return texts.error();
        materialTexts = std::move(*texts);
    }
    Result<RecordFile> file = OpenToRead(app);
    if (!file) return file.error();
    UsageMatcher test(filter, std::move(materialTexts));
    std::vector<UsageRecord> found;
    found.reserve(static_cast<std::size_t>(file->Count())); // 2 MB at most
    const auto passes = [&](std::string_view slot) { return test.Passes(slot); };
    const Done read = AppendRecords<UsageLayout>(*file, passes, found);
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
    list.reserve(records.size());
    bool hasShownFailure = false;
    for (const UsageRecord& usage : records) {
        if (!usage.Active) continue;
        if (const auto material = texts->Of(usage.MaterialId)) {
            std::string& line = list.emplace_back(ListLine{{}, usage.UsageId}).Text;
            line.reserve(material->size() + usage.Period.size() + 3);
            line += *material;
            line += " (";
            line += Trim(usage.Period);
            line += ')';
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
        if (seen.insert(year).second) list.push_back({year, ParseInt32(year).value_or(0)});
    }
}

} // namespace mact
