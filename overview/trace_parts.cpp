#include "overview/trace_parts.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/units.h"

#include <cmath>
#include <limits>

namespace mact {
namespace {

std::string UnitText(std::int16_t unit) {
    if (unit == UnitLbs) return "lbs";
    if (unit == UnitMgal) return "Mgal";
    return "of the unknown unit " + WholeNumberText(unit) + ", counted as Mgal";
}

/// With the quantity in pounds and kilograms.
std::string ConvertedUseText(const ShopRecords& shop, const ShopUse& use, double density) {
    const Result<double> converted = ConvertQuantity(use.Quantity, density, use.Unit, UnitLbs);
    const double pounds = converted ? *converted : std::numeric_limits<double>::quiet_NaN();
    const std::string factor =
        use.Unit == UnitLbs ? std::string() : LineOf(" * ", TracedNumber(density), " lb/gal * 1000");
    return LineOf(UseText(shop, use), factor, " = ", TracedNumber(pounds),
                  " lb = ", TracedNumber(Kilograms(pounds)), " kg");
}

std::string MaterialText(const ShopFigures& shop, const UsedMaterial& used) {
    const ShopMaterial& material = shop.Shop().Materials[used.Material];
    const HapContentRecord& row = shop.Shop().Types[used.Row];
    return LineOf(TracedText(material.CustomId), ": ", TracedText(material.MaterialType), ", ",
                  TracedText(material.ApplicationMethod), "; density ", TracedNumber(material.Density),
                  " lb/gal; h ", TracedNumber(material.HapContent), " %; f ", TracedNumber(material.Filler),
                  " %; c ", TracedNumber(row.EfCoefficient), "; e ", TracedNumber(row.EfExponent), "; K ",
                  TracedNumber(row.EmissionLimit), " kg/Mg; p ", TracedNumber(used.PointValueReport),
                  " kg/Mg; a ", TracedNumber(used.KgReport), " kg; m ", TracedNumber(used.MgReport), " Mg");
}

} // namespace

std::string TracedNumber(double number) {
    return std::isfinite(number) ? NumberText(number) : "no finite number";
}

std::string TracedText(std::string_view codePageText) {
    return Printable(Utf8FromCodePage(Trim(codePageText)));
}

std::string ReportPointValueFormula(const HapContentRecord& row, double hapContent) {
    return LineOf("round2(", TracedNumber(row.EfCoefficient), " * ", TracedNumber(hapContent), "^",
                  TracedNumber(row.EfExponent), ")");
}

std::string ExactPointValueFormula(const ShopFigures& shop, const UsedMaterial& used) {
    const ShopMaterial& material = shop.Shop().Materials[used.Material];
    const HapContentRecord& row = shop.Shop().Types[used.Row];
    const bool isFilled = shop.ClassOfRow(used.Row).Kind == UseKind::Filled;
    const std::string factor =
        isFilled ? LineOf(" * (100 - ", TracedNumber(material.Filler), ") / 100") : std::string();
    return LineOf(TracedNumber(row.EfCoefficient), " * ", TracedNumber(material.HapContent), "^",
                  TracedNumber(row.EfExponent), factor);
}

std::string ReportEmissionText(const ShopFigures& shop, const UsedMaterial& used) {
    const HapContentRecord& row = shop.Shop().Types[used.Row];
    const double content = shop.Shop().Materials[used.Material].HapContent;
    const std::string pounds = TracedNumber(used.Pounds);
    return LineOf("Report: p = ", ReportPointValueFormula(row, content), " = ",
                  TracedNumber(used.PointValueReport), " kg/Mg; m = round2(", pounds,
                  " / 2.2046 / 1000) = ", TracedNumber(used.MgReport),
                  " Mg; p * m = ", TracedNumber(used.PointValueReport * used.MgReport),
                  " kg; K * m = ", TracedNumber(row.EmissionLimit * used.MgReport), " kg");
}

std::string ExactEmissionText(const ShopFigures& shop, const UsedMaterial& used) {
    const HapContentRecord& row = shop.Shop().Types[used.Row];
    return LineOf("Exact: p = ", ExactPointValueFormula(shop, used), " = ",
                  TracedNumber(used.PointValueExact), " kg/Mg; m = ", TracedNumber(used.Pounds),
                  " / 2.2046 / 1000 = ", TracedNumber(used.Megagrams()),
                  " Mg; p * m = ", TracedNumber(used.PointValueExact * used.Megagrams()),
                  " kg; K * m = ", TracedNumber(row.EmissionLimit * used.Megagrams()), " kg");
}

std::string UseText(const ShopRecords& shop, const ShopUse& use) {
    return LineOf(shop.UsageName, ", record ", WholeNumberText(use.Record), ", period \"",
                  Printable(Utf8FromCodePage(use.Period)), "\": ", TracedNumber(use.Quantity), " ",
                  UnitText(use.Unit));
}

TraceNode MaterialNode(const ShopFigures& shop, const UsedMaterial& used,
                       const std::vector<std::string>& calculations, MonthNumber monthEnd,
                       bool isMonthAlone) {
    TraceNode node{.Text = MaterialText(shop, used), .Material = used.Material};
    for (const std::string& calculation : calculations)
        node.Children.push_back({.Text = calculation});
    node.Children.push_back(
        {.Text = LineOf("lb = ", TracedNumber(used.Pounds), ", the sum of these usage records:")});
    const ShopRecords& records = shop.Shop();
    for (const std::size_t place : shop.UsesInWindow(used.Material, monthEnd)) {
        const ShopUse& use = records.Usage[place];
        if (isMonthAlone && MonthOfPeriod(use.Period) != monthEnd) continue;
        node.Children.push_back(
            {.Text = ConvertedUseText(records, use, records.Materials[used.Material].Density), .Use = place});
    }
    return node;
}
} // namespace mact
