#include "tests/properties/simple_reports.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace mact {
namespace {

std::string Trimmed(std::string text) {
    while (!text.empty() && text.front() == ' ')
        text.erase(0, 1);
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

/// Trimmed and in capitals; enough for the letters that these tests use.
std::string Key(const std::string& text) {
    std::string key = Trimmed(text);
    for (char& character : key)
        if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
    return key;
}

std::string Number(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.15G", number == 0 ? 0 : number);
    return text;
}

std::string Grouped(double number) {
    char text[400];
    std::snprintf(text, sizeof text, "%.2f", std::abs(number));
    std::string grouped = text;
    for (int at = static_cast<int>(grouped.size()) - 6; at > 0; at -= 3)
        grouped.insert(static_cast<std::size_t>(at), ",");
    return number < 0 && grouped != "0.00" ? "-" + grouped : grouped;
}

/// Halves go to even, the default rounding.
double Rounded(double number, double powerOfTen) {
    return std::rint(number * powerOfTen) / powerOfTen;
}

const char* YesOrNo(bool isYes) {
    return isYes ? "Yes" : "No";
}

std::vector<UsageRecord> UsageIn(const ShopFiles& shop, const std::vector<std::string>& months) {
    std::vector<UsageRecord> found;
    for (const UsageRecord& usage : shop.Usage)
        if (usage.Active && std::ranges::count(months, Trimmed(usage.Period)) > 0) found.push_back(usage);
    return found;
}

std::vector<MaterialRecord> LiveMaterials(const ShopFiles& shop) {
    std::vector<MaterialRecord> found;
    for (const MaterialRecord& material : shop.Materials)
        if (material.Active) found.push_back(material);
    return found;
}

std::vector<MaterialRecord> MaterialsOf(const ShopFiles& shop, const HapContentRecord& type) {
    std::vector<MaterialRecord> found;
    for (const MaterialRecord& material : LiveMaterials(shop))
        if (Key(material.MaterialType) == Key(type.MaterialType) &&
            Key(material.ApplicationMethod) == Key(type.ApplicationMethod))
            found.push_back(material);
    return found;
}

double Pounds(const ShopFiles& shop, const std::vector<std::string>& months, const MaterialRecord& material) {
    double pounds = 0;
    for (const UsageRecord& usage : UsageIn(shop, months))
        if (usage.MaterialId == material.MaterialId)
            pounds += usage.Unit == 2 ? usage.Quantity : usage.Quantity * material.Density * 1000;
    return pounds;
}

/// A name that occurs anywhere in the names before it, joined by bars, is left out.
std::vector<std::string> SortedTypeNames(const ShopFiles& shop) {
    std::vector<std::string> names;
    std::string taken;
    for (const HapContentRecord& type : shop.Types) {
        const std::string name = Trimmed(type.MaterialType);
        if (taken.find(name) != std::string::npos) continue;
        taken += "|" + name;
        names.push_back(name);
    }
    for (std::size_t end = names.size(); end > 1; --end)
        for (std::size_t at = 1; at < end; ++at)
            if (Key(names[at]) < Key(names[at - 1])) std::swap(names[at], names[at - 1]);
    return names;
}

std::vector<HapContentRecord> OpenMethods(const ShopFiles& shop, const std::string& typeName) {
    std::vector<HapContentRecord> methods;
    for (const HapContentRecord& type : shop.Types)
        if (Key(type.MaterialType) == Key(typeName) && Trimmed(type.ApplicationMethod) != "Closed Molding")
            methods.push_back(type);
    return methods;
}

void AddCompliantRow(const ShopFiles& shop, const MaterialRecord& material, Rows& rows) {
    for (const HapContentRecord& type : shop.Types) {
        if (Key(type.MaterialType) != Key(material.MaterialType) ||
            Key(type.ApplicationMethod) != Key(material.ApplicationMethod))
            continue;
        const bool hasLimit = type.HapLimit != -1;
        rows.push_back({Trimmed(material.CustomId) + " - " + Trimmed(material.Description),
                        Trimmed(type.MaterialType) + "/" + Trimmed(type.ApplicationMethod),
                        Number(material.HapContent), hasLimit ? Number(type.HapLimit) : "No Limit",
                        YesOrNo(!hasLimit || material.HapContent <= type.HapLimit)});
        return;
    }
}

const Rows NoRecord = {{"No record found"}};

bool HasNothing(const ShopFiles& shop, const std::vector<std::string>& months) {
    return UsageIn(shop, months).empty() || LiveMaterials(shop).empty();
}

} // namespace

Rows CompliantRows(const ShopFiles& shop) {
    Rows rows;
    for (const MaterialRecord& material : LiveMaterials(shop))
        AddCompliantRow(shop, material, rows);
    return LiveMaterials(shop).empty() ? NoRecord : rows;
}

Rows CompliantRows(const ShopFiles& shop, const std::vector<std::string>& months) {
    if (HasNothing(shop, months)) return NoRecord;
    Rows rows;
    for (const UsageRecord& usage : UsageIn(shop, months)) {
        for (const MaterialRecord& material : LiveMaterials(shop)) {
            if (material.MaterialId != usage.MaterialId) continue;
            AddCompliantRow(shop, material, rows);
            break;
        }
    }
    return rows;
}

Rows WeightedAverageRows(const ShopFiles& shop, const std::vector<std::string>& months) {
    Rows rows;
    for (const std::string& name : SortedTypeNames(shop)) {
        if (Key(name) == "TOOLING RESIN (FILLED)" || Key(name) == "PRODUCTION RESIN (FILLED)") continue;
        rows.push_back({"Material : " + name});
        for (const HapContentRecord& type : OpenMethods(shop, name)) {
            double amount = 0;
            double hap = 0;
            for (const MaterialRecord& material : MaterialsOf(shop, type)) {
                const double pounds = Pounds(shop, months, material);
                const double kilograms = pounds > 0 ? Rounded(pounds / 2.2046, 100) : 0;
                amount += kilograms;
                hap += kilograms * material.HapContent / 100;
            }
            const double content = amount == 0 || hap == 0 ? 0 : Rounded(hap / amount * 100, 100);
            const bool hasLimit = type.HapLimit != -1;
            rows.push_back({Trimmed(type.ApplicationMethod), Number(Rounded(amount / 1000, 1000)),
                            hasLimit ? Number(type.HapLimit) : "No Limit", Number(Rounded(content, 100)),
                            YesOrNo(!hasLimit || content <= type.HapLimit)});
        }
    }
    return rows;
}

Rows EmissionAverageRows(const ShopFiles& shop, const std::vector<std::string>& months) {
    Rows rows;
    double total = 0;
    double allowance = 0;
    for (const std::string& name : SortedTypeNames(shop)) {
        rows.push_back({"Material : " + name});
        for (const HapContentRecord& type : OpenMethods(shop, name)) {
            const std::string method = Trimmed(type.ApplicationMethod);
            double groupAmount = 0;
            double groupEmission = 0;
            for (const MaterialRecord& material : MaterialsOf(shop, type)) {
                const double pointValue =
                    Rounded(type.EfCoefficient * std::pow(material.HapContent, type.EfExponent), 100);
                const double pounds = Pounds(shop, months, material);
                const double amount = pounds > 0 ? Rounded(pounds / 2.2046 / 1000, 100) : 0;
                groupAmount += amount;
                groupEmission += pointValue * amount;
                std::string label = method + " (Material ID:" + material.CustomId;
                label.resize(label.size() + 100 - material.CustomId.size(), ' ');
                rows.push_back({label + ")", Number(material.HapContent), Number(pointValue), Number(amount),
                                Number(Rounded(pointValue * amount, 100))});
            }
            if (groupAmount != 0) {
                rows.push_back({method + " (TOTAL)", Number(groupAmount), Number(groupEmission)});
            } else {
                rows.push_back({method + " (TOTAL)", " Not Used"});
            }
            total += groupEmission;
            allowance += groupAmount * type.EmissionLimit;
        }
    }
    rows.push_back({"Total PV HAP Emissions (kg/yr)  ", Number(Rounded(total, 100))});
    rows.push_back({"HAP Limit (kg/yr)  ", Number(Rounded(allowance, 100))});
    rows.push_back({"Compliant ?  ", YesOrNo(total <= allowance)});
    return rows;
}

Rows AdditionalUsageRows(const ShopFiles& shop, const std::vector<std::string>& months) {
    if (HasNothing(shop, months)) return NoRecord;
    Rows rows;
    for (const MaterialRecord& material : LiveMaterials(shop)) {
        const double pounds = Pounds(shop, months, material);
        if (!(pounds > 0)) continue;
        rows.push_back({Trimmed(material.CustomId), Number(pounds), shop.Names[0], Number(material.Content1),
                        Number(material.Factor1)});
        for (std::size_t slot = 1; slot < 6; ++slot)
            if (Trimmed(shop.Names[slot]) != "-")
                rows.push_back({"&nbsp;", "&nbsp;", shop.Names[slot],
                                Number(material.*PollutantContents[slot]),
                                Number(material.*PollutantFactors[slot])});
    }
    return rows;
}

Rows AdditionalEmissionRows(const ShopFiles& shop, const std::vector<std::string>& months) {
    if (HasNothing(shop, months)) return NoRecord;
    Rows rows;
    double all = 0;
    for (std::size_t slot = 0; slot < 6; ++slot) {
        if (Trimmed(shop.Names[slot]) == "-") continue;
        double total = 0;
        for (const MaterialRecord& material : LiveMaterials(shop)) {
            const double kilograms = Rounded(Pounds(shop, months, material) / 2.2046, 100);
            total += Rounded(material.*PollutantContents[slot] / 100 * kilograms *
                                 (material.*PollutantFactors[slot] / 100),
                             1);
        }
        rows.push_back({shop.Names[slot], Grouped(total)});
        all += total;
    }
    rows.push_back({"Total", Grouped(all)});
    return rows;
}

Rows RowsOfPage(const std::string& page) {
    Rows rows;
    for (std::size_t row = page.find("<tr>"); row != std::string::npos; row = page.find("<tr>", row + 1)) {
        const std::size_t rowEnd = page.find("</tr>", row);
        rows.emplace_back();
        for (std::size_t cell = page.find("<td", row); cell < rowEnd; cell = page.find("<td", cell + 1)) {
            std::string text;
            bool isTag = false;
            for (const char character : page.substr(cell, page.find("</td>", cell) - cell)) {
                if (character == '<') isTag = true;
                if (!isTag) text += character;
                if (character == '>') isTag = false;
            }
            rows.back().push_back(text);
        }
    }
    if (!rows.empty()) rows.erase(rows.begin()); // the header row
    return rows;
}
} // namespace mact
