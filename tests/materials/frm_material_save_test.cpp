#include "base/text.h"
#include "materials/frm_other_pollutants.h"
#include "tests/materials/material_editor.h"
#include "tests/support/bytes.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace mact {

class frm_material_save_test : public QObject {
    Q_OBJECT

private slots:
    void A_new_material_is_written_field_by_field() {
        MaterialProgram program;
        program.App.AdditionalNames = "a|b|c|d|e|f";
        const std::int16_t result = program.New([](frmMaterial& window) {
            Type(window, "txt_CustomId", "  GC-\u00E9  ");
            Type(window, "txt_Description", " White ");
            Select(window, "cbo_MaterialType", "Production resin (Filled)");
            Select(window, "cbo_ApplicationType", "Non-Spray");
            Type(window, "txt_density", "9.25");
            Type(window, "txt_HapContents", "35");
            Type(window, "txt_filler", "20");
            Press(window, "chk_EmissionFactor");
            Type(window, "txt_EmissionFactor", " 12.5");
            Type(window, "txt_Comments", " Stack test ");
            InNextModal<frmOtherPollutants>([](frmOtherPollutants& pollutants) {
                for (int row = 0; row < 6; ++row) {
                    const std::string index = std::to_string(row);
                    Type(pollutants, ("txt_pollcontent_" + index).c_str(), std::to_string(row + 1).c_str());
                    Type(pollutants, ("txt_pollEFactor_" + index).c_str(),
                         std::to_string(10 * (row + 1)).c_str());
                }
                Press(pollutants, "cmd_OK");
            });
            Press(window, "cmd_Additional");
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
            QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string("0"));
        });
        QCOMPARE(result, std::int16_t(0));
        QVERIFY(program.Prompts.Shown.empty());
        QCOMPARE(ContentOf(program.File),
                 Hex("01 00") + Padded("GC-\xE9", 100) + Padded("Production resin (Filled)", 100) +
                     Padded("Non-Spray", 100) + Hex("00 00 00 00 00 80 22 40") + // 9.25
                     Hex("00 00 00 00 00 80 41 40") +                            // 35
                     Hex("00 00 00 00 00 00 29 40") +                            // 12.5
                     Padded("Stack test", 255) + Padded("White", 100) + Hex("FF FF") +
                     Hex("00 00 00 00 00 00 F0 3F 00 00 00 00 00 00 24 40") + // 1, 10
                     Hex("00 00 00 00 00 00 00 40 00 00 00 00 00 00 34 40") + // 2, 20
                     Hex("00 00 00 00 00 00 08 40 00 00 00 00 00 00 3E 40") + // 3, 30
                     Hex("00 00 00 00 00 00 10 40 00 00 00 00 00 00 44 40") + // 4, 40
                     Hex("00 00 00 00 00 00 14 40 00 00 00 00 00 00 49 40") + // 5, 50
                     Hex("00 00 00 00 00 00 18 40 00 00 00 00 00 00 4E 40") + // 6, 60
                     Hex("00 00 00 00 00 00 34 40") + Zeros(657));            // 20
    }

    void An_id_that_differs_only_in_case_or_blanks_is_a_duplicate() {
        for (const char* id : {"gc-100", "  GC-100 ", "Gc-100"}) {
            MaterialProgram program;
            program.Store("GC-100");
            const std::int16_t result = program.New([&](frmMaterial& window) {
                Fill(window, id);
                Press(window, "cmd_Save");
                QVERIFY(window.isVisible());
                QCOMPARE(TextOf<QLineEdit>(window, "txt_CustomId"), std::string(id));
                QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string());
                QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_CustomId"));
            });
            QCOMPARE(result, std::int16_t(-1));
            QCOMPARE(
                program.ShownTexts(),
                std::vector<std::string>{FormErrorsHead + "- Material with the same Id already exsists."});
            QCOMPARE(program.Materials().size(), std::size_t(1));
        }
    }

    void The_id_of_a_deleted_material_is_free() {
        MaterialProgram program;
        program.Store("GC-100");
        QVERIFY(!DeleteMaterial(program.App, 1, [](std::int16_t) -> Result<bool> { return false; }));
        const std::int16_t result = program.New([](frmMaterial& window) {
            Fill(window, "GC-100");
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, std::int16_t(0));
        QCOMPARE(program.Only().MaterialId, std::int16_t(2));
    }

    // --- An existing material

    void An_existing_material_is_shown() {
        MaterialProgram program;
        program.Store("GC-100", [](MaterialEntry& entry) {
            entry.Description = "  Caf\xE9 resin";
            entry.MaterialType = "PRODUCTION resin (filled)";
            entry.ApplicationMethod = "closed molding";
            entry.HapContent = 0.1 + 0.2;
            entry.EmissionFactor = 12.5;
            entry.Comments = " Stack test";
            entry.Filler = 20;
        });
        const std::int16_t result = program.Edit(1, [](frmMaterial& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("Update Material"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string("1"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_CustomId"), std::string("GC-100"));
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Description"), std::string("Caf\xC3\xA9 resin"));
            QCOMPARE(Combo(window, "cbo_MaterialType").currentText(),
                     QStringLiteral("Production resin (Filled)"));
            QCOMPARE(Combo(window, "cbo_ApplicationType").currentText(), QStringLiteral("Closed Molding"));
            QCOMPARE(TextOf<QLineEdit>(window, "txt_density"), std::string("9.2"));
            QCOMPARE(TextOf<QLineEdit>(window, "txt_HapContents"), std::string("0.3"));
            QVERIFY(Named<QCheckBox>(window, "chk_EmissionFactor").isChecked());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_EmissionFactor"), std::string("12.5"));
            QVERIFY(Edit(window, "txt_EmissionFactor").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Comments"), std::string("Stack test"));
            QCOMPARE(TextOf<QLineEdit>(window, "txt_filler"), std::string("20"));
            QVERIFY(Edit(window, "txt_filler").isEnabled());
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_CustomId"));
        });
        QCOMPARE(result, std::int16_t(-1));
    }

    void Comments_without_a_factor_are_shown_and_kept() {
        MaterialProgram program;
        program.Store("A", [](MaterialEntry& entry) { entry.Comments = "imported"; });
        program.Edit(1, [](frmMaterial& window) {
            QVERIFY(!Named<QCheckBox>(window, "chk_EmissionFactor").isChecked());
            QVERIFY(!Edit(window, "txt_Comments").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Comments"), std::string("imported"));
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Only().Comments, std::string("imported"));
    }

    void A_filled_resin_saved_with_filler_0_opens_with_the_filler_disabled() {
        MaterialProgram program;
        program.Store("A", [](MaterialEntry& entry) { entry.MaterialType = "Production resin (Filled)"; });
        const std::int16_t result = program.Edit(1, [](frmMaterial& window) {
            QVERIFY(!Edit(window, "txt_filler").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_filler"), std::string("0"));
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, std::int16_t(0));
        QCOMPARE(program.Only().Filler, 0.0);
    }

    void Choosing_the_same_type_again_lets_its_filler_be_typed() {
        MaterialProgram program;
        program.Store("A", [](MaterialEntry& entry) { entry.MaterialType = "Production resin (Filled)"; });
        program.Edit(1, [](frmMaterial& window) {
            QComboBox& types = Combo(window, "cbo_MaterialType");
            types.showPopup();
            QTest::keyClick(types.view(), Qt::Key_Return);
            QVERIFY(Edit(window, "txt_filler").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_filler"), std::string());
        });
    }

    void A_filler_that_a_type_cannot_have_is_shown_and_can_be_typed() {
        MaterialProgram program;
        program.Store("A", [](MaterialEntry& entry) { entry.Filler = 7; });
        program.Edit(1, [](frmMaterial& window) {
            QVERIFY(Edit(window, "txt_filler").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_filler"), std::string("7"));
        });
    }

    void A_type_that_the_table_lacks_must_be_chosen_anew() {
        MaterialProgram program;
        program.Store("A", [](MaterialEntry& entry) { entry.MaterialType = "Marble"; });
        program.Edit(1, [&program](frmMaterial& window) {
            QCOMPARE(Combo(window, "cbo_MaterialType").currentIndex(), -1);
            Press(window, "cmd_Save");
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{FormErrorsHead + "- You must select material type.\r\n"
                                                               "- You must select application type.\r\n"});
        });
    }

    void An_update_overwrites_the_record_and_keeps_its_number() {
        MaterialProgram program;
        program.Store("A");
        program.Store("B");
        program.Store("C");
        const std::int16_t result = program.Edit(2, [](frmMaterial& window) {
            Type(window, "txt_CustomId", "B2");
            Type(window, "txt_density", "8");
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, std::int16_t(0));
        const std::vector<MaterialRecord> materials = program.Materials();
        QCOMPARE(materials.size(), std::size_t(3));
        QCOMPARE(materials[1].MaterialId, std::int16_t(2));
        QCOMPARE(std::string(Trim(materials[1].CustomId)), std::string("B2"));
        QCOMPARE(materials[1].Density, 8.0);
        QCOMPARE(ContentOf(program.File).size(), std::size_t(3 * 1444));
    }

    void An_update_accepts_the_id_of_another_material() {
        MaterialProgram program;
        program.Store("A");
        program.Store("B");
        const std::int16_t result = program.Edit(2, [](frmMaterial& window) {
            Type(window, "txt_CustomId", "A");
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, std::int16_t(0));
        QVERIFY(program.Prompts.Shown.empty());
        std::vector<MaterialRecord> found;
        QVERIFY(FindMaterials(program.App, {.CustomId = "A"}, found));
        QCOMPARE(found.size(), std::size_t(2));
    }

    void A_material_that_is_not_there_any_more_is_reported() {
        MaterialProgram program;
        program.Store("A");
        QVERIFY(!DeleteMaterial(program.App, 1, [](std::int16_t) -> Result<bool> { return false; }));
        for (const std::int16_t materialId : {std::int16_t(1), std::int16_t(2)}) {
            program.Prompts.Shown.clear();
            QCOMPARE(EditMaterial(program.App, materialId, nullptr), std::int16_t(-1));
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{FormErrorsHead +
                                              "- Material not found. Please reopen the list form."});
        }
    }

    // --- Leaving, and the keyboard

    void Cancel_Escape_and_closing_save_nothing() {
        for (const int way : {0, 1, 2, 3}) {
            MaterialProgram program;
            const std::int16_t result = program.New([way](frmMaterial& window) {
                Fill(window, "A");
                if (way == 0) Press(window, "cmd_Cancel");
                if (way == 1) QTest::keyClick(&Edit(window, "txt_density"), Qt::Key_Escape);
                if (way == 2) window.close();
                if (way == 3) QTest::keyClick(&Named<QPushButton>(window, "cmd_Cancel"), Qt::Key_Return);
                QVERIFY(!window.isVisible());
                QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string());
            });
            QCOMPARE(result, std::int16_t(-1));
            QVERIFY(program.Prompts.Shown.empty());
            QVERIFY(program.Materials().empty());
        }
    }

    void Enter_saves_from_any_field() {
        for (const char* name : {"txt_CustomId", "cbo_MaterialType", "chk_EmissionFactor"}) {
            MaterialProgram program;
            const std::int16_t result = program.New([name](frmMaterial& window) {
                Fill(window, "A");
                QTest::keyClick(&Named<QWidget>(window, name), Qt::Key_Return);
                QVERIFY(!window.isVisible());
            });
            QCOMPARE(result, std::int16_t(0));
        }
    }

    void Tab_goes_through_the_fields_in_their_order() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Select(window, "cbo_MaterialType", "Production resin (Filled)");
            Press(window, "chk_EmissionFactor");
            for (const char* name :
                 {"txt_CustomId", "txt_Description", "cbo_MaterialType", "cbo_ApplicationType", "txt_density",
                  "txt_HapContents", "txt_filler", "chk_EmissionFactor", "img_help", "txt_EmissionFactor",
                  "txt_Comments", "cmd_Additional", "cmd_Save", "cmd_Cancel", "lbl_Company",
                  "txt_CustomId"}) {
                QCOMPARE(window.focusWidget()->objectName(), QString::fromLatin1(name));
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            }
        });
    }

    void Tab_passes_over_what_cannot_be_typed() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Edit(window, "txt_HapContents").setFocus();
            for (const char* name : {"txt_HapContents", "chk_EmissionFactor", "img_help", "cmd_Additional"}) {
                QCOMPARE(window.focusWidget()->objectName(), QString::fromLatin1(name));
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            }
        });
    }

    void A_material_can_be_entered_with_the_keyboard_alone() {
        MaterialProgram program;
        const std::int16_t result = program.New([](frmMaterial& window) {
            const auto type = [&window](const char* text) {
                QTest::keyClicks(window.focusWidget(), QString::fromLatin1(text));
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            };
            type("K-1");
            type("By keyboard");
            QTest::keyClick(window.focusWidget(), Qt::Key_Down); // the first type
            type("");
            QTest::keyClick(window.focusWidget(), Qt::Key_Down); // the second method
            type("");
            type("9.25");
            type("35");
            QTest::keyClick(window.focusWidget(), Qt::Key_Return);
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(result, std::int16_t(0));
        QCOMPARE(program.Only().MaterialType, std::string("Production resin"));
        QCOMPARE(program.Only().ApplicationMethod, std::string("Spray (Vacuum bagging after roll-out)"));
    }

    void A_character_that_the_code_page_lacks_is_shown_as_a_question_mark() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        for (const char* name : {"txt_CustomId", "txt_Description", "txt_density", "txt_HapContents",
                                 "txt_filler", "txt_EmissionFactor", "txt_Comments"}) {
            Type(window, name, "\u0141\u00F3");
            QCOMPARE(Edit(window, name).text(), QStringLiteral("?\u00F3"));
        }
    }

    void No_text_is_longer_than_its_field() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        QCOMPARE(Edit(window, "txt_CustomId").maxLength(), 100);
        QCOMPARE(Edit(window, "txt_Description").maxLength(), 100);
        QCOMPARE(Edit(window, "txt_Comments").maxLength(), 255);
    }

    // --- Failures

    void A_material_that_cannot_be_saved_keeps_the_window_open() {
        LimitedProgram program;
        program.Limited.Limits[program.File].LongestFile = 700;
        InNextModal<frmMaterial>([](frmMaterial& window) {
            Fill(window, "A");
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_CustomId"), std::string("A"));
        });
        QCOMPARE(NewMaterial(program.LimitedApp, nullptr), std::int16_t(-1));
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"The disk is full."});
    }

    void A_material_can_be_saved_once_the_disk_has_room_again() {
        LimitedProgram program;
        program.Limited.Limits[program.File].LongestFile = 700;
        InNextModal<frmMaterial>([&program](frmMaterial& window) {
            Fill(window, "A");
            Press(window, "cmd_Save");
            program.Limited.Limits.clear();
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(NewMaterial(program.LimitedApp, nullptr), std::int16_t(0));
        QCOMPARE(program.Only().CustomId.front(), 'A');
    }

    void An_update_that_another_copy_holds_up_keeps_the_window_open() {
        LimitedProgram program;
        program.Store("A");
        program.Limited.Limits[program.File].IsLocked = true;
        InNextModal<frmMaterial>([](frmMaterial& window) {
            Type(window, "txt_CustomId", "B");
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
        });
        QCOMPARE(EditMaterial(program.LimitedApp, 1, nullptr), std::int16_t(-1));
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"The file is locked."});
        QCOMPARE(program.Only().CustomId.front(), 'A');
    }

    void Materials_that_cannot_be_read_are_one_message_and_nothing_is_saved() {
        LimitedProgram program;
        program.Store("A");
        const std::string before = ContentOf(program.File);
        program.Limited.Limits[program.File].LongestFile = 1000;
        InNextModal<frmMaterial>([](frmMaterial& window) {
            Fill(window, "A");
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
        });
        QCOMPARE(NewMaterial(program.LimitedApp, nullptr), std::int16_t(-1));
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"The disk is damaged."});
        QCOMPARE(ContentOf(program.File), before);
    }

    void A_material_that_cannot_be_read_is_one_message() {
        LimitedProgram program;
        program.Store("A");
        program.Limited.Limits[program.File].LongestFile = 1000;
        QCOMPARE(EditMaterial(program.LimitedApp, 1, nullptr), std::int16_t(-1));
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"The disk is damaged."});
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_material_save_test)
#include "frm_material_save_test.moc"
