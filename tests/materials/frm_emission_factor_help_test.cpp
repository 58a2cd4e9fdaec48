#include "materials/frm_emission_factor_help.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace mact {

class frm_emission_factor_help_test : public QObject {
    Q_OBJECT

private slots:
    void Tells_where_alternate_emission_factors_come_from() {
        const frm_EmissionFactorHelp window(nullptr);
        QCOMPARE(window.objectName(), QStringLiteral("frm_EmissionFactorHelp"));
        QCOMPARE(window.windowTitle(), QStringLiteral("Alternate Emission Factor Information"));
        QCOMPARE(
            TextOf<QLabel>(window, "lbl_info"),
            std::string(
                "Default emission factors are provided in the software from the MACT standards. Each state "
                "may require use of specified emission factors. Further, an individual plant or company may "
                "have completed testing to determine emission factors for specific operations and materials. "
                "Those data can be used in this calculation program, with an identifier to the source of the "
                "emission data. One such source of emission data for emissions from fiberglass boat "
                "manufacturing operations is contained in the National Marine Mnufacturers Association's "
                "\"Baseline Characterization of Emissions from Fiberglass Boat Manufacture,\" posted at the "
                "EPA's emission factor website"));
        QVERIFY(Named<QLabel>(window, "lbl_info").wordWrap());
    }

    void Names_the_address_in_parentheses() {
        const frm_EmissionFactorHelp window(nullptr);
        const QString address = Named<QLabel>(window, "lbl_url").text();
        QVERIFY(address.startsWith(QLatin1String("(URL: http")));
        QVERIFY(address.endsWith(u')'));
    }

    void The_texts_can_be_copied() {
        const frm_EmissionFactorHelp window(nullptr);
        for (const char* name : {"lbl_info", "lbl_url"}) {
            const auto& label = Named<QLabel>(window, name);
            QCOMPARE(label.textFormat(), Qt::PlainText);
            QVERIFY(label.textInteractionFlags() & Qt::TextSelectableByKeyboard);
        }
    }

    void Nothing_is_cut_off() {
        TestProgram program;
        InNextModal<frm_EmissionFactorHelp>([](frm_EmissionFactorHelp& window) {
            const auto& label = Named<QLabel>(window, "lbl_info");
            QVERIFY(label.height() >= label.heightForWidth(label.width()));
            QVERIFY(window.width() <= 960 && window.height() <= 500);
        });
        ShowEmissionFactorHelp(program.App, nullptr);
    }

    void Close_Enter_and_Escape_close_it() {
        for (const int key : {0, int(Qt::Key_Return), int(Qt::Key_Escape)}) {
            TestProgram program;
            InNextModal<frm_EmissionFactorHelp>([key](frm_EmissionFactorHelp& window) {
                QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cmd_Close"));
                if (key == 0)
                    Named<QPushButton>(window, "cmd_Close").click();
                else
                    QTest::keyClick(&window, Qt::Key(key));
                QVERIFY(!window.isVisible());
            });
            ShowEmissionFactorHelp(program.App, nullptr);
        }
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_emission_factor_help_test)
#include "frm_emission_factor_help_test.moc"
