#pragma once

#include "base/by_number.h"
#include "store/data_folder.h"
#include "store/record_file.h"
#include "transfer/import_output.h"
#include "transfer/text_numbers.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// Checks the lines of a usage import and stores the good ones.
class UsageImport {
public:
    /// Reads what the lines are checked against: the live materials and the live usage.
    Done Prepare(const DataFiles& data, RecordFile& usage);

    /// True if the line was rejected, false if it was stored.
    Result<bool> ImportUsageLine(const ImportedLine& line, ImportOutput& output);

private:
    struct CheckedLine;
    /// Fills `checked`, or returns the first error's message.
    std::string_view Check(CheckedLine& checked);
    Done TakeMaterials(const DataFiles& data);
    /// The number that the Material ID has in m_customIds.
    std::optional<std::uint32_t> FindCustomId(std::string_view text) const;
    void AddUsage(std::int16_t materialId, std::string_view storedPeriod);

    TextNumbers m_customIds{MostSlots}; ///< Material IDs of the live materials, as ComparisonKey
    std::vector<std::int16_t>
        m_materialNumbers; ///< by a Material ID's number: the first material in the file that has it
    ByNumber<std::optional<std::uint32_t>> m_customIdNumbers; ///< by MaterialId; live materials only
    TextNumbers m_usage{MostSlots};                           ///< the live usage, as UsageKey
};
} // namespace mact
