#include "base/numbers.h"
#include "overview/overview_csv.h"
#include "overview/shop_figures.h"
#include "reports/emission_average_report.h"
#include "reports/reports.h"
#include "tests/overview/generated_shop.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/random_data.h"

#include <gtest/gtest.h>

#include <map>

namespace mact {
namespace {

/// The texts of the cells of each row of a page, without the tags.
std::vector<std::vector<std::string>> RowsOf(const std::string& page) {
    std::vector<std::vector<std::string>> rows;
    bool isTag = false;
    bool isCell = false;
    std::string tag;
    for (const char character : page) {
        if (character == '<') {
            isTag = true;
            tag.clear();
        } else if (character == '>') {
            isTag = false;
            if (tag == "tr") rows.emplace_back();
            if (tag.starts_with("td") && !rows.empty()) rows.back().emplace_back();
            isCell = isCell ? tag != "/td" : tag.starts_with("td");
        } else if (isTag) {
            tag += character;
        } else if (isCell && !rows.empty()) {
            rows.back().back() += character;
        }
    }
    return rows;
}

class AgreementShop : public OverviewShop {
public:
    explicit AgreementShop(unsigned seed) : Made(GenerateShop(seed)) {
        ImportMaterials(Made.MaterialLines());
        ImportUsage(Made.UsageLines());
    }
    std::vector<std::vector<std::string>>
    Page(const char* file, std::int16_t (*generate)(AppContext&, const ReportPeriod&), MonthNumber monthEnd) {
        EXPECT_EQ(generate(App, {.EndText = MonthText(monthEnd)}), ReportPublished);
        return RowsOf(ContentOf(ProgramFile(file)));
    }
    const GeneratedShop Made;
};

/// The text in the last cell of the row that begins with `label`.
std::string LastCell(const std::vector<std::vector<std::string>>& rows, const std::string& label) {
    for (const std::vector<std::string>& row : rows)
        if (!row.empty() && row.front().starts_with(label)) return row.back();
    return "no such row";
}

std::map<std::string, FigureLine> LinesByName(const ShopFigures& shop, MonthNumber monthEnd) {
    std::map<std::string, FigureLine> lines;
    for (const FigureLine& line : LinesOf(shop, shop.At(monthEnd)))
        lines[std::string(line.Figure) + ' ' + line.Item] = line;
    return lines;
}

void ExpectEmissions(AgreementShop& program, const ShopFigures& shop, MonthNumber monthEnd) {
    const auto page = program.Page(EmissionAverageFile, GenerateEmissionAverageReport, monthEnd);
    const auto lines = LinesByName(shop, monthEnd);
    EXPECT_EQ(lines.at("emissions ").Report, LastCell(page, "Total PV HAP Emissions"));
    EXPECT_EQ(lines.at("allowance ").Report, LastCell(page, "HAP Limit"));
    EXPECT_EQ(lines.at("emissions ").Limit, LastCell(page, "HAP Limit"));
    // Yes and No of the page stand beside each other in the figures that are not rounded.
    const bool isYes = LastCell(page, "Compliant ?") == "Yes";
    const State state = lines.at("emissions ").Judged.Is;
    EXPECT_TRUE(state != State::Within || isYes);
    EXPECT_TRUE(state != State::Over || !isYes);
}

/// Where only the row's plain method is used, the page shows the row's content.
void ExpectContents(AgreementShop& program, const ShopFigures& shop, MonthNumber monthEnd) {
    const auto page = program.Page(WeightedAverageFile, GenerateWeightedAverageReport, monthEnd);
    const auto lines = LinesByName(shop, monthEnd);
    std::map<std::string, bool> isPlainAlone;
    for (const UsedMaterial& used : shop.UsedInWindow(monthEnd)) {
        const DefaultType& type = DefaultTypes()[program.Made.Materials[used.Material].Type];
        isPlainAlone.try_emplace(type.Row, true).first->second &= type.IsPlain;
    }
    std::string group;
    for (const std::vector<std::string>& row : page) {
        if (row.size() == 1) group = row.front();
        for (const DefaultType& type : DefaultTypes()) {
            if (row.size() != 5 || group != std::string("Material : ") + type.MaterialType) continue;
            if (row.front() != type.Method || !type.IsPlain || *type.Row == '\0') continue;
            const auto line = lines.find(std::string("content ") + type.Row);
            if (line == lines.end() || !isPlainAlone[type.Row]) continue;
            EXPECT_EQ(line->second.Report, row[3]) << type.Row;
            EXPECT_TRUE(line->second.Judged.Is != State::Within || row[4] == "Yes");
            EXPECT_TRUE(line->second.Judged.Is != State::Over || row[4] == "No");
        }
    }
}

TEST(ReportAgreementTest, TheFiguresAreTheTextsOfTheReportsAtEveryMonthEnd) {
    ForEachSeed(8, [](unsigned seed) {
        AgreementShop program(seed);
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        ASSERT_TRUE(records);
        const ShopFigures shop(*records);
        for (MonthNumber monthEnd = MonthNumberOf(2004, 1); monthEnd <= MonthNumberOf(2007, 6); ++monthEnd) {
            SCOPED_TRACE(MonthText(monthEnd));
            ExpectEmissions(program, shop, monthEnd);
            ExpectContents(program, shop, monthEnd);
        }
    });
}

} // namespace
} // namespace mact
