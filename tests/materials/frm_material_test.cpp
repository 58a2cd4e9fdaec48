#include "materials/frm_emission_factor_help.h"
#include "tests/materials/material_editor.h"
#include "tests/support/bytes.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace mact {

class frm_material_test : public QObject {
    Q_OBJECT

private slots:
    void A_new_material_starts_empty_in_the_first_field() {
        MaterialProgram program;
        const std::int16_t result = program.New([](frmMaterial& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("New Material"));
            for (const char* name : {"txt_CustomId", "txt_Description", "txt_density", "txt_HapContents",
                                     "txt_EmissionFactor", "txt_Comments"})
                QCOMPARE(TextOf<QLineEdit>(window, name), std::string());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_filler"), std::string("0"));
            for (const char* name : {"txt_filler", "txt_EmissionFactor", "txt_Comments"})
                QVERIFY2(!Edit(window, name).isEnabled(), name);
            for (const char* name : {"lbl_EmissionFactor", "lbl_Basis", "lbl_ApplicationMethod"})
                QVERIFY2(!Named<QLabel>(window, name).isEnabled(), name);
            for (const char* name : {"lbl_Id", "lbl_result"}) {
                QVERIFY2(Named<QLabel>(window, name).isHidden(), name);
                QCOMPARE(TextOf<QLabel>(window, name), std::string());
            }
            QCOMPARE(Combo(window, "cbo_MaterialType").currentIndex(), -1);
            QVERIFY(!Combo(window, "cbo_ApplicationType").isEnabled());
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_CustomId"));
        });
        QCOMPARE(result, std::int16_t(-1));
    }

    void Labels_have_their_words() {
        const std::pair<const char*, const char*> labels[] = {
            {"lbl_CustomId",          "Material Id :"                          },
            {"lbl_Description",       "Description :"                          },
            {"lbl_MaterialType",      "Material Type :"                        },
            {"lbl_ApplicationMethod", "Application Method :"                   },
            {"lbl_Density",           "Density (lbs/gal) :"                    },
            {"lbl_HapContents",       "Organic HAP Content (wt%) :"            },
            {"lbl_filler",            "Filler (wt%) :"                         },
            {"lbl_FillerNote",        "Mandatory when specifying filled resins"},
            {"lbl_EmissionFactor",    "Emission Factor :"                      },
            {"lbl_Basis",             "Emission Factor Basis :"                },
        };
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        for (const auto& [name, words] : labels)
            QCOMPARE(Named<QLabel>(window, name).text().remove(u'&'), QString::fromLatin1(words));
        QCOMPARE(Named<QCheckBox>(window, "chk_EmissionFactor").text().remove(u'&'),
                 QStringLiteral(
                     "I want to specify an emission factor in place of the EPA model plant point value."));
        QCOMPARE(Named<QPushButton>(window, "cmd_Additional").text(),
                 QStringLiteral("&Additional Pollutants"));
        QCOMPARE(Named<QPushButton>(window, "cmd_Save").text(), QStringLiteral("&Save"));
        QCOMPARE(Named<QPushButton>(window, "cmd_Cancel").text(), QStringLiteral("&Cancel"));
        QCOMPARE(Named<QToolButton>(window, "img_help").toolTip(),
                 QStringLiteral("Information about alternate emission factors."));
    }

    void Fits_on_a_small_screen() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Select(window, "cbo_MaterialType", "Production resin (Filled)");
            QVERIFY(window.width() <= 960 && window.height() <= 500);
            QVERIFY(window.minimumSizeHint().width() <= 960 && window.minimumSizeHint().height() <= 500);
        });
    }

    // --- Types and methods

    void Offers_the_distinct_material_types() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        const QComboBox& types = Combo(window, "cbo_MaterialType");
        QCOMPARE(Lines(types), QStringList({"Production resin", "Pigmented production gel",
                                            "Clear production gel coat", "Tooling resin", "Tooling gel coat",
                                            "Production resin (Filled)", "Tooling resin (Filled)"}));
        QCOMPARE(types.itemData(6).toInt(), 0);
    }

    void A_type_offers_its_methods_with_the_first_selected() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        const QComboBox& methods = Combo(window, "cbo_ApplicationType");
        Select(window, "cbo_MaterialType", "Tooling resin");
        QCOMPARE(Lines(methods), QStringList({"Spray", "Spray (Vacuum bagging after roll-out)",
                                              "Spray (Vacuum bagging without roll-out)", "Non-Spray",
                                              "Non-spray (Vacuum bagging after roll-out)",
                                              "Non-spray (Vacuum bagging without roll-out)"}));
        QCOMPARE(methods.currentIndex(), 0);
        QCOMPARE(methods.itemData(5).toInt(), 0);
        QVERIFY(methods.isEnabled() && Named<QLabel>(window, "lbl_ApplicationMethod").isEnabled());
        Select(window, "cbo_MaterialType", "Tooling gel coat");
        QCOMPARE(Lines(methods), QStringList("All"));
        QCOMPARE(methods.currentText(), QStringLiteral("All"));
    }

    void A_type_without_methods_leaves_them_empty_and_disabled() {
        MaterialProgram program;
        std::string row = Padded("Resin without method", 100) + Zeros(8) + Padded("", 100) + Zeros(24);
        WriteContent(program.DataFile("hapcontents.talvor"), row);
        program.New([&program](frmMaterial& window) {
            Type(window, "txt_CustomId", "A");
            Type(window, "txt_Description", "B");
            Select(window, "cbo_MaterialType", "Resin without method");
            Type(window, "txt_density", "9");
            Type(window, "txt_HapContents", "35");
            QCOMPARE(Combo(window, "cbo_ApplicationType").count(), 0);
            QVERIFY(!Combo(window, "cbo_ApplicationType").isEnabled());
            QVERIFY(!Named<QLabel>(window, "lbl_ApplicationMethod").isEnabled());
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_MaterialType"));
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{FormErrorsHead + "- You must select application type.\r\n"});
        });
    }

    void Types_are_read_once_and_methods_with_each_choice() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        Select(window, "cbo_MaterialType", "Tooling resin");
        std::filesystem::remove(program.DataFile("hapcontents.talvor"));
        Select(window, "cbo_MaterialType", "Tooling gel coat");
        QCOMPARE(Combo(window, "cbo_MaterialType").count(), 7);
        QCOMPARE(Combo(window, "cbo_ApplicationType").count(), 0);
        QVERIFY(!Combo(window, "cbo_ApplicationType").isEnabled());
    }

    void A_table_that_cannot_be_read_is_reported_once() {
        MaterialProgram program;
        std::filesystem::remove(program.DataFile("hapcontents.talvor"));
        std::filesystem::create_directory(program.DataFile("hapcontents.talvor"));
        const frmMaterial window(program.App, nullptr);
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
        QCOMPARE(Combo(window, "cbo_MaterialType").count(), 0);
    }

    // --- Filler

    void Only_the_two_filled_resins_take_a_filler() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        const QLineEdit& filler = Edit(window, "txt_filler");
        for (const char* type : {"Production resin (Filled)", "Tooling resin (Filled)"}) {
            Select(window, "cbo_MaterialType", type);
            QVERIFY(filler.isEnabled());
            QCOMPARE(filler.text(), QString());
            Type(window, "txt_filler", "20");
            Select(window, "cbo_MaterialType", "Production resin");
            QVERIFY(!filler.isEnabled());
            QCOMPARE(filler.text(), QStringLiteral("0"));
        }
    }

    void A_filled_resin_needs_its_filler() {
        MaterialProgram program;
        program.New([&program](frmMaterial& window) {
            Fill(window, "F1");
            Select(window, "cbo_MaterialType", "Production resin (Filled)");
            Press(window, "cmd_Save");
            QCOMPARE(
                program.ShownTexts(),
                std::vector<std::string>{FormErrorsHead + "- Your must specify filler for this resin.\r\n"});
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_filler"));
            Type(window, "txt_filler", " 20.5 ");
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(program.Only().Filler, 20.5);
    }

    void A_type_that_is_not_filled_is_saved_with_filler_0() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Fill(window, "F1");
            Select(window, "cbo_MaterialType", "Tooling resin (Filled)");
            Type(window, "txt_filler", "20");
            Select(window, "cbo_MaterialType", "Tooling resin");
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Only().MaterialType, std::string("Tooling resin"));
        QCOMPARE(program.Only().Filler, 0.0);
    }

    void Disabled_boxes_have_the_background_of_the_window() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        const QLineEdit& filler = Edit(window, "txt_filler");
        QCOMPARE(filler.palette().color(QPalette::Base), window.palette().color(QPalette::Window));
        Select(window, "cbo_MaterialType", "Production resin (Filled)");
        QCOMPARE(filler.palette().color(QPalette::Base), window.palette().color(QPalette::Base));
    }

    // --- Alternate emission factor

    void The_tick_enables_the_factor_and_its_basis_and_empties_them() {
        MaterialProgram program;
        const frmMaterial window(program.App, nullptr);
        for (const bool isTicked : {true, false}) {
            Press(window, "chk_EmissionFactor");
            for (const char* name : {"txt_EmissionFactor", "lbl_EmissionFactor", "txt_Comments", "lbl_Basis"})
                QCOMPARE(Named<QWidget>(window, name).isEnabled(), isTicked);
            QCOMPARE(TextOf<QLineEdit>(window, "txt_EmissionFactor"), std::string());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Comments"), std::string());
            Type(window, "txt_EmissionFactor", "12");
            Type(window, "txt_Comments", "Stack test");
        }
    }

    void An_emission_factor_that_is_wanted_must_be_a_number() {
        MaterialProgram program;
        program.New([&program](frmMaterial& window) {
            Fill(window, "A");
            Press(window, "chk_EmissionFactor");
            Press(window, "cmd_Save");
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{FormErrorsHead +
                                              "- Emission factor should be a proper numeric value.\r\n"});
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_EmissionFactor"));
        });
        QVERIFY(program.Materials().empty());
    }

    void Unticking_saves_no_factor_and_no_basis() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Fill(window, "A");
            Press(window, "chk_EmissionFactor");
            Type(window, "txt_EmissionFactor", "12.5");
            Type(window, "txt_Comments", "Stack test");
            Press(window, "chk_EmissionFactor");
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Only().EmissionFactor, 0.0);
        QCOMPARE(program.Only().Comments, std::string());
    }

    void The_help_opens() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            bool isOpen = false;
            InNextModal<frm_EmissionFactorHelp>([&isOpen](frm_EmissionFactorHelp&) { isOpen = true; });
            auto& help = Named<QToolButton>(window, "img_help");
            QVERIFY(!help.icon().isNull());
            QTest::keyClick(&help, Qt::Key_Space);
            QVERIFY(isOpen);
        });
    }

    // --- Checks

    void All_faults_are_shown_together_in_the_order_of_the_form() {
        MaterialProgram program;
        program.New([&program](frmMaterial& window) {
            Press(window, "chk_EmissionFactor");
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{FormErrorsHead +
                                              "- You must provide Material ID.\r\n"
                                              "- You must provide Description for material.\r\n"
                                              "- You must select material type.\r\n"
                                              "- You must select application type.\r\n"
                                              "- Density should be a numeric value.\r\n"
                                              "- HAP Content limit should be a numeric value(%).\r\n"
                                              "- Emission factor should be a proper numeric value.\r\n"});
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_CustomId"));
        });
        QVERIFY(!std::filesystem::exists(program.File));
    }

    void The_focus_goes_to_the_first_field_that_failed() {
        struct {
            const char* Box;
            const char* Text;
        } const faults[] = {
            {"txt_CustomId",    "  " },
            {"txt_Description", ""   },
            {"txt_density",     "9,2"},
            {"txt_HapContents", "35%"},
        };
        MaterialProgram program;
        for (const auto& fault : faults)
            program.New([&fault](frmMaterial& window) {
                Fill(window, "A");
                Edit(window, "txt_HapContents").setText(QStringLiteral("x"));
                Type(window, fault.Box, fault.Text);
                Press(window, "cmd_Save");
                QCOMPARE(window.focusWidget()->objectName(), QString::fromLatin1(fault.Box));
                QCOMPARE(TextOf<QLineEdit>(window, fault.Box), std::string(fault.Text));
            });
    }

    void Negative_numbers_and_contents_above_100_pass() {
        MaterialProgram program;
        program.New([](frmMaterial& window) {
            Fill(window, "A");
            Type(window, "txt_density", "-1");
            Type(window, "txt_HapContents", "150");
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Only().Density, -1.0);
        QCOMPARE(program.Only().HapContent, 150.0);
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_material_test)
#include "frm_material_test.moc"
