#include "materials/material_store.h"
#include "overview/frm_what_if.h"
#include "store/material_types.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <functional>
#include <limits>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);
constexpr int Newest = 11;       // the row of MonthEnd
constexpr double OneMg = 2204.6; // pounds

/// Four materials. 1 Mg of the gel coat alone is used, in 1/2005: 155.55 kg of 159.
struct WhatIfProgram : TestProgram {
    WhatIfProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The test's material types were not written");
        Add({.CustomId = "GC-110",
             .Description = "White <gel> coat",
             .MaterialType = "Pigmented production gel",
             .ApplicationMethod = "All",
             .Density = 10,
             .HapContent = 33});
        Add({.CustomId = "PR-A",
             .Description = "Resin",
             .MaterialType = "Production resin",
             .ApplicationMethod = "Non-Spray",
             .Density = 11.023, // 2 Mgal are 10 Mg
             .HapContent = 35});
        Add({.CustomId = "PR-B",
             .Description = "Low styrene resin",
             .MaterialType = "Production resin",
             .ApplicationMethod = "Non-Spray",
             .Density = 9,
             .HapContent = 30});
        Add({.CustomId = "FR-1",
             .Description = "Filled resin",
             .MaterialType = "Production resin (Filled)",
             .ApplicationMethod = "Non-Spray",
             .Density = 9,
             .HapContent = 40,
             .Filler = 26});
        AddUse(1, "1/2005", OneMg, UnitLbs);
    }
    void Add(MaterialEntry entry) {
        entry.Contents = "0|0|0|0|0|0";
        entry.Factors = "0|0|0|0|0|0";
        if (SaveMaterial(App, entry)) qFatal("The test's material was not saved");
    }
    void AddUse(std::int16_t material, const char* period, double quantity, std::int16_t unit) {
        if (SaveUsage(App, {.MaterialId = material, .Period = period, .Quantity = quantity, .Unit = unit}))
            qFatal("The test's usage was not saved");
    }
};

/// One whose content is typed as a fraction, used in 3/2005.
void AddFraction(WhatIfProgram& program) {
    program.Add({.CustomId = "GC-X",
                 .Description = "Gel coat",
                 .MaterialType = "Pigmented production gel",
                 .ApplicationMethod = "All",
                 .Density = 10,
                 .HapContent = 0.3});
    program.AddUse(5, "3/2005", OneMg, UnitLbs);
}

/// In the order of cbo_Kind.
enum Kind { Content, Density, Filler, Method, Amount, Replacement, LeftOut };

void WaitForFigures(const QWidget& window) {
    while (Named<QTimer>(window, "tmr_Steps").isActive())
        QCoreApplication::processEvents();
}

ShopRecords ShopOf(TestProgram& program) {
    const Result<ShopRecords> shop = ReadShopRecords(program.App);
    if (!shop) qFatal("The test's records were not read");
    return *shop;
}

void InWhatIf(TestProgram& program, const ShopRecords& shop, const std::function<void(frmWhatIf&)>& act,
              MonthNumber monthEnd = MonthEnd) {
    InNextModal<frmWhatIf>([&](frmWhatIf& window) {
        WaitForFigures(window);
        act(window);
    });
    ShowWhatIf(program.App, shop, {}, monthEnd, nullptr);
}

void InWhatIf(TestProgram& program, const std::function<void(frmWhatIf&)>& act,
              MonthNumber monthEnd = MonthEnd) {
    InWhatIf(program, ShopOf(program), act, monthEnd);
}

void Choose(const QWidget& window, const char* combo, const char* text) {
    auto& box = Named<QComboBox>(window, combo);
    const int row = box.findText(QString::fromUtf8(text));
    if (row < 0) qFatal("%s has no such entry: %s", combo, text);
    box.setCurrentIndex(row);
}

/// What the entry is to be, but for the value.
void Begin(const QWidget& window, const char* material, Kind kind) {
    Choose(window, "cbo_Material", material);
    Named<QComboBox>(window, "cbo_Kind").setCurrentIndex(kind);
}

void Type(const QWidget& window, const char* edit, const char* text) {
    Named<QLineEdit>(window, edit).setText(QString::fromLatin1(text));
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
    WaitForFigures(window);
}

void AddNumber(const QWidget& window, const char* material, Kind kind, const char* number) {
    Begin(window, material, kind);
    Type(window, "txt_Number", number);
    Press(window, "cmd_Add");
}

QStringList Row(const QWidget& window, int row) {
    const auto& table = Named<QTableWidget>(window, "tbl_Months");
    QStringList cells;
    for (int column = 0; column < table.columnCount(); ++column)
        cells << table.item(row, column)->text();
    return cells;
}

/// Before, after and difference at the newest month end.
QString Numbers(const QWidget& window) {
    return Row(window, Newest).mid(1, 3).join(QLatin1String(" | "));
}

QString States(const QWidget& window) {
    return Row(window, Newest).mid(4).join(QLatin1String(" | "));
}

QStringList Changes(const QWidget& window) {
    const auto& list = Named<QListWidget>(window, "lst_Changes");
    QStringList lines;
    for (int row = 0; row < list.count(); ++row)
        lines << list.item(row)->text();
    return lines;
}

bool IsEnabled(const QWidget& window, const char* control) {
    return Named<QWidget>(window, control).isEnabled();
}

QString Shown(const QWidget& window, const char* label) {
    return Named<QLabel>(window, label).text();
}

} // namespace

class frm_what_if_test : public QObject {
    Q_OBJECT

private slots:
    void The_title_says_that_nothing_is_saved() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("What if: nothing is saved"));
            QVERIFY(Shown(window, "lbl_Statement").endsWith(QStringLiteral("not a finding of compliance.")));
        });
    }

    void Fits_a_screen_of_1024_by_600_with_twice_the_font() {
        const QFont before = QApplication::font();
        QFont larger = before;
        larger.setPointSizeF(2 * before.pointSizeF());
        QApplication::setFont(larger);
        QSize least;
        WhatIfProgram program;
        InWhatIf(program, [&](const frmWhatIf& window) { least = window.minimumSizeHint(); });
        QApplication::setFont(before);
        QVERIFY2(least.width() <= 1024, qPrintable(QString::number(least.width())));
        QVERIFY2(least.height() <= 600, qPrintable(QString::number(least.height())));
    }

    void It_opens_with_twelve_month_ends_without_a_change() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            QCOMPARE(Shown(window, "lbl_Months"), QStringLiteral("The twelve month en&ds up to DEC 2005"));
            QCOMPARE(Named<QTableWidget>(window, "tbl_Months").rowCount(), 12);
            QCOMPARE(Row(window, 0), QStringList({"JAN 2005", "155.55", "155.55", "0",
                                                  QString::fromUtf8("\u2013 Too early (1 of 12 months)"),
                                                  QString::fromUtf8("\u2013 Too early (1 of 12 months)")}));
            QCOMPARE(Row(window, Newest),
                     QStringList({"DEC 2005", "155.55", "155.55", "0", QString::fromUtf8("\u2713 Within"),
                                  QString::fromUtf8("\u2713 Within")}));
            QVERIFY(Changes(window).isEmpty());
        });
    }

    void The_first_month_end_of_all_has_none_before_it() {
        WhatIfProgram program;
        InWhatIf(
            program,
            [](const frmWhatIf& window) {
                QCOMPARE(Named<QTableWidget>(window, "tbl_Months").rowCount(), 2);
                QCOMPARE(Shown(window, "lbl_Months"), QStringLiteral("The month en&ds up to FEB 1900"));
                QCOMPARE(Row(window, 0).front(), QStringLiteral("JAN 1900"));
            },
            FirstMonthEnd + 1);
    }

    // A content typed as a fraction; the resin has nothing wrong.
    void What_is_not_trusted_before_the_changes_says_so() {
        WhatIfProgram program;
        AddFraction(program);
        program.AddUse(2, "1/2005", 2, UnitMgal);
        const QString trusted = QStringLiteral("The twelve month en&ds up to DEC 2005");
        const QString doubt = QStringLiteral(". \"Before\" at DEC 2005 is not trusted: 1 finding.");
        InWhatIf(program, [&](const frmWhatIf& window) {
            for (const char* figure :
                 {"Emissions, kg", "Allowance, kg", "Headroom, kg", "Content, %: pigmented gel coat"}) {
                Choose(window, "cbo_Figure", figure);
                QCOMPARE(Shown(window, "lbl_Months"), trusted + doubt);
            }
            QVERIFY(Named<QTableWidget>(window, "tbl_Months").accessibleDescription().endsWith(doubt));
            Choose(window, "cbo_Figure", "Content, %: production resin, nonatomized");
            QCOMPARE(Shown(window, "lbl_Months"), trusted);
            Choose(window, "cbo_Figure", "Emissions, kg");
            AddNumber(window, "GC-X", Content, "30");
            QCOMPARE(Shown(window, "lbl_Months"), trusted + doubt);
        });
    }

    void What_is_not_trusted_at_an_earlier_month_end_is_not_said() {
        WhatIfProgram program;
        AddFraction(program);
        program.AddUse(1, "3/2006", OneMg, UnitLbs);
        InWhatIf(
            program,
            [](const frmWhatIf& window) {
                QCOMPARE(Shown(window, "lbl_Months"),
                         QStringLiteral("The twelve month en&ds up to MAR 2006"));
            },
            MonthNumberOf(2006, 3));
    }

    void What_is_not_trusted_has_room_in_the_smallest_window() {
        WhatIfProgram program;
        AddFraction(program);
        InWhatIf(program, [&](frmWhatIf& window) {
            const auto& label = Named<QLabel>(window, "lbl_Months");
            const int oneLine = label.fontMetrics().lineSpacing();
            window.resize(960, 500);
            QCoreApplication::processEvents();
            QCOMPARE(window.size(), QSize(960, 500));
            QVERIFY(label.height() >= label.heightForWidth(label.width()));
            QVERIFY(Named<QTableWidget>(window, "tbl_Months").viewport()->height() > 4 * oneLine);
        });
    }

    void The_first_used_material_is_chosen() {
        WhatIfProgram program;
        program.AddUse(3, "2/2005", 1, UnitLbs);
        InWhatIf(
            program,
            [](const frmWhatIf& window) {
                QCOMPARE(Named<QComboBox>(window, "cbo_Material").currentText(), QStringLiteral("PR-B"));
                QCOMPARE(Shown(window, "lbl_Description"), QStringLiteral("Low styrene resin"));
            },
            MonthNumberOf(2006, 1)); // the gel coat's month is over
    }

    // 0.445 * 31^1.675 = 140.0847 kg/Mg.
    void A_content_changes_emissions_headroom_and_content() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "GC-110", Content, "31");
            QCOMPARE(Changes(window), QStringList({"The HAP content of GC-110 is 31 % instead of 33 %."}));
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 140.08 | -15.47"));
            QCOMPARE(Row(window, 0).mid(1, 3), Row(window, Newest).mid(1, 3));
            Choose(window, "cbo_Figure", "Headroom, kg");
            QCOMPARE(Numbers(window), QStringLiteral("3.45 | 18.92 | +15.47"));
            Choose(window, "cbo_Figure", "Allowance, kg");
            QCOMPARE(Numbers(window), QStringLiteral("159 | 159 | 0"));
            Choose(window, "cbo_Figure", "Content, %: pigmented gel coat");
            QCOMPARE(Numbers(window), QStringLiteral("33 | 31 | -2"));
        });
    }

    void Exact_figures_are_not_rounded() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "GC-110", Content, "31");
            Named<QCheckBox>(window, "chk_Exact").setChecked(true);
            QCOMPARE(Numbers(window), QStringLiteral("155.550303 | 140.084746 | -15.465556"));
        });
    }

    // 2 Mgal at 11.023 lb/gal are 10 Mg, at half of it 5 Mg; 45.59 kg/Mg, 46 allowed.
    void A_density_changes_what_is_measured_in_gallons() {
        WhatIfProgram program;
        program.AddUse(2, "6/2005", 2, UnitMgal);
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "PR-A", Density, "5.5115");
            QCOMPARE(Numbers(window), QStringLiteral("611.45 | 383.5 | -227.95"));
            QCOMPARE(Row(window, 4).at(3), QStringLiteral("0")); // MAY is before the use
            Choose(window, "cbo_Figure", "Allowance, kg");
            QCOMPARE(Numbers(window), QStringLiteral("619 | 389 | -230"));
        });
    }

    // 0.014 * 40^2.275 = 61.775251 kg/Mg; times 0.74 or 0.5 and 10 Mg.
    void A_filler_changes_the_exact_figures_alone() {
        WhatIfProgram program;
        program.AddUse(4, "8/2005", 10 * OneMg, UnitLbs);
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "FR-1", Filler, "50");
            QCOMPARE(Numbers(window), QStringLiteral("773.35 | 773.35 | 0"));
            Named<QCheckBox>(window, "chk_Exact").setChecked(true);
            QCOMPARE(Numbers(window), QStringLiteral("612.687157 | 464.426556 | -148.260601"));
            QCOMPARE(States(window), QString::fromUtf8("\u2260 Differs (filler) | \u2260 Differs (filler)"));
        });
    }

    // Spray: 0.014 * 35^2.425 = 77.71 kg/Mg.
    void A_method_moves_the_material_to_another_row() {
        WhatIfProgram program;
        program.AddUse(2, "6/2005", 2, UnitMgal);
        InWhatIf(program, [](const frmWhatIf& window) {
            Begin(window, "PR-A", Method);
            Choose(window, "cbo_Method", "Spray");
            Press(window, "cmd_Add");
            QCOMPARE(Numbers(window), QStringLiteral("611.45 | 932.65 | +321.2"));
            QCOMPARE(States(window), QString::fromUtf8("\u2713 Within | \u25B2 Over"));
            Choose(window, "cbo_Figure", "Content, %: production resin, atomized");
            QCOMPARE(Numbers(window), QStringLiteral(" | 35 | "));
            QCOMPARE(States(window), QString::fromUtf8("\u2013 Not used | \u25B2 Over"));
            Choose(window, "cbo_Figure", "Content, %: production resin, nonatomized");
            QCOMPARE(Numbers(window), QStringLiteral("35 |  | "));
            QVERIFY(Row(window, 0).mid(1, 3).join(QString()).isEmpty()); // not yet used in JAN
        });
    }

    void An_amount_is_multiplied_from_a_month_on() {
        WhatIfProgram program;
        program.AddUse(1, "2/2005", OneMg, UnitLbs);
        InWhatIf(program, [](const frmWhatIf& window) {
            Begin(window, "GC-110", Amount);
            Type(window, "txt_Number", "0.5");
            QCOMPARE(Named<QLineEdit>(window, "txt_FromYear").text(), QStringLiteral("2005"));
            Choose(window, "cbo_FromMonth", "FEB");
            Press(window, "cmd_Add");
            QCOMPARE(Changes(window),
                     QStringList({"The amount of GC-110 is 0.5 times as much from 2/2005 on."}));
            QCOMPARE(Row(window, 0).mid(1, 3), QStringList({"155.55", "155.55", "0"}));
            // 0.5 * 155.55 = 77.775, and half of 0.01 goes to the even digit.
            QCOMPARE(Row(window, 1).mid(1, 3), QStringList({"311.1", "233.32", "-77.78"}));
        });
    }

    // PR-B: 0.014 * 30^2.275 = 32.11 kg/Mg.
    void Another_material_takes_the_place() {
        WhatIfProgram program;
        program.AddUse(2, "6/2005", 2, UnitMgal);
        InWhatIf(program, [](const frmWhatIf& window) {
            Begin(window, "PR-A", Replacement);
            QVERIFY(!IsEnabled(window, "cmd_Add"));
            Choose(window, "cbo_Replacement", "PR-B");
            QCOMPARE(Shown(window, "lbl_Today"), QStringLiteral("PR-B has 30 % HAP: Production resin, "
                                                                "Non-Spray. It is used at equal mass."));
            Press(window, "cmd_Add");
            QCOMPARE(Changes(window), QStringList({"PR-B takes the place of PR-A at equal mass."}));
            QCOMPARE(Numbers(window), QStringLiteral("611.45 | 476.65 | -134.8"));
        });
    }

    void A_material_is_left_out_once() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            Begin(window, "GC-110", LeftOut);
            QCOMPARE(
                Shown(window, "lbl_Today"),
                QStringLiteral("The amount recorded for the twelve months ending with DEC 2005 is 1000 kg."));
            Press(window, "cmd_Add");
            QCOMPARE(Changes(window), QStringList({"GC-110 is left out."}));
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 0 | -155.55"));
            QCOMPARE(States(window), QString::fromUtf8("\u2713 Within | \u2013 Not used"));
            QVERIFY(!IsEnabled(window, "cmd_Add"));
            QCOMPARE(Shown(window, "lbl_Wrong"), QStringLiteral("There is no use of GC-110 to leave out."));
        });
    }

    // 0.445 * 29^1.675 = 125.28 kg/Mg; of 2 Mg.
    void Changes_follow_one_another() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "GC-110", Content, "31");
            QCOMPARE(Shown(window, "lbl_Today"), QStringLiteral("Today 33 %; with the changes 31 %."));
            AddNumber(window, "GC-110", Content, "29");
            Begin(window, "GC-110", Amount);
            Type(window, "txt_Number", "2");
            Press(window, "cmd_Add");
            QCOMPARE(Changes(window),
                     QStringList({"The HAP content of GC-110 is 31 % instead of 33 %.",
                                  "The HAP content of GC-110 is 29 % instead of 31 %.",
                                  "The amount of GC-110 is 2 times as much from 1/2005 on."}));
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 250.56 | +95.01"));
        });
    }

    void A_change_is_removed_and_the_others_stay() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "GC-110", Content, "31");
            AddNumber(window, "GC-110", Content, "29");
            QVERIFY(!IsEnabled(window, "cmd_Remove"));
            Named<QListWidget>(window, "lst_Changes").setCurrentRow(0);
            Press(window, "cmd_Remove");
            QCOMPARE(Changes(window), QStringList({"The HAP content of GC-110 is 29 % instead of 33 %."}));
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 125.28 | -30.27"));
        });
    }

    void All_changes_are_removed() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            QVERIFY(!IsEnabled(window, "cmd_RemoveAll"));
            AddNumber(window, "GC-110", Content, "31");
            AddNumber(window, "GC-110", Content, "29");
            Press(window, "cmd_RemoveAll");
            QVERIFY(Changes(window).isEmpty());
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 155.55 | 0"));
            QVERIFY(!IsEnabled(window, "cmd_RemoveAll"));
            QCOMPARE(Shown(window, "lbl_Today"), QStringLiteral("Today 33 %."));
        });
    }

    void The_chosen_figure_stays_with_the_next_change() {
        WhatIfProgram program;
        program.AddUse(2, "6/2005", 2, UnitMgal);
        InWhatIf(program, [](const frmWhatIf& window) {
            Choose(window, "cbo_Figure", "Content, %: pigmented gel coat");
            Begin(window, "PR-A", LeftOut); // a row less in the list, in front of the chosen one
            Press(window, "cmd_Add");
            QCOMPARE(Named<QComboBox>(window, "cbo_Figure").currentText(),
                     QStringLiteral("Content, %: pigmented gel coat"));
            QCOMPARE(Numbers(window), QStringLiteral("33 | 33 | 0"));
        });
    }

    void Bad_numbers_are_said_beside_the_field_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("sentence");
        const QString content = QStringLiteral("The new HAP content must be a number from 0 to 100 %.");
        QTest::newRow("empty") << int{Content} << QString() << content;
        QTest::newRow("text") << int{Content} << QStringLiteral("31,5") << content;
        QTest::newRow("above 100") << int{Content} << QStringLiteral("100.1") << content;
        QTest::newRow("negative") << int{Content} << QStringLiteral("-1") << content;
        QTest::newRow("same") << int{Content} << QStringLiteral("33.0")
                              << QStringLiteral("The HAP content of GC-110 is 33 % already.");
        QTest::newRow("density") << int{Density} << QStringLiteral("-0.1")
                                 << QStringLiteral(
                                        "The new density must be a number of lb/gal that is not negative.");
        QTest::newRow("filler") << int{Filler} << QStringLiteral("101")
                                << QStringLiteral("The new filler must be a number from 0 to 100 %.");
        QTest::newRow("factor") << int{Amount} << QStringLiteral("1e999")
                                << QStringLiteral("The factor must be a number that is not negative, as in "
                                                  "0.5 for half as much.");
    }
    void Bad_numbers_are_said_beside_the_field() {
        WhatIfProgram program;
        QFETCH(const int, kind);
        QFETCH(const QString, number);
        QFETCH(const QString, sentence);
        InWhatIf(program, [&](frmWhatIf& window) {
            Begin(window, "GC-110", static_cast<Kind>(kind));
            auto& field = Named<QLineEdit>(window, "txt_Number");
            field.setText(number);
            QCOMPARE(Shown(window, "lbl_Wrong"), sentence);
            QCOMPARE(field.accessibleDescription(), sentence);
            QVERIFY(!IsEnabled(window, "cmd_Add"));
            QTest::keyClick(&field, Qt::Key_Return);
            QVERIFY(window.isVisible());
            QVERIFY(Changes(window).isEmpty());
        });
    }

    void A_month_that_is_none_is_said() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            Begin(window, "GC-110", Amount);
            Type(window, "txt_Number", "2");
            for (const char* year : {"", "5", "1899"}) {
                Type(window, "txt_FromYear", year);
                QCOMPARE(Shown(window, "lbl_Wrong"),
                         QStringLiteral("The month must be from JAN 1900 to DEC 9999."));
                QVERIFY(!IsEnabled(window, "cmd_Add"));
            }
        });
    }

    void An_amount_without_use_from_the_month_on_is_said() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            Begin(window, "GC-110", Amount);
            Type(window, "txt_Number", "2");
            QVERIFY(IsEnabled(window, "cmd_Add")); // from the first of the twelve months on
            Choose(window, "cbo_FromMonth", "FEB");
            QCOMPARE(Shown(window, "lbl_Wrong"),
                     QStringLiteral("There is no use of GC-110 in FEB 2005 or later."));
            QVERIFY(!IsEnabled(window, "cmd_Add"));
        });
    }

    void Only_what_the_kind_needs_is_shown() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            const auto shown = [&] {
                QStringList names;
                for (const char* name :
                     {"txt_Number", "cbo_Method", "cbo_Replacement", "cbo_FromMonth", "txt_FromYear"})
                    if (Named<QWidget>(window, name).isVisibleTo(&window)) names << QLatin1String(name);
                return names;
            };
            QCOMPARE(shown(), QStringList({"txt_Number"}));
            QCOMPARE(Shown(window, "lbl_Unit"), QStringLiteral("%"));
            Begin(window, "GC-110", Density);
            QCOMPARE(shown(), QStringList({"txt_Number"}));
            QCOMPARE(Shown(window, "lbl_Unit"), QStringLiteral("lb/gal"));
            Begin(window, "GC-110", Method);
            QCOMPARE(shown(), QStringList({"cbo_Method"}));
            Begin(window, "GC-110", Amount);
            QCOMPARE(shown(), QStringList({"txt_Number", "cbo_FromMonth", "txt_FromYear"}));
            QCOMPARE(Shown(window, "lbl_Unit"), QStringLiteral("times as much"));
            Begin(window, "GC-110", Replacement);
            QCOMPARE(shown(), QStringList({"cbo_Replacement"}));
            Begin(window, "GC-110", LeftOut);
            QVERIFY(shown().isEmpty());
        });
    }

    // Where 0.445 h^1.675 = 159: at 33.4350 %.
    void The_break_even_contents_are_those_of_the_chosen_material() {
        WhatIfProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            QCOMPARE(Shown(window, "lbl_BreakEven"),
                     QStringLiteral("Break-even content of GC-110 for DEC 2005: of the average 33.43 %, of "
                                    "its row (pigmented gel coat) 33 %."));
            Choose(window, "cbo_Material", "PR-B");
            QCOMPARE(Shown(window, "lbl_BreakEven"),
                     QStringLiteral("Break-even content of PR-B for DEC 2005: none, it has no part in the "
                                    "average."));
        });
    }

    // 10 Mg of pure styrene leave nothing of the allowance, nor 1 Mg of PR-B any room in their row.
    void The_break_even_contents_are_of_the_shop_with_the_changes() {
        WhatIfProgram program;
        program.AddUse(2, "6/2005", 2, UnitMgal);
        program.AddUse(3, "6/2005", OneMg, UnitLbs);
        InWhatIf(program, [](const frmWhatIf& window) {
            Choose(window, "cbo_Material", "PR-B");
            QCOMPARE(Shown(window, "lbl_BreakEven").right(46),
                     QStringLiteral("of its row (production resin, nonatomized) 35 %.").right(46));
            AddNumber(window, "PR-A", Content, "100");
            Choose(window, "cbo_Material", "PR-B");
            QCOMPARE(Shown(window, "lbl_BreakEven"),
                     QStringLiteral("Break-even content of PR-B for DEC 2005: of the average none, of its "
                                    "row (production resin, nonatomized) none."));
        });
    }

    void Enter_adds_and_the_field_is_ready_for_the_next() {
        WhatIfProgram program;
        InWhatIf(program, [](frmWhatIf& window) {
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_Material"));
            auto& field = Named<QLineEdit>(window, "txt_Number");
            QTest::keyClick(&window, Qt::Key_V, Qt::AltModifier);
            QCOMPARE(window.focusWidget(), &field);
            QTest::keyClicks(&field, QStringLiteral("31"));
            QVERIFY(Named<QPushButton>(window, "cmd_Add").isDefault());
            QTest::keyClick(&field, Qt::Key_Return);
            WaitForFigures(window);
            QCOMPARE(Changes(window).size(), 1);
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 140.08 | -15.47"));
            QCOMPARE(field.text(), QString());
            QCOMPARE(window.focusWidget(), &field);
            QTest::keyClick(&field, Qt::Key_Return); // nothing to add
            QCOMPARE(Changes(window).size(), 1);
        });
    }

    void Delete_removes_the_chosen_change() {
        WhatIfProgram program;
        InWhatIf(program, [](frmWhatIf& window) {
            QVERIFY(QTest::qWaitForWindowActive(&window));
            AddNumber(window, "GC-110", Content, "31");
            AddNumber(window, "GC-110", Content, "29");
            auto& list = Named<QListWidget>(window, "lst_Changes");
            list.setFocus();
            QTest::keyClick(&list, Qt::Key_Delete); // none is chosen
            QCOMPARE(Changes(window).size(), 2);
            list.setCurrentRow(1);
            QTest::keyClick(&list, Qt::Key_Delete);
            WaitForFigures(window);
            QCOMPARE(Changes(window), QStringList({"The HAP content of GC-110 is 31 % instead of 33 %."}));
            QCOMPARE(Numbers(window), QStringLiteral("155.55 | 140.08 | -15.47"));
            QCOMPARE(list.currentRow(), 0);
            QCOMPARE(window.focusWidget(), &list);
        });
    }

    void Escape_and_Close_close() {
        WhatIfProgram program;
        InWhatIf(program, [](frmWhatIf& window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
        InWhatIf(program, [](const frmWhatIf& window) {
            Press(window, "cmd_Close");
            QVERIFY(!window.isVisible());
        });
    }

    void Without_materials_it_says_what_to_do() {
        TestProgram program;
        InWhatIf(program, [](const frmWhatIf& window) {
            QCOMPARE(Shown(window, "lbl_Wrong"),
                     QStringLiteral("There are no materials yet: choose Materials in the main window and add "
                                    "one."));
            QVERIFY(!IsEnabled(window, "cmd_Add") && !IsEnabled(window, "cbo_Material"));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cmd_Close"));
            QCOMPARE(Numbers(window), QStringLiteral("0 | 0 | 0"));
            QCOMPARE(Shown(window, "lbl_BreakEven"), QString());
        });
    }

    void Names_of_250_characters_do_not_widen_the_window() {
        WhatIfProgram program;
        ShopRecords shop = ShopOf(program);
        const std::string name(250, 'W');
        ShopMaterial& material = shop.Materials.front();
        shop.Types.push_back({.MaterialType = name, .HapLimit = 20, .ApplicationMethod = name});
        material.CustomId = material.Description = material.MaterialType = material.ApplicationMethod = name;
        InWhatIf(program, shop, [&](const frmWhatIf& window) {
            AddNumber(window, name.c_str(), Content, "19");
            QCOMPARE(Changes(window).size(), 1);
            Named<QComboBox>(window, "cbo_Kind").setCurrentIndex(Method);
            Choose(window, "cbo_Method", name.c_str());
            Named<QComboBox>(window, "cbo_Figure").setCurrentIndex(3);
            QCOMPARE(Numbers(window), QStringLiteral("33 | 19 | -14"));
            QVERIFY(window.minimumSizeHint().width() <= 960);
            QVERIFY(window.width() <= 1024);
        });
    }

    void A_tool_tip_shows_a_name_as_it_is_written() {
        WhatIfProgram program;
        ShopRecords shop = ShopOf(program);
        shop.Materials.front().CustomId = "<b>1";
        InWhatIf(program, shop, [](const frmWhatIf& window) {
            AddNumber(window, "<b>1", Content, "19");
            QCOMPARE(Named<QListWidget>(window, "lst_Changes").item(0)->toolTip(),
                     QStringLiteral("<qt>The HAP content of &lt;b&gt;1 is 19 % instead of 33 %."));
        });
    }

    void Of_materials_with_the_same_number_the_first_is_listed() {
        WhatIfProgram program;
        ShopRecords shop = ShopOf(program);
        shop.Materials[1].MaterialId = 1; // as in a damaged file
        InWhatIf(program, shop, [](const frmWhatIf& window) {
            const auto& materials = Named<QComboBox>(window, "cbo_Material");
            QCOMPARE(materials.count(), 3);
            QCOMPARE(materials.itemText(1), QStringLiteral("PR-B"));
            AddNumber(window, "PR-B", Content, "20");
            QCOMPARE(Changes(window), QStringList({"The HAP content of PR-B is 20 % instead of 30 %."}));
        });
    }

    void Figures_without_an_answer_are_no_numbers() {
        WhatIfProgram program;
        ShopRecords shop = ShopOf(program);
        shop.Usage.front().Quantity = std::numeric_limits<double>::infinity();
        InWhatIf(program, shop, [](const frmWhatIf& window) {
            QCOMPARE(Numbers(window), QStringLiteral("? | ? | ?"));
            Begin(window, "GC-110", LeftOut);
            Press(window, "cmd_Add");
            QCOMPARE(Numbers(window), QStringLiteral("? | 0 | ?"));
            QVERIFY(States(window).startsWith(u'?'));
        });
    }

    void The_records_stay_as_they_are() {
        WhatIfProgram program;
        const auto before = FilesIn(program.App.ProgramFolder / "data");
        QVERIFY(!before.empty());
        InWhatIf(program, [](const frmWhatIf& window) {
            AddNumber(window, "GC-110", Content, "31");
            Begin(window, "GC-110", Replacement);
            Choose(window, "cbo_Replacement", "PR-B");
            Press(window, "cmd_Add");
            Named<QListWidget>(window, "lst_Changes").setCurrentRow(0);
            Press(window, "cmd_Remove");
            QCOMPARE(Changes(window), QStringList({"PR-B takes the place of GC-110 at equal mass."}));
        });
        QVERIFY(FilesIn(program.App.ProgramFolder / "data") == before);
        QVERIFY(program.Prompts.Shown.empty());
        InWhatIf(program, [](const frmWhatIf& window) { QVERIFY(Changes(window).isEmpty()); });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_what_if_test)
#include "frm_what_if_test.moc"
