#include "base/text.h"
#include "materials/frm_emission_factor_help.h"
#include "materials/frm_material.h"
#include "materials/frm_other_pollutants.h"
#include "store/additional_names.h"
#include "store/frm_extra_pollutants_names.h"
#include "store/material_types.h"
#include "tests/support/bytes.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"
#include "tests/support/windows.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

namespace {

using Act = std::function<void(frmMaterial&)>;

const std::string FormErrorsHead = "Error(s) found while processing the form:\r\n\r\n";

QLineEdit& Edit(const QWidget& window, const char* name) {
    return Named<QLineEdit>(window, name);
}

QComboBox& Combo(const QWidget& window, const char* name) {
    return Named<QComboBox>(window, name);
}

void Type(const QWidget& window, const char* name, const char* text) {
    Edit(window, name).clear();
    Edit(window, name).insert(QString::fromUtf8(text));
}

void Select(const QWidget& window, const char* name, const char* text) {
    const int row = Combo(window, name).findText(QString::fromLatin1(text), Qt::MatchExactly);
    QVERIFY2(row >= 0, text);
    Combo(window, name).setCurrentIndex(row);
}

void Press(const QWidget& window, const char* button) {
    Named<QAbstractButton>(window, button).click();
}

QStringList Lines(const QComboBox& combo) {
    QStringList lines;
    for (int row = 0; row < combo.count(); ++row)
        lines << combo.itemText(row);
    return lines;
}

/// What a new material needs, of a type without filler.
void Fill(const QWidget& window, const char* customId) {
    Type(window, "txt_CustomId", customId);
    Type(window, "txt_Description", "White gel coat");
    Select(window, "cbo_MaterialType", "Production resin");
    Type(window, "txt_density", "9.25");
    Type(window, "txt_HapContents", "35");
}

/// A program with the default material types and no additional pollutants.
struct MaterialProgram : TestProgram {
    const std::filesystem::path File = DataFile("1_materials.talvor");

    MaterialProgram() {
        App.AdditionalNames = UnusedNames;
        WriteTypes();
    }
    void WriteTypes() { QVERIFY(CreateDefaultHapContents(App)); }

    std::int16_t New(const Act& act) {
        InNextModal<frmMaterial>(act);
        return NewMaterial(App, nullptr);
    }
    std::int16_t Edit(std::int16_t materialId, const Act& act) {
        InNextModal<frmMaterial>(act);
        return EditMaterial(App, materialId, nullptr);
    }
    /// Stores a material in another way than through the editor.
    void Store(const std::string& customId, const std::function<void(MaterialEntry&)>& change = {}) {
        MaterialEntry entry{.CustomId = customId,
                            .Description = "Resin " + customId,
                            .MaterialType = "Production resin",
                            .ApplicationMethod = "Non-Spray",
                            .Density = 9.2,
                            .HapContent = 35,
                            .Contents = "0|0|0|0|0|0",
                            .Factors = "0|0|0|0|0|0"};
        if (change) change(entry);
        QVERIFY(!SaveMaterial(App, entry));
    }
    std::vector<MaterialRecord> Materials() {
        std::vector<MaterialRecord> found;
        FindMaterials(App, {}, found);
        return found;
    }
    MaterialRecord Only() {
        const std::vector<MaterialRecord> materials = Materials();
        if (materials.size() != 1) qFatal("There are %zu materials", materials.size());
        return materials.front();
    }
};

/// The same program with files that can fail.
struct LimitedProgram : MaterialProgram {
    LimitedFiles Limited;
    AppContext LimitedApp{Prompts, Settings, Programs, Dialogs, Calendar, Limited, App.ProgramFolder, 1};
};

} // namespace

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

    // --- A new material

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
        for (const int way : {0, 1, 2}) {
            MaterialProgram program;
            const std::int16_t result = program.New([way](frmMaterial& window) {
                Fill(window, "A");
                if (way == 0) Press(window, "cmd_Cancel");
                if (way == 1) QTest::keyClick(&Edit(window, "txt_density"), Qt::Key_Escape);
                if (way == 2) window.close();
                QVERIFY(!window.isVisible());
                QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string());
            });
            QCOMPARE(result, std::int16_t(-1));
            QVERIFY(program.Prompts.Shown.empty());
            QVERIFY(program.Materials().empty());
        }
    }

    void Enter_saves_from_any_field() {
        for (const char* name : {"txt_CustomId", "cbo_MaterialType", "chk_EmissionFactor", "img_help"}) {
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
                  "txt_Comments", "cmd_Additional", "cmd_Save", "cmd_Cancel", "txt_CustomId"}) {
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

    // --- Additional pollutants

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

QTEST_MAIN(frm_material_test)
#include "frm_material_test.moc"
