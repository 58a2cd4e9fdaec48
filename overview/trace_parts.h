#pragma once

#include "overview/shop_figures.h"
#include "overview/trace.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The lowest parts of a traced figure. All texts made here are UTF-8.

/// One line of the pieces.
template <class... Pieces> std::string LineOf(const Pieces&... pieces) {
    std::string line;
    (line.append(std::string_view(pieces)), ...);
    return line;
}
/// At most 15 digits, or words if it is not finite.
std::string TracedNumber(double number);
/// Code-page text from a record.
std::string TracedText(std::string_view codePageText);

/// 0.014 * 40^2.275 * (100 - 26) / 100
std::string ExactPointValueFormula(const ShopFigures& shop, const UsedMaterial& used);
/// round2(0.014 * 40^2.275)
std::string ReportPointValueFormula(const HapContentRecord& row, double hapContent);

/// What a material adds to emissions and allowance: p * m and K * m with their numbers filled in.
std::string ReportEmissionText(const ShopFigures& shop, const UsedMaterial& used);
std::string ExactEmissionText(const ShopFigures& shop, const UsedMaterial& used);

/// A usage record with its file, number, period, quantity and unit as stored.
std::string UseText(const ShopRecords& shop, const ShopUse& use);

/// A material with all that is known of it; below it `calculations`, its pounds and its usage records of the
/// month end's window, or of that month alone.
TraceNode MaterialNode(const ShopFigures& shop, const UsedMaterial& used,
                       const std::vector<std::string>& calculations, MonthNumber monthEnd, bool isMonthAlone);
} // namespace mact
