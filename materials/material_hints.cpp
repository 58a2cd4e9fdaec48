#include "materials/material_hints.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/point_value.h"

#include <algorithm>
#include <cmath>

namespace mact {
namespace {

// Between these lie the resins and gel coats of fibreglass shops, filled ones included; lb/gal.
constexpr double LightestMaterial = 7;
constexpr double HeaviestMaterial = 16;

const HapContentRecord* RowOf(const TypedMaterial& material, const std::vector<HapContentRecord>& types) {
    if (!material.MaterialType || !material.ApplicationMethod) return nullptr;
    const auto row = std::ranges::find_if(types, [&](const HapContentRecord& each) {
        return IsSameName(each.MaterialType, *material.MaterialType) &&
               IsSameName(each.ApplicationMethod, *material.ApplicationMethod);
    });
    return row == types.end() ? nullptr : &*row;
}

void AddSentence(std::string& text, const std::string& sentence) {
    text += (text.empty() ? "" : " ") + sentence;
}

std::string FiguresOf(const HapContentRecord& row, std::optional<double> content) {
    const std::optional<double> limit = LimitOf(row);
    std::string text = limit ? "Limit: " + NumberText(*limit) + " wt%." : "No HAP limit applies.";
    const double pointValue = content ? PointValue(row, *content) : 0;
    if (content && row.EfCoefficient != 0 && std::isfinite(pointValue))
        AddSentence(text, "Point value: " + NumberText(pointValue) + " kg/Mg.");
    return text;
}

std::string DoubtOfContent(double content, std::optional<double> limit) {
    const std::string text = NumberText(content);
    if (content < 0 || content > 100) return "A HAP content of " + text + " wt% cannot be: it is 0 to 100.";
    if (content > 0 && content < 1)
        return "The HAP content is a percentage: " + text + " means " + text + " %.";
    if (limit && content > *limit)
        return "A HAP content of " + text + " wt% is over the limit of " + NumberText(*limit) + " wt%.";
    return {};
}

} // namespace

MaterialHints HintsOn(const TypedMaterial& material, const std::vector<HapContentRecord>& types) {
    MaterialHints hints;
    std::string& figures = hints.Figures.Text;
    std::string& doubts = hints.Doubts.Text;
    const HapContentRecord* const row = RowOf(material, types);
    const std::optional<double> density = ParseNumber(Trim(material.Density));
    const std::optional<double> content = ParseNumber(Trim(material.HapContent));
    const std::optional<double> filler = ParseNumber(Trim(material.Filler));
    if (row) figures = FiguresOf(*row, content);
    if (material.CanHaveFiller && filler && *filler != 0)
        AddSentence(figures, "The filler is stored, but no report applies it.");
    if (material.HasEmissionFactor)
        AddSentence(figures, "The emission factor is stored, but no report applies it.");
    if (density && (*density < LightestMaterial || *density > HeaviestMaterial))
        doubts = "A density of " + NumberText(*density) + " lb/gal is unusual: resins and gel coats have " +
                 NumberText(LightestMaterial) + " to " + NumberText(HeaviestMaterial) + '.';
    if (const std::string doubt = content ? DoubtOfContent(*content, row ? LimitOf(*row) : std::nullopt) : "";
        !doubt.empty())
        AddSentence(doubts, doubt);
    hints.Doubts.IsDoubtful = !doubts.empty();
    return hints;
}
} // namespace mact
