#include "dialogs/hint_label.h"
#include "materials/material_store.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// GC-110 of 9.1 lb/gal, of which 402 lbs were used in each of three months.
struct HintProgram : TestProgram {
    HintProgram() {
        App.CurrentCompanyName = "Acme Boats";
        App.CurrentCompanyLocation = "Port Ellery";
        if (SaveMaterial(App, {.CustomId = "GC-110",
                               .Description = "White gel coat",
                               .Density = 9.1,
                               .Contents = "0|0|0|0|0|0",
                               .Factors = "0|0|0|0|0|0"}))
            qFatal("The test's material was not saved");
        for (const char* period : {"1/2005", "2/2005", "3/2005"})
            if (SaveUsage(App, {.MaterialId = 1, .Period = period, .Quantity = 402, .Unit = UnitLbs}))
                qFatal("The test's usage was not saved");
    }
    void New(const std::function<void(frmUsage&)>& act) {
        InNextModal<frmUsage>(act);
        NewUsage(App, nullptr);
    }
};

QLabel& HintIn(const frmUsage& window) {
    return Named<QLabel>(window, "lbl_QuantityHint");
}

void SelectFirst(const frmUsage& window, const char* unit) {
    Named<QComboBox>(window, "cbo_MaterialId").setCurrentIndex(0);
    QComboBox& units = Named<QComboBox>(window, "cbo_Unit");
    units.setCurrentIndex(units.findText(QString::fromLatin1(unit)));
}

} // namespace

class frm_usage_hint_test : public QObject {
    Q_OBJECT

private slots:
    void Fifty_five_gallons_entered_as_mgal_are_noticed() {
        HintProgram program;
        program.New([](frmUsage& window) {
            SelectFirst(window, "Mgal");
            QCOMPARE(HintIn(window).text(), QString());
            QTest::keyClicks(&Named<QLineEdit>(window, "txt_Quantiry"), QStringLiteral("55"));
            QCOMPARE(HintIn(window).text().toStdString(),
                     std::string("= 500,500 lbs: over five times 402 lbs, this material's median month; "
                                 "1 Mgal is 1,000 gallons"));
            QCOMPARE(HintIn(window).palette().color(QPalette::WindowText), DoubtColour(window.palette()));
            SelectFirst(window, "lbs");
            QCOMPARE(HintIn(window).text(),
                     QStringLiteral("= 55 lbs: under a fifth of 402 lbs, this material's median month"));
        });
    }

    void A_usual_quantity_is_shown_in_the_windows_colour() {
        HintProgram program;
        program.New([](frmUsage& window) {
            SelectFirst(window, "lbs");
            Named<QLineEdit>(window, "txt_Quantiry").setText(QStringLiteral("1400"));
            QCOMPARE(HintIn(window).text(), QStringLiteral("= 1,400 lbs"));
            QCOMPARE(HintIn(window).palette().color(QPalette::WindowText),
                     window.palette().color(QPalette::WindowText));
        });
    }

    void Screen_readers_read_it_with_the_quantity() {
        HintProgram program;
        program.New([](frmUsage& window) {
            SelectFirst(window, "lbs");
            Named<QLineEdit>(window, "txt_Quantiry").setText(QStringLiteral("1400"));
            QCOMPARE(Named<QLineEdit>(window, "txt_Quantiry").accessibleDescription(),
                     QStringLiteral("= 1,400 lbs"));
        });
    }

    void It_never_stops_a_save() {
        HintProgram program;
        program.New([](frmUsage& window) {
            SelectFirst(window, "Mgal");
            Named<QComboBox>(window, "cbo_Month").setCurrentIndex(5);
            Named<QLineEdit>(window, "txt_Quantiry").setText(QStringLiteral("55"));
            Named<QPushButton>(window, "cmd_Save").click();
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(program.ShownTexts().size(), std::size_t{0});
        std::vector<UsageRecord> records;
        FindUsage(program.App, {}, records);
        QCOMPARE(records.size(), std::size_t{4});
        QCOMPARE(records.back().Quantity, 55.0);
    }

    void The_record_that_is_edited_is_not_compared_with_itself() {
        HintProgram program;
        if (SaveUsage(
                program.App,
                {.UsageId = 3, .MaterialId = 1, .Period = "3/2005", .Quantity = 40200, .Unit = UnitLbs}))
            qFatal("Not saved");
        if (DeleteUsage(program.App, 1)) qFatal("Not deleted");
        InNextModal<frmUsage>([](frmUsage& window) {
            QCOMPARE(HintIn(window).text(), // compared with the mean of both, it would be usual
                     QStringLiteral("= 40,200 lbs: over five times 402 lbs, this material's median month"));
        });
        EditUsage(program.App, 3, nullptr);
    }

    void The_company_is_named() {
        HintProgram program;
        program.New([](frmUsage& window) {
            QCOMPARE(TextOf<QLabel>(window, "lbl_Company"), std::string("Company: Acme Boats, Port Ellery"));
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_usage_hint_test)
#include "frm_usage_hint_test.moc"
