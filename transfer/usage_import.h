#pragma once

#include "base/app_context.h"
#include "transfer/import_output.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

/// Judges the lines of a usage import and stores the good ones.
class UsageImport {
public:
    /// Reads what the lines are compared with: the live materials and the usage that exists.
    Done Prepare(AppContext& app, RecordFile& usage);

    /// True when the line was rejected, false when it was stored.
    Result<bool> ImportUsageLine(const ImportedLine& line, ImportOutput& output);

private:
    struct CheckedLine;
    /// Fills `checked`, or returns the first error's message.
    std::string_view Check(CheckedLine& checked) const;
    void AddUsage(std::int16_t materialId, std::string_view storedPeriod);

    /// The live material that a Material ID, as it is compared, stands for: the first in file order.
    std::unordered_map<std::string, std::int16_t> m_materialIds;
    /// The Material ID of a live material, as it is compared.
    std::unordered_map<std::int16_t, std::string> m_materialTexts;
    std::unordered_set<std::string> m_usage; ///< Material ID and period, joined by "|", as they are compared
};
