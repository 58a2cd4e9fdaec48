#pragma once

#include "base/app_context.h"
#include "base/text_numbers.h"
#include "materials/material_record.h"
#include "store/material_types.h"
#include "transfer/import_output.h"

#include <string>

namespace mact {

/// Judges the lines of a material import and stores the good ones.
class MaterialImport {
public:
    /// Reads what the lines are compared with: the material-type table and the materials that exist.
    Done Prepare(AppContext& app, RecordFile& materials);

    /// True when the line was rejected, false when it was stored.
    Result<bool> ImportMaterialLine(const ImportedLine& line, ImportOutput& output);

private:
    struct CheckedLine;
    /// Fills `checked`, or returns the first error's message.
    std::string_view Check(CheckedLine& checked);

    TypeMethodPairs m_typesAndMethods;
    TextNumbers m_customIds{MostSlots}; ///< of the live materials, as they are compared
    std::string m_key;                  ///< what is compared
    MaterialRecord m_record;            ///< what is stored
};

} // namespace mact
