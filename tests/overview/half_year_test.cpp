#include "overview/half_year.h"

#include "base/sha256.h"
#include "base/text.h"
#include "overview/half_year_page.h"
#include "overview/kept_pack.h"
#include "overview/statements.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/folder_content.h"
#include "tests/support/limited_files.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace mact {
namespace {

constexpr HalfYear SecondOf2005{.Year = 2005, .Half = 2};

TEST(HalfYearTest, IsWrittenAsHalfAndYear) {
    EXPECT_EQ(ParseHalfYear("1/2005"), (HalfYear{2005, 1}));
    EXPECT_EQ(ParseHalfYear("2/2005"), (HalfYear{2005, 2}));
    EXPECT_EQ(ParseHalfYear("1/1900"), (HalfYear{1900, 1}));
    EXPECT_EQ(ParseHalfYear("2/9999"), (HalfYear{9999, 2}));
    for (const char* text : {"", "3/2005", "12/2005", "0/2005", "01/2005", "1/205", "1/1899", "1/02005",
                             "1-2005", "2005/1", "1/2005|", "-1/2005"})
        EXPECT_FALSE(ParseHalfYear(text)) << text;
}

TEST(HalfYearTest, HasSixMonthEnds) {
    EXPECT_EQ(MonthEndsOf({2005, 1}).front(), MonthNumberOf(2005, 1));
    EXPECT_EQ(MonthEndsOf({2005, 1}).back(), MonthNumberOf(2005, 6));
    EXPECT_EQ(MonthEndsOf({2005, 2}).front(), MonthNumberOf(2005, 7));
    EXPECT_EQ(MonthEndsOf({2005, 2}).back(), MonthNumberOf(2005, 12));
}

TEST(HalfYearTest, TheNewestIsTheLastThatIsOver) {
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(2005, 6)), (HalfYear{2005, 1}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(2005, 7)), (HalfYear{2005, 1}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(2005, 11)), (HalfYear{2005, 1}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(2005, 12)), (HalfYear{2005, 2}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(2006, 1)), (HalfYear{2005, 2}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(2006, 5)), (HalfYear{2005, 2}));
}

TEST(HalfYearTest, TheNewestIsNeverBeforeTheFirst) {
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(1900, 5)), (HalfYear{1900, 1}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(1900, 6)), (HalfYear{1900, 1}));
    EXPECT_EQ(NewestHalfYear(MonthNumberOf(1900, 7)), (HalfYear{1900, 1}));
}

TEST(HalfYearTest, IsDueOnTheSixtiethDayAfterIt) {
    EXPECT_EQ(DueDateText({2005, 1}), "29 August 2005"); // 31 days of July and 29
    EXPECT_EQ(DueDateText({2005, 2}), "1 March 2006");   // 31 of January, 28 of February and 1
    EXPECT_EQ(DueDateText({2007, 2}), "29 February 2008");
    EXPECT_EQ(DueDateText({2099, 2}), "1 March 2100"); // no leap year
}

/// Nonatomized production resin is over from 10/2005 on, the average at 12/2005 only.
class HalfYearPackTest : public testing::Test, public OverviewShop {
protected:
    HalfYearPackTest() {
        App.CurrentCompanyName = "Acme Boats";
        App.CurrentCompanyLocation = "Port Ellery";
        ImportMaterials({"PR-A|of R1|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0",
                         "PR-B|of R1|Production resin|Non-Spray|9|36.5|0|0|0|0|0|0|0|0|0|0|0|0|0",
                         "PG|of R1|Pigmented production gel|All|9|31|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        std::vector<std::string> lines;
        for (int month = 7; month <= 24; ++month) {
            const std::string text =
                std::to_string((month - 1) % 12 + 1) + '|' + std::to_string(2004 + (month - 1) / 12) + '|';
            lines.push_back("PR-A|" + text + "4000|lbs");
            lines.push_back("PG|" + text + "250|lbs");
            if (month > 12) lines.push_back("PR-B|" + text + std::to_string((month - 12) * 700) + "|lbs");
        }
        ImportUsage(lines);
    }
    std::string Page(HalfYear half = SecondOf2005) {
        const Result<PackSource> source = ReadPackSource(App);
        EXPECT_TRUE(source);
        if (!source) return {};
        return PackPage(*source, ShopFigures(source->Shop, source->Options.Start), half);
    }
    std::string Csv(HalfYear half = SecondOf2005) {
        const Result<PackSource> source = ReadPackSource(App);
        EXPECT_TRUE(source);
        if (!source) return {};
        return PackCsv(ShopFigures(source->Shop, source->Options.Start), half);
    }
    /// Compares with the records as they are now.
    std::vector<PackDifference> Compared() {
        const Result<ShopRecords> shop = ReadShopRecords(App);
        EXPECT_TRUE(shop);
        const Result<std::vector<PackDifference>> differences =
            ComparePack(App, ShopFigures(*shop), SecondOf2005);
        EXPECT_TRUE(differences);
        return differences ? *differences : std::vector<PackDifference>{{.Figure = "none"}};
    }
    std::filesystem::path PackFile(const std::string& name) const {
        return App.ProgramFolder / "half-year" / "1" / name;
    }
};

void ExpectContains(const std::string& page, const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
        EXPECT_NE(page.find(text), std::string::npos) << text;
}

TEST_F(HalfYearPackTest, CsvHasTheOverviewsLinesOfSixMonthEnds) {
    const std::string csv = Csv();
    EXPECT_TRUE(csv.starts_with("month_end,figure,item,report,exact,limit,unit,state,cause\r\n"
                                "7/2005,months,,12,,12,months,complete,\r\n"));
    ExpectContains(csv, {"7/2005,content,\"production resin, nonatomized\",34.72,34.724852,35,%,within,\r\n",
                         "8/2005,content,\"production resin, nonatomized\",34.86,34.860656,35,%,within,\r\n",
                         "9/2005,content,\"production resin, nonatomized\",34.99,34.990566,35,%,within,\r\n",
                         "10/2005,content,\"production resin, nonatomized\",35.11,35.112717,35,%,over,\r\n",
                         "11/2005,content,\"production resin, nonatomized\",35.23,35.226115,35,%,over,\r\n",
                         "12/2005,content,\"production resin, nonatomized\",35.33,35.330409,35,%,over,\r\n",
                         "11/2005,emissions,,2171.01,2171.052046,2181.82,kg,within,\r\n",
                         "12/2005,emissions,,2362.12,2362.16661,2357.08,kg,over,\r\n",
                         "12/2005,headroom,,-5.04,"});
    EXPECT_EQ(csv.find("6/2005"), std::string::npos);
    EXPECT_EQ(csv.find("1/2006"), std::string::npos);
    for (std::size_t at = csv.find('\n'); at != std::string::npos; at = csv.find('\n', at + 1))
        EXPECT_EQ(csv[at - 1], '\r');
    EXPECT_TRUE(csv.ends_with("\r\n"));
}

TEST_F(HalfYearPackTest, PageShowsNamePlaceAndDueDate) {
    ExpectContains(Page(),
                   {"<h1>Half-year pack, July to December 2005</h1>", "<b>Acme Boats</b><br>Port Ellery",
                    "Address<span></span>",
                    "Due 60 days after the half year, on <b>1 March 2006</b>, unless your permit sets "
                    "another date."});
}

TEST_F(HalfYearPackTest, PageShowsTheUsersOptionsAndAddress) {
    OverviewOptions options;
    options.Address = "14 Slipway Road <rear> & \"yard\"";
    options.OptionOf = {OperationOption::Average, OperationOption::NotUsed, OperationOption::NotUsed,
                        OperationOption::Closed, std::nullopt};
    ASSERT_TRUE(SaveOverviewOptions(App, options));
    const std::string page = Page();
    ExpectContains(
        page, {"Address: 14 Slipway Road &lt;rear&gt; &amp; &quot;yard&quot;",
               "<h3>Production resin</h3>\r\n<p>Option: emission average.</p>",
               "<h3>Pigmented gel coat</h3>\r\n<p>Option: not used. Use is recorded all the same.</p>",
               "<h3>Clear gel coat</h3>\r\n<p>Option: not used. No use is recorded for these month ends.</p>",
               "<h3>Tooling resin</h3>\r\n<p>Option: closed molding. No use is recorded",
               "<h3>Tooling gel coat</h3>\r\n<p>Option: none chosen. No use is recorded"});
}

/// The cells of a row of a table of materials, from the content on.
std::string NumberCells(const std::vector<std::string>& numbers) {
    std::string html;
    for (const std::string& number : numbers)
        html += "<td class=\"number\">" + number + "</td>";
    return html + "</tr>";
}

/// A cell with both figures and, if there is one, the state.
std::string FigureCell(const std::string& report, const std::string& exact, const std::string& state = {}) {
    return "<td class=\"number\">" + report + "<small>" + exact + "</small>" + state + "</td>";
}

TEST_F(HalfYearPackTest, PageShowsContentAndPointValueAtSixMonthEnds) {
    const std::string within = "<span class=\"other\">within</span>";
    const std::string over = "<span class=\"over\">over</span>";
    const std::string page = Page();
    ExpectContains(page, {"<th scope=\"col\" class=\"number\">JUL 2005</th>",
                          "<th scope=\"col\" class=\"number\">DEC 2005</th>",
                          "Content of production resin, nonatomized, %</th><td>35 %</td>" +
                              FigureCell("34.72", "34.724852", within),
                          FigureCell("35.33", "35.330409", over),
                          "Point value of production resin, kg/Mg</th><td>46 kg/Mg</td>" +
                              FigureCell("44.85", "44.849582"),
                          "Point value of pigmented gel coat, kg/Mg</th><td>159 kg/Mg</td>" +
                              FigureCell("140.08", "140.084746"),
                          FigureCell("2362.12", "2362.16661", over), "<td class=\"number\">-5.04<small>"});
}

// 48,000 lb of PR-A; 700 lb times 55, 66 and 78 of PR-B; 3,000 lb of PG: at 2.2046 lb/kg.
TEST_F(HalfYearPackTest, DeviationsListTheMaterialsOfWhatIsOver) {
    const std::string method = "</th><td>Production resin, Non-Spray</td>";
    const std::string page = Page();
    ExpectContains(page, {"<h3>Content of production resin, nonatomized</h3>\r\n<p>OCT 2005: over; NOV 2005: "
                          "over; DEC 2005: over. Kilograms used in the twelve months ending:</p>"});
    ExpectContains(page, {"PR-A" + method + NumberCells({"34", "21772.66", "21772.66", "21772.66"}),
                          "PR-B" + method + NumberCells({"36.5", "17463.49", "20956.18", "24766.4"})});
    ExpectContains(page, {"<h3>Emission average of all operations</h3>\r\n<p>DEC 2005: over. Kilograms",
                          "PG</th><td>Pigmented production gel, All</td>" + NumberCells({"31", "1360.79"})});
}

// 0.014 * 36^2.425 * 0.8 = 66.565866 kg/Mg against 46, and 36 % against the table's 28; 400 lb are 181.44 kg.
TEST_F(HalfYearPackTest, AFilledResinStandsByItsOperation) {
    ImportMaterials({"FR|filled|Production resin (Filled)|Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|20"});
    ImportUsage({"FR|12|2005|400|lbs"});
    ExpectContains(
        Page(),
        {"Point value of filled resin FR, kg/Mg</th><td>46 kg/Mg</td><td class=\"number\"><span "
         "class=\"other\">not used</span></td>",
         "<td class=\"number\"><small>66.565866</small><span class=\"over\">over</span></td>",
         "<h3>Filled resin FR</h3>\r\n<p>DEC 2005: over. ",
         "<th scope=\"row\">FR</th><td>Production resin (Filled), Spray</td><td class=\"number\">36</td><td "
         "class=\"number\">181.44</td></tr>"});
}

TEST_F(HalfYearPackTest, WhatDiffersIsADeviationWithItsCause) {
    ImportMaterials(
        {"VB|bag|Production resin|Spray (Vacuum bagging after roll-out)|9|29|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    ImportUsage({"VB|12|2005|400|lbs"}); // the table's limit is 30, Table 2's 28
    ExpectContains(Page(), {"29<small>29</small><span class=\"differs\">differs (vacuum bagging)</span>",
                            "<h3>Content of production resin, atomized</h3>\r\n<p>DEC 2005: differs (vacuum "
                            "bagging). Kilograms",
                            "<th scope=\"row\">VB</th>"});
}

/// The part of a page from a text on.
std::string From(const std::string& page, const std::string& text) {
    const std::size_t at = page.find(text);
    return at == std::string::npos ? "" : page.substr(at);
}
/// Its row of a table.
std::string RowOf(const std::string& page, const std::string& label) {
    const std::string row = From(page, "<th scope=\"row\">" + label);
    return row.substr(0, row.find("</tr>"));
}
/// What each of its month ends says of trust.
std::vector<std::string> Doubts(const std::string& row) {
    const std::string cellBegin = "<td class=\"number\">";
    const std::string begin = "<span class=\"differs\">not trusted: ";
    std::vector<std::string> doubts;
    for (std::size_t at = row.find(cellBegin); at != std::string::npos;) {
        const std::size_t next = row.find(cellBegin, at + 1);
        const std::string doubt = From(row.substr(at, next - at), begin);
        doubts.push_back(doubt.empty() ? ""
                                       : doubt.substr(begin.size(), doubt.find("</span>") - begin.size()));
        at = next;
    }
    return doubts;
}

// A content typed as a fraction, of a resin used in 7/2005, and its record of 10/2005 in unit 3. The gel coat
// has nothing wrong.
TEST_F(HalfYearPackTest, WhatIsNotTrustedSaysSoBesideTheFigure) {
    const std::string clean = Page();
    EXPECT_EQ(clean.find("not trusted"), std::string::npos);
    ImportMaterials({"PR-C|typed|Production resin|Non-Spray|9|0.3|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    ImportUsage({"PR-C|7|2005|1000|lbs"});
    ASSERT_FALSE(SaveUsage(App, {.MaterialId = 4, .Period = "10/2005", .Quantity = 1, .Unit = 3}));
    const std::string page = Page();
    const std::vector<std::string> both{"1 finding",  "1 finding",  "1 finding",
                                        "2 findings", "2 findings", "2 findings"};
    for (const char* label :
         {"Content of production resin, nonatomized, %", "Point value of production resin, kg/Mg",
          "Emissions, kg", "Allowance, kg", "Headroom, kg", "Headroom, % of the allowance"})
        EXPECT_EQ(Doubts(RowOf(page, label)), both) << label;
    const std::vector<std::string> none(6);
    for (const char* label : {"Content of pigmented gel coat, %", "Point value of pigmented gel coat, kg/Mg",
                              "Months since the start month", "Months without any entry"})
        EXPECT_EQ(Doubts(RowOf(page, label)), none) << label;
    EXPECT_EQ(Csv().find("not trusted"), std::string::npos);
}

// A unit of 3 counts as Mgal: 9,000 lb are 4082.37 kg. The point value is as above.
TEST_F(HalfYearPackTest, AFilledResinAndTheKilogramsOfADeviationSaySoToo) {
    ImportMaterials({"FR|filled|Production resin (Filled)|Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|20"});
    ASSERT_FALSE(SaveUsage(App, {.MaterialId = 4, .Period = "12/2005", .Quantity = 1, .Unit = 3}));
    const std::string page = Page();
    EXPECT_EQ(Doubts(RowOf(page, "Point value of filled resin FR, kg/Mg")),
              (std::vector<std::string>{"", "", "", "", "", "1 finding"}));
    ExpectContains(
        page, {"<small>66.565866</small><span class=\"over\">over</span><span class=\"differs\">not "
               "trusted: 1 finding</span></td>",
               "Production resin (Filled), Spray</td><td class=\"number\">36</td><td "
               "class=\"number\">4082.37<span class=\"differs\">not trusted: 1 finding</span></td></tr>"});
}

TEST_F(HalfYearPackTest, ATypeThatAUserAddedHasASectionOfItsOwn) {
    const HapContentRecord added{.MaterialType = "Hull <wax>",
                                 .HapLimit = 12.5,
                                 .ApplicationMethod = "Brush",
                                 .EfCoefficient = 1,
                                 .EfExponent = 1,
                                 .EmissionLimit = 20};
    WriteContent(DataFile("hapcontents.talvor"),
                 ContentOf(DataFile("hapcontents.talvor")) + Pack(HapContentLayout, added));
    ImportMaterials({"HW|wax|Hull <wax>|Brush|9|13|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    ImportUsage({"HW|12|2005|400|lbs"});
    ExpectContains(Page(), {"<h3>Types added to the table</h3>",
                            "Content of Hull &lt;wax&gt;, Brush, %</th><td>12.5 %</td>",
                            "Point value of Hull &lt;wax&gt;, kg/Mg</th><td>20 kg/Mg</td>",
                            "<h3>Content of Hull &lt;wax&gt;, Brush</h3>\r\n<p>DEC 2005: over. ",
                            "<th scope=\"row\">HW</th><td>Hull &lt;wax&gt;, Brush</td>"});
}

TEST_F(HalfYearPackTest, WithoutTroubleDeviationsAreBlankLines) {
    const std::string page = Page({2005, 1});
    ExpectContains(page, {"No figure above is \"over\" or \"differs\".</p>\r\n<div class=\"line\"></div>",
                          "Due 60 days after the half year, on <b>29 August 2005</b>",
                          ">too early (7 of 12)</span>"});
    EXPECT_EQ(page.find("Kilograms used"), std::string::npos);
}

TEST_F(HalfYearPackTest, PageMakesNoStatementOfCompliance) {
    const std::string page = Page();
    EXPECT_EQ(page.find("ompliant"), std::string::npos);
    EXPECT_EQ(page.find("in compliance"), std::string::npos);
    ExpectContains(page, {"Certification", "Changes in the process", "Signature<span></span>"});
}

TEST_F(HalfYearPackTest, PageEndsWithTheStatementsOnAllFigures) {
    const std::string page = Page();
    std::size_t at = 0;
    for (const std::string_view statement : OverviewStatements) {
        at = page.find(HtmlText(statement), at);
        ASSERT_NE(at, std::string::npos) << statement;
    }
    EXPECT_TRUE(page.ends_with("</ol>\r\n</footer>\r\n</body>\r\n</html>\r\n"));
}

TEST_F(HalfYearPackTest, PageShowsTheDigestsOfItsDataFiles) {
    const std::string page = Page();
    for (const char* name : {"hapcontents.talvor", "1_materials.talvor", "1_usage.talvor"}) {
        Sha256 hash;
        hash.Add(ContentOf(DataFile(name)));
        ExpectContains(page, {std::string(name) + "</th><td class=\"digest\">" + hash.Digits() + "</td>"});
    }
}

TEST_F(HalfYearPackTest, PageNeedsNothingButItself) {
    const std::string page = Page();
    for (const char* text : {"<script", "src=", "href=", "url(", "@import"})
        EXPECT_EQ(page.find(text), std::string::npos) << text;
}

TEST_F(HalfYearPackTest, NamesAreEscapedAndInUtf8) {
    App.CurrentCompanyName = "  Tern <b>&\"Hollow\" \xD8 \x01 ";
    ExpectContains(Page(), {"<b>Tern &lt;b&gt;&amp;&quot;Hollow&quot; \xC3\x98 ?</b>"});
}

TEST_F(HalfYearPackTest, AMonthWithoutEntryIsNamed) {
    ASSERT_TRUE(SaveOverviewOptions(App, {.Start = MonthNumberOf(2004, 6)}));
    const std::string page = Page({2005, 1});
    ExpectContains(page, {"Months without any entry</th><td></td><td class=\"number\">6/2004</td>",
                          "A month without entry is not taken for one without use."});
}

TEST_F(HalfYearPackTest, OfAShopWithoutDataFilesIsAPageToo) {
    App.CurrentCompanyId = 2;
    const auto before = FilesIn(App.ProgramFolder / "data");
    const std::string page = Page();
    ExpectContains(page, {"2_usage.talvor</th><td class=\"digest\">no such file</td>",
                          "No use is recorded for these month ends", "too early (0 of 12)"});
    EXPECT_EQ(FilesIn(App.ProgramFolder / "data"), before);
}

TEST_F(HalfYearPackTest, IsWrittenIntoTheCompanysFolder) {
    const auto before = FilesIn(App.ProgramFolder / "data");
    const Result<PackFiles> written = WritePack(App, SecondOf2005, false);
    ASSERT_TRUE(written);
    EXPECT_EQ(written->Page, PackFile("2005-2.htm"));
    EXPECT_EQ(written->Csv, PackFile("2005-2.csv"));
    EXPECT_EQ(FilesIn(App.ProgramFolder / "half-year" / "1"),
              (std::map<std::string, std::string>{
                  {"2005-2.csv", Csv() },
                  {"2005-2.htm", Page()}
    }));
    EXPECT_EQ(FilesIn(App.ProgramFolder / "data"), before);
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(HalfYearPackTest, IsReplacedOnlyIfTheCallerSaysSo) {
    ASSERT_TRUE(WritePack(App, {2005, 1}, false));
    WriteContent(PackFile("2005-1.htm"), "kept");
    const Result<PackFiles> refused = WritePack(App, {2005, 1}, false);
    ASSERT_FALSE(refused);
    EXPECT_EQ(SentenceOf(refused.error()), "Cannot write the half-year pack \"" +
                                               PathText(PackFile("2005-1.htm")) +
                                               "\": there is one already.");
    EXPECT_EQ(ContentOf(PackFile("2005-1.htm")), "kept");
    ASSERT_TRUE(WritePack(App, {2005, 1}, true));
    EXPECT_EQ(ContentOf(PackFile("2005-1.htm")), Page({2005, 1}));
}

TEST_F(HalfYearPackTest, ACsvAloneCountsAsKept) {
    ASSERT_TRUE(WritePack(App, SecondOf2005, false));
    std::filesystem::remove(PackFile("2005-2.htm"));
    EXPECT_TRUE(*IsPackKept(App, SecondOf2005));
    EXPECT_FALSE(*IsPackKept(App, {2005, 1}));
    EXPECT_FALSE(WritePack(App, SecondOf2005, false));
}

TEST_F(HalfYearPackTest, WhoseRecordsCannotBeReadWritesNothing) {
    std::filesystem::remove(DataFile("1_usage.talvor"));
    std::filesystem::create_directory(DataFile("1_usage.talvor"));
    EXPECT_FALSE(WritePack(App, SecondOf2005, false));
    EXPECT_FALSE(std::filesystem::exists(App.ProgramFolder / "half-year"));
}

TEST_F(HalfYearPackTest, WhosePageCannotBeWrittenLeavesTheEarlierPack) {
    LimitedFiles full;
    full.Limits[TemporaryFor(PackFile("2005-2.htm"))].LongestFile = 100;
    AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, full, App.ProgramFolder, 1};
    EXPECT_FALSE(WritePack(app, SecondOf2005, false));
    EXPECT_TRUE(FilesIn(PackFile("")).empty());

    WriteContent(PackFile("2005-2.csv"), "earlier csv");
    WriteContent(PackFile("2005-2.htm"), "earlier page");
    EXPECT_FALSE(WritePack(app, SecondOf2005, true));
    EXPECT_EQ(FilesIn(PackFile("")), (std::map<std::string, std::string>{
                                         {"2005-2.csv", "earlier csv" },
                                         {"2005-2.htm", "earlier page"}
    }));
}

TEST_F(HalfYearPackTest, ComesOutTheSameWhileTheRecordsDo) {
    ASSERT_TRUE(WritePack(App, SecondOf2005, false));
    EXPECT_EQ(Compared(), std::vector<PackDifference>{});
    ImportUsage({"PG|1|2006|9999|lbs"}); // after the half year
    EXPECT_EQ(Compared(), std::vector<PackDifference>{});
}

TEST_F(HalfYearPackTest, ComesOutTheSameWhenASpreadsheetHasSavedIt) {
    ASSERT_TRUE(WritePack(App, SecondOf2005, false));
    std::string saved = "\xEF\xBB\xBF";
    for (const char character : ContentOf(PackFile("2005-2.csv"))) {
        if (character == '\r') continue;
        saved += character;
    }
    const std::size_t within = saved.find("within");
    saved.replace(within, 6, "\"within\"");
    WriteContent(PackFile("2005-2.csv"), saved);
    EXPECT_EQ(Compared(), std::vector<PackDifference>{});
}

// 250 lb of clear gel coat in 12/2005: 113.4 kg of 40 % against 48 %.
TEST_F(HalfYearPackTest, DifferencesAreNamedWithBothFigures) {
    ASSERT_TRUE(WritePack(App, SecondOf2005, false));
    ImportMaterials({"CG|clear|Clear production gel coat|All|9|40|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    ImportUsage({"CG|12|2005|250|lbs"});
    const std::vector<PackDifference> differences = Compared();
    const auto contains = [&](const PackDifference& difference) {
        return std::ranges::find(differences, difference) != differences.end();
    };
    EXPECT_TRUE(contains({"12/2005, content, clear gel coat", "", "40, 40, 48, %, within"}));
    for (const PackDifference& difference : differences) {
        EXPECT_TRUE(difference.Figure.starts_with("12/2005")) << difference.Figure;
        EXPECT_NE(difference.Figure, "12/2005, content, pigmented gel coat");
    }
    std::filesystem::remove(DataFile("1_usage.talvor"));
    const std::vector<PackDifference> without = Compared();
    EXPECT_NE(std::ranges::find(without, PackDifference{"7/2005, content, pigmented gel coat",
                                                        "31, 31, 33, %, within", ""}),
              without.end());
}

TEST_F(HalfYearPackTest, ThatIsNoPackIsAFailure) {
    const ShopRecords none;
    EXPECT_FALSE(ComparePack(App, ShopFigures(none), SecondOf2005)); // there is no file
    ASSERT_TRUE(WritePack(App, SecondOf2005, false));
    for (const char* content : {"", "\r\n", "month_end,figure\r\n", "\"", "a,b,,\"c\"d\""}) {
        WriteContent(PackFile("2005-2.csv"), content);
        EXPECT_FALSE(ComparePack(App, ShopFigures(none), SecondOf2005)) << content;
    }
}

TEST_F(HalfYearPackTest, KeptOnesAreListedOldestFirst) {
    EXPECT_TRUE(KeptPacks(App)->empty());
    ASSERT_TRUE(WritePack(App, SecondOf2005, false));
    ASSERT_TRUE(WritePack(App, {2005, 1}, false));
    ASSERT_TRUE(WritePack(App, {2004, 2}, false));
    for (const char* name : {"2005-3.csv", "05-1.csv", "2005-1.csv.mact.tmp", "notes.txt", "2005-12.csv"})
        WriteContent(PackFile(name), "");
    const Result<std::vector<HalfYear>> kept = KeptPacks(App);
    ASSERT_TRUE(kept);
    EXPECT_EQ(*kept, (std::vector<HalfYear>{
                         {2004, 2},
                         {2005, 1},
                         {2005, 2}
    }));
}

} // namespace
} // namespace mact
