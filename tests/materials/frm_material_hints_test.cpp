#include "dialogs/hint_label.h"
#include "tests/materials/material_editor.h"

#include <QCheckBox>
#include <QLabel>

namespace mact {
namespace {

std::string Figures(const QWidget& window) {
    return TextOf<QLabel>(window, "lbl_Figures");
}

std::string Doubts(const QWidget& window) {
    return TextOf<QLabel>(window, "lbl_Doubts");
}

} // namespace

class frm_material_hints_test : public QObject {
    Q_OBJECT

private slots:
    void Limit_and_point_value_follow_what_is_typed() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            QCOMPARE(Figures(window), std::string());
            Select(window, "cbo_MaterialType", "Production resin"); // selects its first method, Spray
            QCOMPARE(Figures(window), std::string("Limit: 28 wt%."));
            QTest::keyClicks(&Edit(window, "txt_HapContents"), QStringLiteral("35"));
            QCOMPARE(Figures(window), std::string("Limit: 28 wt%. Point value: 77.71 kg/Mg."));
            QCOMPARE(Doubts(window), std::string("A HAP content of 35 wt% is over the limit of 28 wt%."));
            QCOMPARE(Named<QLabel>(window, "lbl_Doubts").palette().color(QPalette::WindowText),
                     DoubtColour(window.palette()));
            Select(window, "cbo_ApplicationType", "Non-Spray");
            QCOMPARE(Figures(window), std::string("Limit: 35 wt%. Point value: 45.59 kg/Mg."));
            QCOMPARE(Doubts(window), std::string());
        });
    }

    void Screen_readers_read_the_doubts_with_their_fields() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Type(window, "txt_density", "0.9");
            QCOMPARE(Edit(window, "txt_density").accessibleDescription().toStdString(), Doubts(window));
            QVERIFY(Doubts(window).starts_with("A density of 0.9 lb/gal is unusual"));
        });
    }

    void A_filler_and_an_emission_factor_are_said_to_be_stored_only() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Select(window, "cbo_MaterialType", "Tooling resin (Filled)");
            Type(window, "txt_filler", "40");
            QCOMPARE(Figures(window),
                     std::string("Limit: 30 wt%. The filler is stored, but no report applies it."));
            Select(window, "cbo_MaterialType", "Tooling resin");
            Named<QCheckBox>(window, "chk_EmissionFactor").setChecked(true);
            QCOMPARE(Figures(window),
                     std::string("Limit: 30 wt%. The emission factor is stored, but no report applies it."));
        });
    }

    void A_stored_material_opens_with_its_hints() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Fill(window, "PR-1");
            Press(window, "cmd_Save");
        });
        program.Edit(1, [](frmMaterial& window) {
            QCOMPARE(Figures(window), std::string("Limit: 28 wt%. Point value: 77.71 kg/Mg."));
            QCOMPARE(Doubts(window), std::string("A HAP content of 35 wt% is over the limit of 28 wt%."));
        });
    }

    void Doubts_never_stop_a_save() {
        MaterialProgram program;
        const std::int16_t outcome = program.New([](frmMaterial& window) {
            Fill(window, "PR-1");
            Type(window, "txt_density", "92");
            Type(window, "txt_HapContents", "130");
            Press(window, "cmd_Save");
        });
        QCOMPARE(outcome, std::int16_t{0});
        QCOMPARE(program.ShownTexts().size(), std::size_t{0});
    }

    void Without_the_table_there_is_no_hint_on_it() {
        MaterialProgram program;
        std::filesystem::remove(program.DataFile("hapcontents.talvor"));
        program.New([](frmMaterial& window) {
            Type(window, "txt_HapContents", "130");
            QCOMPARE(Figures(window), std::string());
            QCOMPARE(Doubts(window), std::string("A HAP content of 130 wt% cannot be: it is 0 to 100."));
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_material_hints_test)
#include "frm_material_hints_test.moc"
