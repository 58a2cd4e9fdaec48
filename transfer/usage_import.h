#pragma once

#include "base/app_context.h"
#include "transfer/import_output.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

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

    struct NamedMaterial {
        std::int16_t MaterialId; ///< the first in file order that has the Material ID
        int TextNumber;          ///< counts the different Material IDs
    };
    std::unordered_map<std::string, NamedMaterial> m_materials; ///< live, by Material ID as it is compared
    /// The number of the Material ID of each live material, by the material's number; -1 = none.
    std::vector<int> m_textNumbers = std::vector<int>(std::size_t{1} << 16, -1);
    std::unordered_set<std::string>
        m_usage; ///< periods as they are compared, each with a Material ID's number
};
