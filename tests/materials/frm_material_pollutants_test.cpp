#include "materials/frm_other_pollutants.h"
#include "store/frm_extra_pollutants_names.h"
#include "tests/materials/material_editor.h"

#include <QLabel>

namespace mact {

class frm_material_pollutants_test : public QObject {
    Q_OBJECT

private slots:
    void The_pollutants_open_with_the_names_of_the_company() {
        MaterialProgram program;
        program.App.AdditionalNames = "MMA|-|Styrene|-|-|-";
        program.New([](frmMaterial& window) {
            InNextModal<frmOtherPollutants>([](frmOtherPollutants& pollutants) {
                QCOMPARE(TextOf<QLabel>(pollutants, "lbl_poll_2"), std::string("Styrene"));
                QVERIFY(Edit(pollutants, "txt_pollcontent_2").isEnabled());
                QVERIFY(!Edit(pollutants, "txt_pollcontent_1").isEnabled());
            });
            Press(window, "cmd_Additional");
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_pollutant_that_is_not_in_use_is_saved_as_0() {
        MaterialProgram program;
        program.App.AdditionalNames = "MMA|-|-|-|-|-";
        program.New([](frmMaterial& window) {
            Fill(window, "A");
            InNextModal<frmOtherPollutants>([](frmOtherPollutants& pollutants) {
                Type(pollutants, "txt_pollcontent_0", "3");
                Type(pollutants, "txt_pollEFactor_0", "75");
                Press(pollutants, "cmd_OK");
            });
            Press(window, "cmd_Additional");
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Only().Content1, 3.0);
        QCOMPARE(program.Only().Factor1, 75.0);
        QCOMPARE(program.Only().Content2, 0.0);
        QCOMPARE(program.Only().Factor2, 0.0);
    }

    void Values_of_a_material_that_is_not_saved_are_gone() {
        MaterialProgram program;
        program.App.AdditionalNames = "MMA|-|-|-|-|-";
        program.New([](frmMaterial& window) {
            Fill(window, "A");
            InNextModal<frmOtherPollutants>([](frmOtherPollutants& pollutants) {
                Type(pollutants, "txt_pollcontent_0", "3");
                Press(pollutants, "cmd_OK");
            });
            Press(window, "cmd_Additional");
            Press(window, "cmd_Cancel");
        });
        QVERIFY(program.Materials().empty());
        program.New([](frmMaterial& window) {
            QCOMPARE(TextOf<QLineEdit>(window, "txt_pollcontent_0"), std::string("0"));
        });
    }

    void Values_that_were_left_by_Escape_are_not_saved() {
        MaterialProgram program;
        program.App.AdditionalNames = "MMA|-|-|-|-|-";
        const std::int16_t result = program.New([](frmMaterial& window) {
            Fill(window, "A");
            InNextModal<frmOtherPollutants>([](frmOtherPollutants& pollutants) {
                Type(pollutants, "txt_pollcontent_0", "nonsense");
                QTest::keyClick(&pollutants, Qt::Key_Escape);
            });
            Press(window, "cmd_Additional");
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, std::int16_t(0));
        QVERIFY(program.Prompts.Shown.empty());
        QCOMPARE(program.Only().Content1, 0.0);
    }

    void An_existing_material_keeps_its_values_also_those_not_in_use() {
        MaterialProgram program;
        program.Store("A", [](MaterialEntry& entry) {
            entry.Contents = "1.5|2|3|4|5|6";
            entry.Factors = "10|20|30|40|50|60";
        });
        program.App.AdditionalNames = "MMA|-|-|-|-|-";
        program.Edit(1, [](frmMaterial& window) {
            QCOMPARE(TextOf<QLineEdit>(window, "txt_pollcontent_0"), std::string("1.5"));
            QCOMPARE(TextOf<QLineEdit>(window, "txt_pollEFactor_5"), std::string("60"));
            QVERIFY(!Edit(window, "txt_pollcontent_5").isEnabled());
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Only().Content1, 1.5);
        QCOMPARE(program.Only().Content6, 6.0);
        QCOMPARE(program.Only().Factor6, 60.0);
    }

    void Names_that_are_not_six_count_as_undefined() {
        MaterialProgram program;
        program.Store("A");
        for (const bool isNew : {true, false}) {
            program.App.AdditionalNames = "a|b|c|d|e";
            if (isNew)
                program.New([](frmMaterial&) {});
            else
                program.Edit(1, [](frmMaterial&) {});
            QCOMPARE(program.App.AdditionalNames, std::string());
        }
    }

    void Without_names_a_No_opens_nothing() {
        MaterialProgram program;
        program.App.AdditionalNames.clear();
        program.New([&program](frmMaterial& window) {
            Press(window, "cmd_Additional");
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{
                         "You are using additional HAPs first time, you have to define the names first.\r\n"
                         "Do you want to continue?"});
            QCOMPARE(program.Prompts.Shown.back().Kind, PromptKind::Question);
            QCOMPARE(program.Prompts.Shown.back().Buttons, PromptButtons::YesNo);
        });
        QVERIFY(!std::filesystem::exists(program.DataFile("1_additional.talvor")));
    }

    void Without_names_a_Yes_defines_them_and_goes_on_to_the_values() {
        MaterialProgram program;
        program.App.AdditionalNames.clear();
        program.Prompts.Answers = {PromptAnswer::Yes};
        bool isOpen = false;
        program.New([&isOpen](frmMaterial& window) {
            InNextModal<frmExtraPollutantsNames>([&isOpen](frmExtraPollutantsNames& names) {
                const char* typed[] = {"MMA", "Styrene", "-", "-", "-", "-"};
                for (int index = 0; index < 6; ++index)
                    Type(names, ("txt_pname_" + std::to_string(index)).c_str(), typed[index]);
                InNextModal<frmOtherPollutants>([&isOpen](frmOtherPollutants& pollutants) {
                    isOpen = true;
                    QCOMPARE(TextOf<QLabel>(pollutants, "lbl_poll_1"), std::string("Styrene"));
                    QVERIFY(Edit(pollutants, "txt_pollcontent_1").isEnabled());
                    QVERIFY(!Edit(pollutants, "txt_pollcontent_2").isEnabled());
                });
                Press(names, "cmd_OK");
            });
            Press(window, "cmd_Additional");
        });
        QVERIFY(isOpen);
        QCOMPARE(program.App.AdditionalNames, std::string("MMA|Styrene|-|-|-|-"));
    }

    void Names_that_stay_other_than_six_open_no_values_and_are_asked_for_again() {
        MaterialProgram program;
        WriteContent(program.DataFile("1_additional.talvor"), "a|b|c|d|e\r\n");
        program.App.AdditionalNames = "a|b|c|d|e";
        program.Prompts.Answers = {PromptAnswer::Yes, PromptAnswer::No};
        program.New([&program](frmMaterial& window) {
            InNextModal<frmExtraPollutantsNames>([](frmExtraPollutantsNames& names) { names.close(); });
            Press(window, "cmd_Additional");
            QVERIFY(window.isVisible() && QApplication::activeModalWidget() == &window);
            Press(window, "cmd_Additional");
            QCOMPARE(program.Prompts.Shown.size(), std::size_t(2));
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_material_pollutants_test)
#include "frm_material_pollutants_test.moc"
