#include "lists/frm_list.h"
#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// Three materials, and usage of the first two in two years.
struct ListProgram : TestProgram {
    ListProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The test's material types were not written");
        AddMaterial("GC-1", "White <gel> coat");
        AddMaterial("GC-2", "Caf\xE9");
        AddMaterial("GC-3", "");
        AddUsage(1, "3/2005");
        AddUsage(2, "4/2005");
        AddUsage(1, "3/2006");
    }
    void AddMaterial(const char* customId, const char* description) {
        if (SaveMaterial(App, {.CustomId = customId,
                               .Description = description,
                               .Contents = "0|0|0|0|0|0",
                               .Factors = "0|0|0|0|0|0"}))
            qFatal("The test's material was not saved");
    }
    void AddUsage(std::int16_t materialId, const char* period) {
        if (SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = 1, .Unit = UnitLbs}))
            qFatal("The test's usage was not saved");
    }
};

QStringList Lines(const QWidget& window) {
    const auto& list = Named<QListWidget>(window, "lst_Main");
    QStringList lines;
    for (int row = 0; row < list.count(); ++row)
        lines << list.item(row)->text();
    return lines;
}

void Select(QWidget& window, int row) {
    Named<QListWidget>(window, "lst_Main").setCurrentRow(row);
}

bool HasSelection(const QWidget& window) {
    return !Named<QListWidget>(window, "lst_Main").selectedItems().isEmpty();
}

void Press(QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void FillMaterial(const QWidget& editor, const char* customId) {
    Named<QLineEdit>(editor, "txt_CustomId").setText(QString::fromLatin1(customId));
    Named<QLineEdit>(editor, "txt_Description").setText(QStringLiteral("Described"));
    Named<QComboBox>(editor, "cbo_MaterialType").setCurrentIndex(1);
    Named<QLineEdit>(editor, "txt_density").setText(QStringLiteral("9"));
    Named<QLineEdit>(editor, "txt_HapContents").setText(QStringLiteral("30"));
}

void FillUsage(const QWidget& editor) {
    auto& material = Named<QComboBox>(editor, "cbo_MaterialId");
    material.setCurrentIndex(material.findText(QStringLiteral("GC-3")));
    Named<QLineEdit>(editor, "txt_Quantiry").setText(QStringLiteral("5"));
}

void InMaterials(TestProgram& program, const std::function<void(frmList&)>& act) {
    InNextModal<frmList>(act);
    ShowMaterialList(program.App, nullptr);
}

void InUsage(TestProgram& program, const std::function<void(frmList&)>& act) {
    InNextModal<frmList>(act);
    ShowUsageList(program.App, nullptr);
}

} // namespace

class frm_list_test : public QObject {
    Q_OBJECT

private slots:
    void Materials_open_with_the_first_line_selected_and_without_the_filter() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("Maintain Material"));
            QCOMPARE(Named<QGroupBox>(window, "FrameList").title(), QStringLiteral("Materials"));
            QCOMPARE(Lines(window), QStringList({"GC-1 - White <gel> coat", "GC-2 - Caf\u00E9", "GC-3 - "}));
            const auto& list = Named<QListWidget>(window, "lst_Main");
            QVERIFY(list.item(0)->isSelected());
            QCOMPARE(list.item(1)->data(Qt::UserRole).toInt(), 2);
            const auto& filter = Named<QGroupBox>(window, "filter_frame");
            QVERIFY(!filter.isVisible() && !filter.isEnabled());
            QCOMPARE(window.height(), 4560 * window.logicalDpiY() / 1440);
        });
    }

    void Without_materials_the_window_opens_empty() {
        TestProgram program;
        InMaterials(program, [](frmList& window) {
            QVERIFY(Lines(window).isEmpty());
            QVERIFY(!Named<QPushButton>(window, "cmd_Delete").isEnabled());
            QVERIFY(Named<QPushButton>(window, "cmd_Import").isEnabled());
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Without_a_selected_line_Enter_means_New_and_with_one_Edit() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            QVERIFY(Named<QPushButton>(window, "cmd_Edit").isDefault());
            Named<QListWidget>(window, "lst_Main").clearSelection();
            QVERIFY(Named<QPushButton>(window, "cmd_New").isDefault());
            for (const char* button : {"cmd_Edit", "cmd_Delete"})
                QVERIFY(!Named<QPushButton>(window, button).isEnabled());
            Select(window, 1);
            QVERIFY(Named<QPushButton>(window, "cmd_Edit").isDefault());
            for (const char* button : {"cmd_New", "cmd_Edit", "cmd_Delete", "cmd_Import"})
                QVERIFY(Named<QPushButton>(window, button).isEnabled());
        });
    }

    void A_new_material_is_listed_and_the_first_line_selected() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            Select(window, 2);
            InNextModal<frmMaterial>([](frmMaterial& editor) {
                QCOMPARE(editor.windowTitle(), QStringLiteral("New Material"));
                FillMaterial(editor, "GC-4");
                Press(editor, "cmd_Save");
            });
            Press(window, "cmd_New");
            QCOMPARE(Lines(window).size(), 4);
            QCOMPARE(Lines(window).back(), QStringLiteral("GC-4 - Described"));
            QVERIFY(Named<QListWidget>(window, "lst_Main").item(0)->isSelected());
        });
    }

    void An_edited_material_is_listed_and_no_line_selected() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            Select(window, 1);
            InNextModal<frmMaterial>([](frmMaterial& editor) {
                QCOMPARE(editor.windowTitle(), QStringLiteral("Update Material"));
                FillMaterial(editor, "GC-2b");
                Press(editor, "cmd_Save");
            });
            Press(window, "cmd_Edit");
            QCOMPARE(Lines(window)[1], QStringLiteral("GC-2b - Described"));
            QVERIFY(!HasSelection(window));
            QCOMPARE(Named<QListWidget>(window, "lst_Main").currentRow(), 1); // where the keyboard continues
        });
    }

    void An_editor_that_is_cancelled_leaves_the_list_as_it_was() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            Select(window, 1);
            for (const char* button : {"cmd_New", "cmd_Edit"}) {
                InNextModal<frmMaterial>([](frmMaterial& editor) {
                    FillMaterial(editor, "Other");
                    Press(editor, "cmd_Cancel");
                });
                Press(window, button);
                QCOMPARE(Lines(window).size(), 3);
                QVERIFY(Named<QListWidget>(window, "lst_Main").item(1)->isSelected());
            }
        });
    }

    void A_double_click_and_Enter_edit_the_line() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            auto& list = Named<QListWidget>(window, "lst_Main");
            std::string edited;
            const auto look = [&edited](frmMaterial& editor) {
                edited = TextOf<QLineEdit>(editor, "txt_CustomId");
            };
            InNextModal<frmMaterial>(look);
            const QPoint where = list.visualItemRect(list.item(1)).center();
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, where);
            QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, where);
            QCOMPARE(edited, std::string("GC-2"));
            Select(window, 2);
            InNextModal<frmMaterial>(look);
            QTest::keyClick(&list, Qt::Key_Return);
            QCOMPARE(edited, std::string("GC-3"));
        });
    }

    void A_material_that_is_gone_meanwhile_is_not_edited() {
        ListProgram program;
        InMaterials(program, [&program](frmList& window) {
            Select(window, 2);
            if (DeleteMaterial(program.App, 3, [](std::int16_t) { return false; })) qFatal("Not deleted");
            Press(window, "cmd_Edit");
        });
        QCOMPARE(program.Prompts.LastText(),
                 std::string("Error(s) found while processing the form:\r\n\r\n"
                             "- Material not found. Please reopen the list form."));
    }

    void New_usage_of_another_year_is_listed_and_can_be_filtered() {
        ListProgram program;
        program.Calendar.Month = {std::chrono::year{2026}, std::chrono::November};
        InUsage(program, [](frmList& window) {
            InNextModal<frmUsage>([](frmUsage& editor) {
                QCOMPARE(editor.windowTitle(), QStringLiteral("New Usage"));
                FillUsage(editor);
                Press(editor, "cmd_Save");
            });
            Press(window, "cmd_New");
            QCOMPARE(Lines(window),
                     QStringList({"GC-1 (3/2005)", "GC-2 (4/2005)", "GC-1 (3/2006)", "GC-3 (11/2026)"}));
            QVERIFY(Named<QListWidget>(window, "lst_Main").item(0)->isSelected());
            auto& years = Named<QComboBox>(window, "cbo_Year");
            QCOMPARE(years.currentIndex(), -1);
            years.setCurrentIndex(years.findText(QStringLiteral("2026")));
            Press(window, "cmd_Filter");
            QCOMPARE(Lines(window), QStringList({"GC-3 (11/2026)"}));
        });
    }

    void Edited_usage_is_listed_under_the_filter_that_is_applied() {
        ListProgram program;
        InUsage(program, [](frmList& window) {
            auto& years = Named<QComboBox>(window, "cbo_Year");
            years.setCurrentIndex(years.findText(QStringLiteral("2006")));
            Press(window, "cmd_Filter");
            InNextModal<frmUsage>([](frmUsage& editor) {
                Named<QComboBox>(editor, "cbo_Year").setCurrentIndex(7);
                Press(editor, "cmd_Save");
            });
            Press(window, "cmd_Edit");
            QVERIFY(Lines(window).isEmpty()); // the only record of 2006 is now in 2007
            QCOMPARE(years.currentText(), QStringLiteral("2006"));
            QVERIFY(years.findText(QStringLiteral("2007")) >= 0);
            Press(window, "cmd_Filter");
            QCOMPARE(Lines(window), QStringList({"GC-1 (3/2005)", "GC-2 (4/2005)", "GC-1 (3/2007)"}));
        });
    }

    void Delete_asks_with_the_line_as_it_is_shown() {
        ListProgram program;
        program.AddUsage(3, "1/2005");
        InMaterials(program, [](frmList& window) { Press(window, "cmd_Delete"); });
        QCOMPARE(program.Prompts.LastText(), std::string("Are you sure you want to delete GC-1 - White <gel> "
                                                         "coat? This can not be undone."));
        QCOMPARE(program.Prompts.Shown.back().Kind, PromptKind::Question);
        QCOMPARE(program.Prompts.Shown.back().Buttons, PromptButtons::YesNo);
    }

    void A_delete_answered_with_No_changes_nothing() {
        ListProgram program;
        const std::string before = ContentOf(program.DataFile("1_materials.talvor"));
        program.Prompts.Answers = {PromptAnswer::No};
        InMaterials(program, [](frmList& window) {
            Select(window, 2);
            Press(window, "cmd_Delete");
            QCOMPARE(Lines(window).size(), 3);
            QVERIFY(HasSelection(window));
        });
        QCOMPARE(ContentOf(program.DataFile("1_materials.talvor")), before);
    }

    void A_material_that_is_not_used_is_deleted_and_no_line_is_selected() {
        ListProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        InMaterials(program, [](frmList& window) {
            Select(window, 2);
            Press(window, "cmd_Delete");
            QCOMPARE(Lines(window), QStringList({"GC-1 - White <gel> coat", "GC-2 - Caf\u00E9"}));
            QVERIFY(!HasSelection(window));
            QVERIFY(!Named<QPushButton>(window, "cmd_Delete").isEnabled());
        });
    }

    void After_a_delete_the_keyboard_goes_on_at_the_nearest_line() {
        ListProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        InMaterials(program, [](frmList& window) {
            Select(window, 2);
            Press(window, "cmd_Delete");
            QCOMPARE(Named<QListWidget>(window, "lst_Main").currentRow(), 1);
        });
    }

    void After_a_click_on_Edit_or_Delete_the_list_has_the_keyboard_again() {
        ListProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        InMaterials(program, [](frmList& window) {
            const auto press = [&window](const char* button) {
                Select(window, 2);                             // a material that is not used
                Named<QPushButton>(window, button).setFocus(); // as a mouse click does
                Press(window, button);
                QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("lst_Main"));
            };
            InNextModal<frmMaterial>([](frmMaterial& editor) {
                FillMaterial(editor, "GC-3b");
                Press(editor, "cmd_Save");
            });
            press("cmd_Edit");
            press("cmd_Delete");
            QCOMPARE(Lines(window).size(), 2);
        });
    }

    void Deleting_the_last_material_empties_the_list() {
        TestProgram program;
        QVERIFY(!SaveMaterial(program.App,
                              {.CustomId = "X", .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"}));
        program.Prompts.Answers = {PromptAnswer::Yes};
        InMaterials(program, [](frmList& window) {
            Press(window, "cmd_Delete");
            QVERIFY(Lines(window).isEmpty());
        });
    }

    void A_material_that_is_used_stays_after_one_message() {
        ListProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        InMaterials(program, [](frmList& window) {
            Press(window, "cmd_Delete");
            QCOMPARE(Lines(window).size(), 3);
            QVERIFY(HasSelection(window));
        });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(2));
        QVERIFY(program.Prompts.LastText().starts_with("There are one or more usage records"));
    }

    void An_import_of_materials_reloads_the_list() {
        TestProgram program;
        QCOMPARE(Lines(frmList(program.App, nullptr)).size(), 0);
        InMaterials(program, [&program](frmList& window) {
            InNextModal<frmImport>([&program](frmImport& import) {
                QCOMPARE(import.windowTitle(), QStringLiteral("Import Material Records"));
                if (SaveMaterial(program.App,
                                 {.CustomId = "New", .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"}))
                    qFatal("The test's material was not saved");
            });
            Press(window, "cmd_Import");
            QCOMPARE(Lines(window), QStringList({"New - "}));
            QVERIFY(!HasSelection(window));
        });
    }

    void An_import_of_usage_reloads_the_list_and_selects_its_first_line() {
        ListProgram program;
        InUsage(program, [&program](frmList& window) {
            InNextModal<frmImport>([&program](frmImport& import) {
                QCOMPARE(import.windowTitle(), QStringLiteral("Import Usage Records"));
                program.AddUsage(2, "5/2007");
            });
            Press(window, "cmd_Import");
            QCOMPARE(Lines(window).size(), 4);
            QVERIFY(Named<QListWidget>(window, "lst_Main").item(0)->isSelected());
        });
    }

    void Each_mode_opens_its_export() {
        ListProgram program;
        for (const bool isForMaterials : {true, false}) {
            QString title;
            const auto act = [&title](frmList& window) {
                InNextModal<frmExport>([&title](frmExport& exporting) { title = exporting.windowTitle(); });
                Press(window, "cmd_Export");
            };
            if (isForMaterials)
                InMaterials(program, act);
            else
                InUsage(program, act);
            QCOMPARE(title, isForMaterials ? QStringLiteral("Export Material Records")
                                           : QStringLiteral("Export Usage Records"));
        }
    }

    void Close_closes() {
        ListProgram program;
        InMaterials(program, [](frmList& window) {
            Press(window, "cmd_Close");
            QVERIFY(!window.isVisible());
        });
    }

    void Usage_opens_with_its_filter() {
        ListProgram program;
        InUsage(program, [](frmList& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("Maintain Usage"));
            QCOMPARE(Named<QGroupBox>(window, "FrameList").title(), QStringLiteral("Usages"));
            QCOMPARE(Lines(window), QStringList({"GC-1 (3/2005)", "GC-2 (4/2005)", "GC-1 (3/2006)"}));
            QVERIFY(HasSelection(window));
            QVERIFY(Named<QGroupBox>(window, "filter_frame").isVisible());
            const auto& materials = Named<QComboBox>(window, "cbo_Materials");
            QCOMPARE(materials.count(), 3);
            QCOMPARE(materials.currentIndex(), -1);
            const auto& years = Named<QComboBox>(window, "cbo_Year");
            QCOMPARE(years.count(), 2);
            QCOMPARE(years.itemText(1), QStringLiteral("2006"));
            QCOMPARE(years.currentIndex(), -1);
            QCOMPARE(Named<QPushButton>(window, "cmd_Filter").text(), QStringLiteral("&Apply"));
        });
    }

    void Apply_without_a_choice_shows_the_message_and_keeps_its_caption() {
        ListProgram program;
        InUsage(program, [](frmList& window) {
            Press(window, "cmd_Filter");
            QCOMPARE(Named<QPushButton>(window, "cmd_Filter").text(), QStringLiteral("&Apply"));
            QVERIFY(Named<QComboBox>(window, "cbo_Year").isEnabled());
        });
        QCOMPARE(program.Prompts.LastText(),
                 std::string("Please select Material Id and/or Year to apply the filter."));
        QCOMPARE(program.Prompts.Shown.back().Kind, PromptKind::Exclamation);
    }

    void Apply_shows_the_chosen_material_and_year_only() {
        ListProgram program;
        InUsage(program, [](frmList& window) {
            auto& materials = Named<QComboBox>(window, "cbo_Materials");
            auto& years = Named<QComboBox>(window, "cbo_Year");
            materials.setCurrentIndex(0);
            Press(window, "cmd_Filter");
            QCOMPARE(Lines(window), QStringList({"GC-1 (3/2005)", "GC-1 (3/2006)"}));
            QVERIFY(!materials.isEnabled() && !years.isEnabled());
            QCOMPARE(Named<QPushButton>(window, "cmd_Filter").text(), QStringLiteral("&Reset"));
            Press(window, "cmd_Filter");
            years.setCurrentIndex(1);
            Press(window, "cmd_Filter");
            QCOMPARE(Lines(window), QStringList({"GC-1 (3/2006)"}));
        });
    }

    void A_filter_that_nothing_passes_leaves_the_list_empty() {
        ListProgram program;
        InUsage(program, [](frmList& window) {
            Named<QComboBox>(window, "cbo_Materials").setCurrentIndex(2);
            Press(window, "cmd_Filter");
            QVERIFY(Lines(window).isEmpty());
            QVERIFY(!Named<QPushButton>(window, "cmd_Delete").isEnabled());
        });
    }

    void Reset_empties_the_choices_and_shows_all_usage() {
        ListProgram program;
        InUsage(program, [](frmList& window) {
            auto& materials = Named<QComboBox>(window, "cbo_Materials");
            auto& years = Named<QComboBox>(window, "cbo_Year");
            materials.setCurrentIndex(1);
            years.setCurrentIndex(0);
            Press(window, "cmd_Filter");
            Press(window, "cmd_Filter");
            QCOMPARE(Named<QPushButton>(window, "cmd_Filter").text(), QStringLiteral("&Apply"));
            QVERIFY(materials.isEnabled() && years.isEnabled());
            QCOMPARE(materials.currentIndex(), -1);
            QCOMPARE(years.currentIndex(), -1);
            QCOMPARE(Lines(window).size(), 3);
        });
    }

    void A_deleted_usage_record_leaves_the_first_line_selected() {
        ListProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        InUsage(program, [](frmList& window) {
            Select(window, 1);
            Press(window, "cmd_Delete");
            QCOMPARE(Lines(window), QStringList({"GC-1 (3/2005)", "GC-1 (3/2006)"}));
            QVERIFY(Named<QListWidget>(window, "lst_Main").item(0)->isSelected());
        });
        QCOMPARE(program.Prompts.LastText(),
                 std::string("Are you sure you want to delete GC-2 (4/2005)? This can not be undone."));
    }

    void A_file_that_cannot_be_read_is_reported_once_and_listed_empty() {
        TestProgram program;
        std::filesystem::create_directory(program.DataFile("1_materials.talvor"));
        InMaterials(program, [](frmList& window) { QVERIFY(Lines(window).isEmpty()); });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
    }

    void Usage_whose_materials_cannot_be_read_is_one_failure() {
        ListProgram program;
        std::filesystem::remove(program.DataFile("1_materials.talvor"));
        std::filesystem::create_directory(program.DataFile("1_materials.talvor"));
        InUsage(program, [](frmList& window) { QVERIFY(Lines(window).isEmpty()); });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_list_test)
#include "frm_list_test.moc"
