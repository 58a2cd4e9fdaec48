#pragma once

#include "base/by_number.h"
#include "base/text_numbers.h"
#include "store/data_folder.h"
#include "store/record_file.h"
#include "transfer/import_output.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// Judges the lines of a usage import and stores the good ones.
class UsageImport {
public:
    /// Reads what the lines are compared with: the live materials and the usage that exists.
    Done Prepare(const DataFiles& data, RecordFile& usage);

    /// True when the line was rejected, false when it was stored.
    Result<bool> ImportUsageLine(const ImportedLine& line, ImportOutput& output);

private:
    struct CheckedLine;
    /// Fills `checked`, or returns the first error's message.
    std::string_view Check(CheckedLine& checked);
    void AddUsage(std::int16_t materialId, std::string_view storedPeriod);

    TextNumbers m_customIds{MostSlots}; ///< the Material IDs of the live materials, as they are compared
    std::vector<std::int16_t>
        m_materialIds; ///< by number of Material ID: the first in file order that has it
    ByNumber<std::optional<std::uint32_t>> m_customIdNumbers; ///< of each live material
    TextNumbers m_usage{MostSlots};                           ///< the months that have a record, as UsageKey
};
} // namespace mact
