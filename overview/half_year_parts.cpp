#include "overview/half_year_parts.h"

#include "base/text.h"
#include "overview/overview_csv.h"

#include <map>
#include <optional>
#include <utility>

namespace mact {
namespace {

/// What was used of a material in a window.
struct UsedKg {
    double Kg = 0;
    std::size_t Findings = 0; ///< that make it not trusted
};
/// In the windows of the six month ends; empty where the figure is not in trouble.
using KgOfMonths = std::array<std::optional<UsedKg>, MonthsOfHalfYear>;

/// A figure that is over or differs at some month end.
struct Trouble {
    std::string Title{};                           ///< UTF-8
    std::vector<std::size_t> Months{};             ///< of the six
    std::vector<std::string> States{};             ///< of these
    std::map<std::size_t, KgOfMonths> Materials{}; ///< in file order
};
/// The kinds of figures, in the order of the page, and a number among their kind.
enum class TroubleKind { Content, Filled, Average };
using TroubleKey = std::pair<TroubleKind, std::size_t>;
using Troubles = std::map<TroubleKey, Trouble>;

constexpr TroubleKey OfAverage{TroubleKind::Average, 0};

/// A user's own pairs come after the rows of Table 2.
TroubleKey KeyOfContent(std::optional<std::size_t> row, std::size_t pair) {
    return {TroubleKind::Content, row ? *row : TableTwoRows.size() + pair};
}

void NoteTrouble(Troubles& troubles, TroubleKey key, std::string title, const Verdict& judged,
                 std::size_t month) {
    if (!IsTrouble(judged.Is)) return;
    Trouble& trouble = troubles[key];
    trouble.Title = std::move(title);
    trouble.Months.push_back(month);
    trouble.States.push_back(VerdictText(judged, WindowMonths));
}

/// If the figure is in trouble at the month end, the material is among those listed.
void NoteMaterial(Troubles& troubles, TroubleKey key, const UsedMaterial& used,
                  const UntrustedFigures& untrusted, std::size_t month) {
    const auto trouble = troubles.find(key);
    if (trouble == troubles.end() || trouble->second.Months.back() != month) return;
    const auto findings = untrusted.AmountOfMaterial.find(used.Material);
    trouble->second.Materials[used.Material][month] = {
        .Kg = used.KgReport, .Findings = findings == untrusted.AmountOfMaterial.end() ? 0 : findings->second};
}

void NoteTroubles(const ShopFigures& shop, const PackMonth& monthEnd, std::size_t month, Troubles& troubles) {
    const auto& [figures, untrusted] = monthEnd;
    for (const ContentFigure& content : figures.Contents)
        NoteTrouble(troubles, KeyOfContent(content.Row, content.Pair.value_or(0)),
                    "Content of " + Utf8FromCodePage(content.Item), content.Judged, month);
    for (const FilledFigure& filled : figures.Filled)
        NoteTrouble(troubles, {TroubleKind::Filled, filled.Material},
                    "Filled resin " + NameOfMaterial(shop, filled.Material), filled.Judged, month);
    NoteTrouble(troubles, OfAverage, "Emission average of all operations", figures.Average.Judged, month);
    if (troubles.empty()) return;
    for (const UsedMaterial& used : shop.UsedInWindow(figures.MonthEnd)) {
        const UseClass& its = shop.ClassOfRow(used.Row);
        if (its.Kind == UseKind::ClosedMolding) continue;
        NoteMaterial(troubles, OfAverage, used, untrusted, month);
        const bool isFilled = its.Kind == UseKind::Filled;
        NoteMaterial(troubles,
                     isFilled ? TroubleKey{TroubleKind::Filled, used.Material}
                              : KeyOfContent(its.Row, used.Row),
                     used, untrusted, month);
    }
}

std::string MaterialRowHtml(const ShopFigures& shop, std::size_t number, const KgOfMonths& kg,
                            const std::vector<std::size_t>& months) {
    const ShopMaterial& material = shop.Shop().Materials[number];
    std::string html = "<tr><th scope=\"row\">" + HtmlOfCodePage(material.CustomId) + "</th><td>";
    AppendAll(html, HtmlOfCodePage(material.MaterialType), ", ", HtmlOfCodePage(material.ApplicationMethod),
              "</td><td class=\"number\">", ReportText(material.HapContent), "</td>");
    for (const std::size_t month : months) {
        html += "<td class=\"number\">";
        if (kg[month]) AppendAll(html, ReportText(kg[month]->Kg), UntrustedHtml(kg[month]->Findings));
        html += "</td>";
    }
    return html + "</tr>\r\n";
}

std::string TroubleHtml(const ShopFigures& shop, const Trouble& trouble, HalfYear half) {
    const auto monthEnds = MonthEndsOf(half);
    std::string html = "<h3>" + HtmlText(trouble.Title) + "</h3>\r\n<p>";
    std::vector<MonthNumber> shown;
    for (std::size_t index = 0; index < trouble.Months.size(); ++index) {
        shown.push_back(monthEnds[trouble.Months[index]]);
        AppendAll(html, index == 0 ? "" : "; ", ShortMonthName(shown.back()), ": ",
                  HtmlText(trouble.States[index]));
    }
    AppendAll(
        html,
        ". Kilograms used in the twelve months ending:</p>\r\n<table>\r\n<thead><tr><th scope=\"col\">"
        "Material</th><th scope=\"col\">Type and method</th><th scope=\"col\" class=\"number\">Content, %"
        "</th>",
        MonthsHead(shown));
    for (const auto& [number, kg] : trouble.Materials)
        html += MaterialRowHtml(shop, number, kg, trouble.Months);
    return html + "</tbody></table>\r\n";
}

} // namespace

std::string VerdictText(const Verdict& judged, int months) {
    std::string text = StateText(judged.Is, months);
    if (judged.Why != Cause::None) AppendAll(text, " (", CauseText(judged.Why), ")");
    return text;
}

std::string UntrustedHtml(std::size_t findings) {
    if (findings == 0) return {};
    return "<span class=\"differs\">" + UntrustedText(findings) + "</span>";
}

std::string NameOfMaterial(const ShopFigures& shop, std::size_t material) {
    return Utf8FromCodePage(Trim(shop.Shop().Materials[material].CustomId));
}

std::string MonthsHead(const std::vector<MonthNumber>& months) {
    std::string html;
    for (const MonthNumber month : months)
        AppendAll(html, "<th scope=\"col\" class=\"number\">", ShortMonthName(month), "</th>");
    return html + "</tr></thead>\r\n<tbody>\r\n";
}

std::string BlankLines(int count) {
    std::string html;
    for (int line = 0; line < count; ++line)
        html += "<div class=\"line\"></div>\r\n";
    return html;
}

std::string DeviationsHtml(const ShopFigures& shop, const SixMonths& six, HalfYear half) {
    Troubles troubles;
    for (std::size_t month = 0; month < six.size(); ++month)
        NoteTroubles(shop, six[month], month, troubles);
    std::string html = "<h2>Deviations</h2>\r\n";
    html += troubles.empty() ? "<p>No figure above is \"over\" or \"differs\".</p>\r\n"
                             : "<p>The materials of every figure above that is \"over\" or "
                               "\"differs\".</p>\r\n";
    for (const auto& [key, trouble] : troubles)
        html += TroubleHtml(shop, trouble, half);
    if (!troubles.empty()) html += "<p>Cause, and what was done:</p>\r\n";
    return html + BlankLines(4);
}
} // namespace mact
