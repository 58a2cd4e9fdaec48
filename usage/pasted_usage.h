#pragma once

#include "usage/month_sheet.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Cells copied from a spreadsheet, pasted into a month's sheet. All texts are code-page text.

/// A line of pasted text.
struct PastedLine {
    int Number = 0;  ///< counted from 1, blank ones too
    int Columns = 0; ///< with the blank ones at the end
    std::vector<std::string>
        Cells{}; ///< without surrounding blanks and quotes; blank ones at the end are left out
};
/// The lines of cells separated by tabs. CR LF, LF or CR ends a line. A cell in quotes may hold tabs and line
/// ends, and its quotes are doubled; quotes that do not enclose a whole cell are part of it.
std::vector<PastedLine> SplitPastedText(std::string_view text);

/// The number that a cell shows, as the usage editor takes it: 1,250.5 becomes 1250.5. Empty if it is none.
std::optional<std::string> PastedQuantity(std::string_view cell);
/// lbs, lb, Mgal, mg or mgs in any case, as imports have them; 0 = none of them.
std::int16_t PastedUnit(std::string_view cell);

/// A line that could not be understood, and why.
struct UnmatchedLine {
    int Number = 0;       ///< counted from 1
    std::string Text{};   ///< the line's cells, with tabs between them
    std::string Reason{}; ///< a whole sentence
};
struct PasteOutcome {
    std::vector<std::size_t> Rows{}; ///< those entered, in the order of the lines
    std::vector<UnmatchedLine> Unmatched{};
};
/// Enters the pasted cells into the sheet. If no line has more than one column, they are quantities for the
/// rows from `firstRow` on, and a blank line leaves its row alone. Otherwise each line has a Material ID, a
/// quantity and perhaps a unit, and materials without a row get one. What cannot be understood leaves the
/// sheet alone, and so does a line without a quantity. A heading above quantities takes no row.
PasteOutcome Paste(MonthSheet& sheet, std::string_view text, std::size_t firstRow = 0);
} // namespace mact
