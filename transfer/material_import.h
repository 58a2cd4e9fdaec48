#pragma once

#include "materials/material_record.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "transfer/import_output.h"
#include "transfer/text_numbers.h"

#include <string>
#include <string_view>

namespace mact {

/// Checks the lines of a material import and stores the good ones.
class MaterialImport {
public:
    /// Reads what the lines are checked against: the material-type table and the existing materials.
    Done Prepare(const DataFiles& data, RecordFile& materials);

    /// True if the line was rejected, false if it was stored.
    Result<bool> ImportMaterialLine(const ImportedLine& line, ImportOutput& output);

private:
    struct CheckedLine;
    /// Fills `checked`, or returns the first error's message.
    std::string_view Check(CheckedLine& checked);
    /// Whether a live material has this Material ID.
    bool IsTaken(std::string_view customId) const;

    TypeMethodPairs m_typesAndMethods;
    TextNumbers m_customIds{MostSlots}; ///< of the live materials, as ComparisonKey
    MaterialRecord m_record;            ///< reused for every line: its texts keep their memory
};
} // namespace mact
