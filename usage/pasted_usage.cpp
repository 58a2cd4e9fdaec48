#include "usage/pasted_usage.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/units.h"

#include <algorithm>
#include <cctype>

namespace mact {
namespace {

/// Spaces, tabs, and the no-break spaces that spreadsheets use in numbers.
std::string_view TrimBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\xA0";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool IsLineEnd(char character) {
    return character == '\n' || character == '\r';
}

/// Takes a cell off the front of `text`, if it is a whole one in quotes.
std::optional<std::string> TakeQuoted(std::string_view& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos || text[first] != '"') return std::nullopt;
    std::string cell;
    for (std::size_t at = first + 1; at < text.size(); ++at) {
        const bool isQuote = text[at] == '"';
        const bool isDoubled = isQuote && text.substr(at + 1).starts_with('"');
        if (isQuote && !isDoubled) {
            const std::size_t end = std::min(text.find_first_not_of(' ', at + 1), text.size());
            if (end < text.size() && text[end] != '\t' && !IsLineEnd(text[end])) return std::nullopt;
            text.remove_prefix(end);
            return cell;
        }
        cell += text[at];
        if (isDoubled) ++at;
    }
    return std::nullopt;
}

/// Takes the next cell off the front of `text`, up to the tab or line end behind it.
std::string TakeCell(std::string_view& text) {
    std::optional<std::string> quoted = TakeQuoted(text);
    if (!quoted) {
        const std::size_t end = std::min(text.find_first_of("\t\r\n"), text.size());
        quoted = text.substr(0, end);
        text.remove_prefix(end);
    }
    return std::string(TrimBlanks(*quoted));
}

/// Whether the commas stand where thousands are separated: with the comma of other countries it is no number
/// here.
bool HasGroups(std::string_view number) {
    if (number.starts_with('-') || number.starts_with('+')) number.remove_prefix(1);
    const std::string_view whole = number.substr(0, number.find('.'));
    const std::string_view rest = number.substr(whole.size());
    const std::vector<std::string_view> groups = Split(whole, ',');
    if (groups.front().empty() || groups.front().size() > 3 || groups.front().starts_with('0')) return false;
    const bool areThree = std::all_of(groups.begin() + 1, groups.end(),
                                      [](std::string_view group) { return group.size() == 3; });
    return areThree && whole.find_first_not_of("0123456789,") == std::string_view::npos &&
           rest.find(',') == std::string_view::npos;
}

std::string TextOf(const PastedLine& line) {
    std::string text;
    for (std::size_t index = 0; index < line.Cells.size(); ++index) {
        if (index > 0) text += '\t';
        text += line.Cells[index];
    }
    std::ranges::replace_if(text, IsLineEnd, ' ');
    return text;
}

/// Words above a column of quantities.
bool IsHeading(const PastedLine& line) {
    if (line.Cells.empty()) return false;
    const std::string& cell = line.Cells[0];
    const auto isLetter = [](char character) {
        return std::isalpha(static_cast<unsigned char>(character)) != 0;
    };
    return std::ranges::any_of(cell, isLetter) && cell.find_first_of("0123456789") == std::string::npos;
}

/// Enters lines into a sheet, one after the other.
class Paster {
public:
    Paster(MonthSheet& sheet, std::size_t firstRow) : m_sheet(sheet), m_nextRow(firstRow) {}

    /// A quantity for the next row.
    void EnterInOrder(const PastedLine& line) {
        if (line.Number == 1 && IsHeading(line))
            return Refuse(line, "It was taken for a heading; the quantities begin with the next line.");
        const std::size_t row = m_nextRow++;
        if (line.Cells.empty()) return;
        const std::optional<std::string> quantity = PastedQuantity(line.Cells[0]);
        if (!quantity)
            Refuse(line, "The quantity is not a number.");
        else if (row >= m_sheet.Rows().size())
            Refuse(line, "There is no row left for it.");
        else
            Enter(row, *quantity, 0);
    }

    /// A Material ID, a quantity and perhaps a unit.
    void EnterById(const PastedLine& line) {
        if (line.Cells.empty()) return;
        if (line.Cells.size() > 3) return Refuse(line, "It has more than three columns.");
        if (line.Cells[0].empty()) return Refuse(line, "It has no Material ID.");
        const SheetMaterial* const material = m_sheet.Records().Find(line.Cells[0]);
        if (!material) return Refuse(line, "There is no material with this Material ID.");
        const std::string cell = line.Cells.size() > 1 ? line.Cells[1] : std::string();
        if (cell.empty()) return; // nothing was used
        const std::optional<std::string> quantity = PastedQuantity(cell);
        if (!quantity) return Refuse(line, "The quantity is not a number.");
        const std::int16_t unit = line.Cells.size() > 2 ? PastedUnit(line.Cells[2]) : std::int16_t{0};
        if (line.Cells.size() > 2 && unit == 0) return Refuse(line, "The unit is neither Mgal nor lbs.");
        int& earlier = m_lineOf[material->MaterialId];
        if (earlier != 0)
            return Refuse(line, "The material is in line " + std::to_string(earlier) + " already.");
        earlier = line.Number;
        Enter(*m_sheet.AddRow(line.Cells[0]), *quantity, unit);
    }

    PasteOutcome Outcome{};

private:
    void Enter(std::size_t row, std::string_view quantity, std::int16_t unit) {
        m_sheet.EnterQuantity(row, quantity);
        if (unit != 0) m_sheet.SelectUnit(row, unit);
        Outcome.Rows.push_back(row);
    }
    void Refuse(const PastedLine& line, std::string_view reason) {
        Outcome.Unmatched.push_back({line.Number, TextOf(line), std::string(reason)});
    }

    MonthSheet& m_sheet;
    std::size_t m_nextRow;
    std::unordered_map<std::int16_t, int> m_lineOf; ///< by number of the material
};

} // namespace

std::vector<PastedLine> SplitPastedText(std::string_view text) {
    std::vector<PastedLine> lines;
    while (!text.empty()) {
        PastedLine& line = lines.emplace_back(PastedLine{.Number = static_cast<int>(lines.size()) + 1});
        for (;;) {
            line.Cells.push_back(TakeCell(text));
            ++line.Columns;
            if (!text.starts_with('\t')) break;
            text.remove_prefix(1);
        }
        while (!line.Cells.empty() && line.Cells.back().empty())
            line.Cells.pop_back();
        text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(text.size(), 1));
    }
    return lines;
}

std::optional<std::string> PastedQuantity(std::string_view cell) {
    std::string number(TrimBlanks(cell));
    if (number.find(',') != std::string::npos) {
        if (!HasGroups(number)) return std::nullopt;
        std::erase(number, ',');
    }
    if (!IsNumeric(number)) return std::nullopt;
    return number;
}

std::int16_t PastedUnit(std::string_view cell) {
    const auto is = [&](std::string_view unit) { return EqualsIgnoringCase(TrimBlanks(cell), unit); };
    if (is("lbs") || is("lb")) return UnitLbs;
    if (is("Mgal") || is("mg") || is("mgs")) return UnitMgal;
    return 0;
}

PasteOutcome Paste(MonthSheet& sheet, std::string_view text, std::size_t firstRow) {
    const std::vector<PastedLine> lines = SplitPastedText(text);
    // Blank columns count: Material IDs that are numbers would be taken for quantities, if none is beside
    // them.
    const bool isOneColumn =
        std::ranges::all_of(lines, [](const PastedLine& line) { return line.Columns <= 1; });
    Paster paster(sheet, firstRow);
    for (const PastedLine& line : lines)
        if (isOneColumn)
            paster.EnterInOrder(line);
        else
            paster.EnterById(line);
    return std::move(paster.Outcome);
}
} // namespace mact
