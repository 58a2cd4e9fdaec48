#include "store/frm_material_types.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// The names of all enabled controls.
QStringList Enabled(const QWidget& window) {
    QStringList names;
    for (const char* name :
         {"cbo_MaterialTypes", "txt_MaterialTypeId", "txt_MaterialName", "txt_MaterialType",
          "txt_HapContents", "cmd_New", "cmd_Edit", "cmd_Save", "cmd_Cancel"})
        if (Named<QWidget>(window, name).isEnabled()) names << QString::fromLatin1(name);
    return names;
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void Type(const QWidget& window, const char* name, const QString& text) {
    auto& edit = Named<QLineEdit>(window, name);
    edit.clear();
    edit.insert(text);
}

const QStringList EnabledAtFirst{"cbo_MaterialTypes", "cmd_New"};

struct TypesProgram : TestProgram {
    std::filesystem::path File = DataFile("hapcontents.talvor");

    TypesProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The material types cannot be written");
    }
    void Show(const std::function<void(frmMaterialTypes&)>& act) {
        InNextModal<frmMaterialTypes>(act);
        ShowMaterialTypes(App, nullptr);
    }
};

} // namespace

class frm_material_types_test : public QObject {
    Q_OBJECT

private slots:
    void It_opens_empty_and_offers_a_new_type() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("Maintain Material Types"));
            QCOMPARE(Enabled(window), EnabledAtFirst);
            QCOMPARE(Named<QComboBox>(window, "cbo_MaterialTypes").count(), 0);
            QCOMPARE(Named<QComboBox>(window, "cbo_MaterialTypes").currentIndex(), -1);
            for (const auto* edit : window.findChildren<QLineEdit*>())
                QCOMPARE(edit->text(), QString());
        });
    }

    void Its_opener_notes_id_1_out_of_sight() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string("1"));
            QVERIFY(!Named<QLabel>(window, "lbl_Id").isVisible());
        });
    }

    void The_labels_read_as_ever() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            QStringList texts;
            for (const auto* label : window.findChildren<QLabel*>())
                if (label->isVisible()) texts << label->text().remove(u'&');
            QCOMPARE(texts, QStringList({"Material Types :", "Material Type Id :", "Material Type Name :",
                                         "Material Type :", "HAP Contents Limit :"}));
        });
    }

    void New_enables_the_entry() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            Press(window, "cmd_New");
            QCOMPARE(Enabled(window), QStringList({"txt_MaterialName", "txt_MaterialType", "txt_HapContents",
                                                   "cmd_New", "cmd_Save", "cmd_Cancel"}));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_MaterialName"));
        });
    }

    void Edit_enables_the_entry_but_not_Cancel() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            Named<QPushButton>(window, "cmd_Edit").setEnabled(true); // nothing in the window enables it
            Press(window, "cmd_Edit");
            QCOMPARE(Enabled(window), QStringList({"txt_MaterialName", "txt_MaterialType", "txt_HapContents",
                                                   "cmd_New", "cmd_Save"}));
        });
    }

    void Cancel_goes_back_to_the_beginning() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            Press(window, "cmd_New");
            for (const char* name : {"txt_MaterialName", "txt_MaterialType", "txt_HapContents"})
                Type(window, name, QStringLiteral("1"));
            Press(window, "cmd_Cancel");
            QVERIFY(window.isVisible());
            QCOMPARE(Enabled(window), EnabledAtFirst);
            for (const auto* edit : window.findChildren<QLineEdit*>())
                QCOMPARE(edit->text(), QString());
        });
    }

    void Choosing_a_type_changes_nothing() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            auto& types = Named<QComboBox>(window, "cbo_MaterialTypes");
            types.addItem(QStringLiteral("Production resin"), 1);
            types.setFocus();
            QTest::keyClick(&types, Qt::Key_Down);
            QCOMPARE(types.currentIndex(), 0);
            QCOMPARE(Enabled(window), EnabledAtFirst);
            QCOMPARE(TextOf<QLineEdit>(window, "txt_MaterialName"), std::string());
        });
    }

    void A_faulty_entry_is_reported() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            Press(window, "cmd_New");
            Type(window, "txt_MaterialType", QStringLiteral("x"));
            QVERIFY(!window.Validate_Form());
        });
        QCOMPARE(program.ShownTexts(),
                 std::vector<std::string>{"Error(s) found while processing the form:\r\n\r\n"
                                          "- You must provide Material Type Name.\r\n"
                                          "- Material type can only be a numeric value (1 or 2).\r\n"
                                          "- HAP Content limit should be a numeric value(%).\r\n"});
    }

    void A_good_entry_passes_without_a_message() {
        TypesProgram program;
        program.Show([](frmMaterialTypes& window) {
            Press(window, "cmd_New");
            Type(window, "txt_MaterialName", QStringLiteral("R\u00E9sine"));
            Type(window, "txt_MaterialType", QStringLiteral(" 2 "));
            Type(window, "txt_HapContents", QStringLiteral("28.5"));
            QVERIFY(window.Validate_Form());
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void The_table_is_never_written() {
        TypesProgram program;
        const std::string before = ContentOf(program.File);
        QCOMPARE(before.size(), std::size_t{6728}); // 29 slots of 232 bytes
        program.Show([](frmMaterialTypes& window) {
            Press(window, "cmd_New");
            Type(window, "txt_MaterialName", QStringLiteral("Resin"));
            Type(window, "txt_MaterialType", QStringLiteral("1"));
            Type(window, "txt_HapContents", QStringLiteral("28"));
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_MaterialName"), std::string("Resin"));
            Press(window, "cmd_Cancel");
            Named<QPushButton>(window, "cmd_Edit").setEnabled(true);
            Press(window, "cmd_Edit");
            Press(window, "cmd_Save");
            window.Show_MaterialType_Record(1);
        });
        QCOMPARE(ContentOf(program.File), before);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Opening_it_creates_no_table() {
        TestProgram program;
        InNextModal<frmMaterialTypes>([](frmMaterialTypes& window) {
            Press(window, "cmd_New");
            Press(window, "cmd_Save");
        });
        ShowMaterialTypes(program.App, nullptr);
        QVERIFY(!std::filesystem::exists(program.DataFile("hapcontents.talvor")));
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_material_types_test)
#include "frm_material_types_test.moc"
