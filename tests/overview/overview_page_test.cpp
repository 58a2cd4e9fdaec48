#include "overview/overview_page.h"

#include "overview/answers.h"
#include "overview/statements.h"
#include "overview/untrusted_figures.h"
#include "tests/overview/made_shop.h"
#include "tests/overview/overview_shop.h"

#include <gtest/gtest.h>

#include <chrono>

namespace mact {
namespace {

constexpr MonthNumber Dec2005 = MonthNumberOf(2005, 12);

/// The parts of a page at a month end.
struct PageParts {
    explicit PageParts(const ShopRecords& records, MonthNumber monthEnd = Dec2005,
                       OverviewOptions options = {})
        : Shop(records), Figures(Shop.At(monthEnd)), Findings(FindAttention(Shop, monthEnd, 1)),
          Options(std::move(options)) {
        std::vector<MonthFigures> span;
        for (MonthNumber month = monthEnd - 11; month <= monthEnd; ++month)
            span.push_back(Shop.At(month));
        Rows = RowsOf(Shop, Figures, CountUntrusted(Shop, Figures, Findings), FirstTroubles(Shop, span),
                      Options);
    }
    OverviewPageSource Source(std::string name = "Acme Boats", std::string location = "Port Ellery") const {
        return {.CompanyName = std::move(name),
                .CompanyLocation = std::move(location),
                .Shop = Shop,
                .Figures = Figures,
                .Rows = Rows,
                .Findings = Findings,
                .Options = Options};
    }
    std::string Page() const { return OverviewPage(Source()); }

    ShopFigures Shop;
    MonthFigures Figures;
    std::vector<Attention> Findings;
    OverviewOptions Options;
    std::vector<OverviewRow> Rows;
};

bool Has(const std::string& page, std::string_view text) {
    return page.find(text) != std::string::npos;
}

std::size_t CountOf(const std::string& page, std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = page.find(text); at != std::string::npos; at = page.find(text, at + 1))
        ++count;
    return count;
}

/// The cells of a row, as they stand in the page.
std::string Row(const std::vector<std::pair<char, std::string>>& cells) {
    std::string html = "<tr>";
    for (const auto& [side, text] : cells)
        html += std::string("<td align=\"") + (side == 'r' ? "right" : "left") + "\">" +
                (text.empty() ? "&nbsp;" : text) + "</td>";
    return html + "</tr>";
}

/// Nonatomized production resin is over from 10/2005 on, the average at 12/2005 only.
class OverviewPageTest : public testing::Test, public OverviewShop {
protected:
    OverviewPageTest() {
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
    ShopRecords Records() {
        Result<ShopRecords> records = ReadShopRecords(App);
        EXPECT_TRUE(records);
        return records ? *records : ShopRecords{};
    }
};

TEST_F(OverviewPageTest, NamesCompanyPlaceAndMonthEnd) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    EXPECT_TRUE(Has(page, "<title>Twelve months ending DEC 2005, Acme Boats, Port Ellery</title>"));
    EXPECT_TRUE(Has(page, "<p><b>Acme Boats, Port Ellery</b></p>"));
    EXPECT_TRUE(Has(page, "<p><b>Twelve months ending DEC 2005</b></p>"));
}

TEST_F(OverviewPageTest, TellsTheMonthsSinceTheStart) {
    const ShopRecords records = Records();
    EXPECT_TRUE(Has(PageParts(records).Page(), "<p>Months since the start month: 12 of 12. None of them is "
                                               "without an entry.</p>"));
    EXPECT_TRUE(Has(PageParts(records, MonthNumberOf(2004, 9)).Page(),
                    "<p>Months since the start month: 3 of 12. None of them is without an entry.</p>"));
    EXPECT_TRUE(Has(PageParts(records, MonthNumberOf(2004, 6)).Page(),
                    "<p>Months since the start month: 0 of 12.</p>"));
}

TEST_F(OverviewPageTest, NamesMonthsWithoutEntryAndDoesNotTakeThemForUnused) {
    const ShopRecords records = Records();
    EXPECT_TRUE(Has(PageParts(records, MonthNumberOf(2006, 2)).Page(),
                    "<p>Months since the start month: 12 of 12. Without any entry: JAN 2006, FEB 2006. A "
                    "month without entry is not taken for one without use.</p>"));
}

TEST_F(OverviewPageTest, HasThreeAnswersInSignAndWordsWithMeaningAndReport) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    EXPECT_TRUE(Has(page, "<h3>Every material within its limit</h3>\r\n<p><b>\xE2\x96\xB2 Not every material "
                          "in use is within: production resin, nonatomized.</b></p>\r\n<p>One option is "
                          "enough for each operation: materials within their limits need no averaging. See "
                          "the Compliant Materials Report.</p>"));
    EXPECT_TRUE(Has(page, "<h3>Weighted content of each row</h3>\r\n<p><b>\xE2\x96\xB2 production resin, "
                          "nonatomized: Over.</b></p>"));
    EXPECT_TRUE(Has(page, "See the Weighted-Average HAP Content Report.</p>"));
    EXPECT_TRUE(Has(page, "<h3>Emissions against the allowance</h3>\r\n<p><b>\xE2\x96\xB2 Over. 100.2 % of "
                          "the allowance, 5.04 kg too much.</b></p>"));
    EXPECT_TRUE(Has(page, "See the Emission-Average HAP Content Report.</p>"));
}

TEST_F(OverviewPageTest, RowsAreWorstFirst) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    // 102,600 lb at 35.330409 %, of which 0.330409 / 35 is too much; 3000 lb at 31 %, 2 / 33 below the limit.
    const std::string resin = Row({
        {'l', "production resin, nonatomized"},
        {'r', "46.54"                        },
        {'r', "35.33 %"                      },
        {'r', "35 %"                         },
        {'r', "-0.94 %"                      },
        {'l', "\xE2\x96\xB2 Over"            },
        {'l', "OCT 2005"                     }
    });
    const std::string gel = Row({
        {'l', "pigmented gel coat" },
        {'r', "1.36"               },
        {'r', "31 %"               },
        {'r', "33 %"               },
        {'r', "6.06 %"             },
        {'l', "\xE2\x9C\x93 Within"},
        {'l', ""                   }
    });
    EXPECT_TRUE(Has(page, resin + "\r\n" + gel + "\r\n</tbody></table>\r\n<h2>")) << page;
}

TEST_F(OverviewPageTest, LittleHeadroomIsSaidToBeNarrow) {
    const ShopRecords records = Records();
    // Exactly 2 points are left.
    EXPECT_FALSE(Has(PageParts(records, Dec2005, {.WarnContent = 2}).Page(), "narrowly"));
    const std::string page = PageParts(records, Dec2005, {.WarnContent = 2.5}).Page();
    EXPECT_TRUE(Has(page, "<td align=\"left\">\xE2\x9C\x93 Within, narrowly</td>"));
}

TEST_F(OverviewPageTest, EmissionsAllowanceAndHeadroomStandAsReportedAndNotRounded) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    const auto row = [](const char* figure, const char* reported, const char* exact, const char* unit) {
        return Row({
            {'l', figure  },
            {'r', reported},
            {'r', exact   },
            {'l', unit    }
        });
    };
    EXPECT_TRUE(Has(page, row("Emissions", "2362.12", "2362.16661", "kg")));
    EXPECT_TRUE(Has(page, row("Allowance", "2357.08", "2357.162297", "kg")));
    EXPECT_TRUE(Has(page, row("Headroom", "-5.04", "-5.004313", "kg")));
    EXPECT_TRUE(Has(page, row("Headroom", "-0.21", "-0.212302", "% of the allowance")));
}

TEST_F(OverviewPageTest, PointValuesStandByOperationBesideTheirLimits) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    EXPECT_TRUE(Has(page, Row({
                              {'l', "production resin"},
                              {'r', "46.66"           },
                              {'r', "46.660607"       },
                              {'r', "46"              }
    })))
        << page;
    EXPECT_TRUE(
        Has(page, Row({
                      {'l', "pigmented gel coat"},
                      {'r', "140.08"            },
                      {'r', "140.084746"        },
                      {'r', "159"               }
    })));
}

TEST_F(OverviewPageTest, TheMonthsOwnAmountsAreThoseOfTheLastMonthAlone) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    EXPECT_TRUE(Has(page, "<h2>Used in DEC 2005 alone</h2>"));
    EXPECT_TRUE(Has(page, Row({
                              {'l', "production resin, nonatomized"},
                              {'r', "5624.6"                       }  // 4000 lb and 8400 lb
    })));
    EXPECT_TRUE(Has(page, Row({
                              {'l', "pigmented gel coat"},
                              {'r', "113.4"             }  // 250 lb
    })));
}

TEST_F(OverviewPageTest, NothingUsedIsSaidInEachPart) {
    const ShopRecords none;
    const std::string page = PageParts(none).Page();
    EXPECT_TRUE(Has(page, "<h2>Rows, worst first</h2>\r\n<p>Nothing was used that has a limit of its "
                          "content.</p>"));
    EXPECT_TRUE(Has(page, "<p>Nothing was used that is averaged.</p>"));
    EXPECT_TRUE(Has(page, "<p>No use is recorded for this month.</p>"));
    EXPECT_TRUE(Has(page, "<p>\xE2\x9C\x93 No record needs attention.</p>"));
    EXPECT_FALSE(Has(page, "\xE2\x9C\x93 Within"));
}

TEST_F(OverviewPageTest, TheChartHasAPlaceOnlyIfThereIsOne) {
    const ShopRecords records = Records();
    const PageParts parts(records);
    OverviewPageSource source = parts.Source();
    EXPECT_FALSE(Has(OverviewPage(source), "<img"));
    source.HasChart = true;
    EXPECT_EQ(CountOf(OverviewPage(source), "<img src=\"chart\">"), 1u);
}

TEST_F(OverviewPageTest, NotesFollowTheFindings) {
    const ShopRecords records = Records();
    const PageParts parts(records);
    OverviewPageSource source = parts.Source();
    source.Notes = {"The first month & more.", "If use goes on, the average is over in May."};
    const std::string page = OverviewPage(source);
    EXPECT_TRUE(Has(page,
                    "<p>\xE2\x80\x93 The first month &amp; more.</p>\r\n<p>\xE2\x80\x93 If use goes on, "
                    "the average is over in May.</p>\r\n<h2>What these figures are"));
    EXPECT_FALSE(Has(page, "No record needs attention"));
}

TEST_F(OverviewPageTest, EndsWithTheSevenStatements) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    ASSERT_EQ(OverviewStatements.size(), 7u);
    EXPECT_TRUE(Has(page, "<p>1. Calculated from the records as they are now: "));
    EXPECT_TRUE(Has(page, "<p>6. Point values compare with the allowance; they are no emission inventory.</p>"
                          "\r\n<p>7. &quot;Within&quot; is arithmetic, not a finding of compliance.</p>"
                          "\r\n</body></html>\r\n"));
}

TEST_F(OverviewPageTest, CallsNothingCompliantButTheReport) {
    const ShopRecords records = Records();
    const std::string page = PageParts(records).Page();
    EXPECT_EQ(CountOf(page, "ompliant"), CountOf(page, "Compliant Materials Report"));
}

// Records as bad as they come

TEST(OverviewPageOfMadeShopTest, NamesAreEscaped) {
    MadeShop shop;
    shop.AddMaterial("<b>&\"X\x07", "Production resin (Filled)").Filler = 20;
    shop.AddUse(1);
    const PageParts parts(shop.Records);
    const std::string page = OverviewPage(parts.Source("Br\xFC"
                                                       "cke <img src=\"x\"> & Co",
                                                       "<h1>"));
    EXPECT_TRUE(Has(page, "<b>Br\xC3\xBC"
                          "cke &lt;img src=&quot;x&quot;&gt; &amp; Co, &lt;h1&gt;</b>"));
    EXPECT_TRUE(Has(page, "<td align=\"left\">&lt;b&gt;&amp;&quot;X? (filled resin)</td>"));
    EXPECT_FALSE(Has(page, "<img"));
    EXPECT_EQ(CountOf(page, "<h1>"), 1u);
}

TEST(OverviewPageOfMadeShopTest, WithoutCompanyNameNoneIsShown) {
    const MadeShop shop;
    const PageParts parts(shop.Records);
    const std::string page = OverviewPage(parts.Source("  ", ""));
    EXPECT_TRUE(Has(page, "<title>Twelve months ending DEC 2005</title>"));
    EXPECT_TRUE(Has(OverviewPage(parts.Source("", "Port Ellery")), "<p><b>Port Ellery</b></p>"));
}

TEST(OverviewPageOfMadeShopTest, AFilledResinIsShownInKilogramsPerMegagram) {
    MadeShop shop;
    shop.AddMaterial("PF", "Production resin (Filled)").Filler = 20;
    for (int month = 1; month <= 12; ++month)
        shop.AddUse(1, std::to_string(month) + "/2005", 2204.6 / 2);
    // 0.014 * 28^2.425 is 45.2356...; 80 % of it 36.19. Six megagrams were used.
    EXPECT_TRUE(Has(PageParts(shop.Records).Page(), Row({
                                                        {'l', "PF (filled resin)"  },
                                                        {'r', "6"                  },
                                                        {'r', "36.19 kg/Mg"        },
                                                        {'r', "46 kg/Mg"           },
                                                        {'r', "21.33 %"            },
                                                        {'l', "\xE2\x9C\x93 Within"},
                                                        {'l', ""                   }
    })));
}

TEST(OverviewPageOfMadeShopTest, WhatIsNotTrustedIsSaidBesideEachFigure) {
    MadeShop shop;
    shop.AddMaterial("PR-A").HapContent = 0.28;
    shop.AddUse(1);
    const std::string page = PageParts(shop.Records).Page();
    EXPECT_EQ(CountOf(page, ". Not trusted: 1 finding.</b></p>"), 3u); // the answers
    EXPECT_TRUE(Has(page, "<p>These figures are not trusted: 1 finding.</p>"));
    EXPECT_TRUE(Has(page, "; not trusted: 1 finding</td>")); // the row
    EXPECT_TRUE(Has(page, ">production resin (not trusted: 1 finding)</td>"));
    EXPECT_TRUE(
        Has(page, ">production resin, atomized</td><td align=\"right\">453.6</td>")); // the amount is right
    EXPECT_TRUE(Has(page,
                    "<p>\xE2\x96\xB2 1_materials.talvor, record 1, &quot;PR-A&quot;: its HAP content 0.28 "
                    "is below 1"));
}

TEST(OverviewPageOfMadeShopTest, AnAmountThatIsNotTrustedSaysSo) {
    MadeShop shop;
    shop.AddMaterial("PR-A");
    shop.AddUse(1, "12/2005", 1000, 7); // a unit that there is not
    EXPECT_TRUE(
        Has(PageParts(shop.Records).Page(), ">production resin, atomized (not trusted: 1 finding)</td>"));
}

TEST(OverviewPageOfMadeShopTest, WhatIsWorthALookFollowsWithADash) {
    MadeShop shop;
    shop.AddMaterial("PR-A").Density = 5;
    shop.AddUse(1);
    EXPECT_TRUE(Has(PageParts(shop.Records).Page(), "<p>\xE2\x80\x93 1_materials.talvor, record 1"));
}

TEST(OverviewPageOfMadeShopTest, AFigureThatIsNoNumberLeavesItsCellsEmpty) {
    MadeShop shop;
    shop.AddMaterial("PR-A").HapContent = std::numeric_limits<double>::quiet_NaN();
    shop.AddUse(1);
    const std::string page = PageParts(shop.Records, MonthNumberOf(2006, 11)).Page();
    EXPECT_TRUE(Has(page, "? No answer: a number is too large or not a number"));
    EXPECT_FALSE(Has(page, ">nan"));
    EXPECT_FALSE(Has(page, ">-nan"));
    EXPECT_FALSE(Has(page, ">inf"));
}

/// As many filled resins as a file can hold, each over its limit and with a finding.
TEST(OverviewPageOfMadeShopTest, ShowsTheWorstOfVeryManyAndSaysHowManyMoreThereAre) {
    constexpr int many = 32767;
    MadeShop shop;
    for (int number = 1; number <= many; ++number) {
        ShopMaterial& material =
            shop.AddMaterial("PF-" + std::to_string(number), "Production resin (Filled)", "Spray");
        material.HapContent = 100.5;
        shop.AddUse(static_cast<std::int16_t>(number), "12/2005", 1000);
    }
    shop.AddUse(1, "1/2005", 1000);
    const PageParts parts(shop.Records);
    ASSERT_EQ(parts.Rows.size(), std::size_t{many});
    const auto begun = std::chrono::steady_clock::now();
    const std::string page = parts.Page();
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10)); // not quadratic
    EXPECT_EQ(CountOf(page, "(filled resin)"), 500u);
    EXPECT_TRUE(Has(page, "</table>\r\n<p>and 32267 more</p>"));
    EXPECT_EQ(CountOf(page, "is above 100"), 500u);
    EXPECT_LT(page.size(), std::size_t{500} * 1000);
}

TEST(OverviewPageOfMadeShopTest, ALongAnswerEndsWithHowManyMoreThereAre) {
    MadeShop shop;
    for (std::int16_t number = 1; number <= 40; ++number) {
        shop.AddMaterial("PF-" + std::to_string(number), "Production resin (Filled)").HapContent = 60;
        for (int month = 1; month <= 12; ++month)
            shop.AddUse(number, std::to_string(month) + "/2005");
    }
    EXPECT_TRUE(Has(PageParts(shop.Records).Page(), "; PF-7: Over and 33 more.</b>"));
}
} // namespace
} // namespace mact
