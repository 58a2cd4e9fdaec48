#include "check/company_check.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_record.h"
#include "store/additional_names.h"
#include "store/data_folder.h"
#include "usage/usage_store.h"

#include <cmath>
#include <unordered_map>
#include <unordered_set>

namespace mact {
namespace {

/// What the check of the usage needs to know about the materials, and vice versa.
struct CompanyMaterials {
    struct WithoutDensity {
        std::int16_t Record;
        std::int16_t MaterialId;
        double Density;
    };
    std::unordered_map<std::int16_t, bool> IsLive; ///< by MaterialId; false = deleted
    std::vector<WithoutDensity> WithoutDensities;
    std::unordered_set<std::int16_t> UsedInMgal; ///< MaterialIds
    std::unordered_set<std::int16_t> UsedInLbs;
};

void CheckNumbers(const FileFindings& findings, std::int16_t record, const MaterialRecord& material) {
    findings.CheckFinite(record, "the density", material.Density);
    findings.CheckFinite(record, "the HAP content", material.HapContent);
    findings.CheckFinite(record, "the emission factor", material.EmissionFactor);
    for (std::size_t index = 0; index < PollutantContents.size(); ++index) {
        const std::string pollutant = " of pollutant " + std::to_string(index + 1);
        findings.CheckFinite(record, "the content" + pollutant, material.*PollutantContents[index]);
        findings.CheckFinite(record, "the emission factor" + pollutant, material.*PollutantFactors[index]);
    }
    findings.CheckFinite(record, "the filler", material.Filler);
    if (std::isfinite(material.HapContent) && (material.HapContent < 0 || material.HapContent > 100))
        findings.Add(record,
                     "the HAP content " + NumberText(material.HapContent) + " is not from 0 to 100 percent");
}

class MaterialCheck {
public:
    MaterialCheck(const FileFindings& findings, const std::optional<TypeMethodPairs>& types,
                  CompanyMaterials& materials)
        : m_findings(findings), m_types(types), m_materials(materials) {}

    void operator()(std::int16_t record, const MaterialRecord& material) {
        m_findings.CheckNumber(record, material.MaterialId);
        m_materials.IsLive[material.MaterialId] |= material.Active; // a damaged file may have a number twice
        if (!material.Active) return;
        const auto [first, isNew] = m_customIds.try_emplace(ComparisonKey(material.CustomId), record);
        if (!isNew)
            m_findings.Add(record, "its Material ID " + Quoted(material.CustomId) + " is that of record " +
                                       std::to_string(first->second) + " too");
        if (m_types && !m_types->Find(material.MaterialType, material.ApplicationMethod))
            m_findings.Add(record, "its type and method, " + Quoted(material.MaterialType) + " and " +
                                       Quoted(material.ApplicationMethod) +
                                       ", are not in the material-type table");
        CheckNumbers(m_findings, record, material);
        if (std::isfinite(material.Density) && material.Density <= 0)
            // A finding only if the material is used: CheckDensities decides, once the usage is read.
            m_materials.WithoutDensities.push_back({record, material.MaterialId, material.Density});
    }

private:
    const FileFindings& m_findings;
    const std::optional<TypeMethodPairs>& m_types;
    CompanyMaterials& m_materials;
    std::unordered_map<std::string, std::int16_t> m_customIds; ///< the first record of each, as compared
};

/// Whether any report can have the period: a month without leading zero, "/", a year of four digits. The
/// earliest report ends with 1/1900, so it begins with 2/1899.
bool IsInSomeReport(std::string_view period) {
    const PeriodPieces pieces = SplitPeriod(period);
    const std::int16_t month = ParseInt16(pieces.Month).value_or(0);
    const std::int16_t year = ParseInt16(pieces.Year).value_or(0);
    if (month < 1 || month > 12 || year > 9999 || year < 1899 || (year == 1899 && month == 1)) return false;
    // ParseInt16 also takes 03 and 3.2; only the text that a report looks for counts.
    return Trim(period) == std::to_string(month) + '/' + std::to_string(year);
}

class UsageCheck {
public:
    UsageCheck(const FileFindings& findings, bool areMaterialsKnown, CompanyMaterials& materials)
        : m_findings(findings), m_areMaterialsKnown(areMaterialsKnown), m_materials(materials) {}

    void operator()(std::int16_t record, const UsageRecord& usage) {
        m_findings.CheckNumber(record, usage.UsageId);
        if (!usage.Active) return;
        if (m_areMaterialsKnown) CheckMaterial(record, usage); // or every record would be a finding
        CheckPeriod(record, usage);
        m_findings.CheckFinite(record, "the quantity", usage.Quantity);
        if (usage.Unit == UnitMgal) {
            m_materials.UsedInMgal.insert(usage.MaterialId);
        } else if (usage.Unit == UnitLbs) {
            m_materials.UsedInLbs.insert(usage.MaterialId);
        } else {
            m_findings.Add(record,
                           "its unit " + std::to_string(usage.Unit) + " is neither 1 (Mgal) nor 2 (lbs)");
        }
    }

private:
    void CheckMaterial(std::int16_t record, const UsageRecord& usage) const {
        const auto material = m_materials.IsLive.find(usage.MaterialId);
        if (material != m_materials.IsLive.end() && material->second) return;
        m_findings.Add(record,
                       "its material " + std::to_string(usage.MaterialId) +
                           (material == m_materials.IsLive.end() ? " does not exist" : " is deleted"));
    }
    void CheckPeriod(std::int16_t record, const UsageRecord& usage) {
        const std::string key = ComparisonKey(usage.Period);
        if (key.empty()) {
            m_findings.Add(record, "its period is empty, and every report counts it");
        } else if (!IsInSomeReport(usage.Period)) {
            m_findings.Add(record, "its period " + Quoted(usage.Period) +
                                       " is in no report; a month is written as in 3/2005");
        }
        const auto [first, isNew] =
            m_months.try_emplace(std::to_string(usage.MaterialId) + ' ' + key, record);
        if (!isNew)
            m_findings.Add(record, "its material " + std::to_string(usage.MaterialId) + " and period " +
                                       Quoted(usage.Period) + " are those of record " +
                                       std::to_string(first->second) + " too");
    }

    const FileFindings& m_findings;
    bool m_areMaterialsKnown;
    CompanyMaterials& m_materials;
    std::unordered_map<std::string, std::int16_t> m_months; ///< the first record of each material and period
};

void CheckDensities(const FileFindings& findings, const CompanyMaterials& materials) {
    for (const auto& material : materials.WithoutDensities) {
        const bool isInMgal = materials.UsedInMgal.contains(material.MaterialId);
        const bool isInLbs = materials.UsedInLbs.contains(material.MaterialId);
        if (!isInMgal && !isInLbs) continue;
        const char* const units = isInMgal && isInLbs ? "Mgal and lbs" : isInMgal ? "Mgal" : "lbs";
        findings.Add(material.Record,
                     "its density is " + NumberText(material.Density) + ", and it has use in " + units);
    }
}

Done CheckNames(FileAccess& files, const std::filesystem::path& path, const FileFindings& findings) {
    const Result<std::string> content = ReadWholeFile(files, path);
    if (!content) return content.error();
    if (!AreSix(LastCommaSeparatedValue(*content)))
        findings.Add("it does not hold six names"); // the program then takes all six as unused
    return Success();
}

} // namespace

void CheckCompany(const DataFiles& data, const CompanyFiles& files,
                  const std::optional<TypeMethodPairs>& types, const FindingTaker& take,
                  std::vector<Failure>& failures) {
    const auto keepFailure = [&](const auto& checked) {
        if (!checked) failures.push_back(checked.error());
    };
    CompanyMaterials materials;
    bool areMaterialsKnown = true; // a company without a materials file is known to have none
    const FileFindings inMaterials(PathText(MaterialsFile(data).filename()), take);
    // Before the usage, which is checked against the materials.
    if (files.HasMaterials) {
        const Result<bool> checked =
            VisitCheckedRecords(data.Files, MaterialsFile(data), MaterialLayout, inMaterials,
                                MaterialCheck(inMaterials, types, materials));
        keepFailure(checked);
        areMaterialsKnown = checked && *checked;
    }
    if (files.HasUsage) {
        const FileFindings inUsage(PathText(UsageFile(data).filename()), take);
        keepFailure(VisitCheckedRecords(data.Files, UsageFile(data), UsageLayout, inUsage,
                                        UsageCheck(inUsage, areMaterialsKnown, materials)));
        CheckDensities(inMaterials, materials);
    }
    if (files.HasNames) {
        const std::filesystem::path names = AdditionalNamesFile(data);
        keepFailure(CheckNames(data.Files, names, FileFindings(PathText(names.filename()), take)));
    }
}
} // namespace mact
