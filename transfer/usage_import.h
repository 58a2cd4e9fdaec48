#pragma once

#include "base/app_context.h"
#include "base/text_numbers.h"
#include "transfer/import_output.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mact {

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
    std::string_view Check(CheckedLine& checked);
    void AddUsage(std::int16_t materialId, std::string_view storedPeriod);

    TextNumbers m_customIds{MostSlots};      ///< the Material IDs of the live materials, as they are compared
    std::vector<std::int16_t> m_materialIds; ///< by Material ID: the first in file order that has it
    /// The number of the Material ID of each live material, by the material's number; -1 = none.
    std::vector<int> m_customIdNumbers = std::vector<int>(std::size_t{1} << 16, -1);
    TextNumbers m_usage{MostSlots}; ///< periods as they are compared, each with a Material ID's number
    std::string m_key;              ///< what is compared
};

} // namespace mact
