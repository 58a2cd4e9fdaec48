#include "store/companies.h"
#include "store/frm_company.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

void TypeCompany(frmCompany& window, const char* name, const char* location) {
    Named<QLineEdit>(window, "txt_CompanyName").setText(QString::fromUtf8(name));
    Named<QLineEdit>(window, "txt_CompanyLocation").setText(QString::fromUtf8(location));
}

/// A program with two companies, neither of which is current.
struct CompanyProgram : TestProgram {
    CompanyProgram() {
        App.CurrentCompanyId = 0;
        SaveCompany(App, "Acme Boats", "Taranto");
        SaveCompany(App, "Caf\xE9 Hulls", "Nice");
    }
    std::vector<CompanyRecord> Companies() {
        std::vector<CompanyRecord> found;
        FindCompanies(App, {}, found);
        return found;
    }
};

} // namespace

class frm_company_test : public QObject {
    Q_OBJECT

private slots:
    void Opens_with_the_companies_and_no_selection() {
        CompanyProgram program;
        const frmCompany window(program.App, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Companies & Locations"));
        const auto& list = Named<QListWidget>(window, "lst_Companies");
        QCOMPARE(list.count(), 2);
        QCOMPARE(list.item(1)->text(), QStringLiteral("Caf\u00E9 Hulls (Nice)"));
        QCOMPARE(list.item(1)->data(Qt::UserRole).toInt(), 2);
        QVERIFY(list.selectedItems().isEmpty());
        QVERIFY(!Named<QPushButton>(window, "cmd_Switch").isEnabled());
        QVERIFY(!Named<QPushButton>(window, "cmd_Save").isEnabled());
        QCOMPARE(Named<QPushButton>(window, "cmd_Switch").text(), QStringLiteral("&Select"));
    }

    void Without_a_current_company_says_None() {
        CompanyProgram program;
        const frmCompany window(program.App, nullptr);
        QCOMPARE(TextOf<QLabel>(window, "lbl_CurrentCompany"), std::string("None"));
    }

    void Shows_the_current_company_on_two_lines() {
        CompanyProgram program;
        program.App.CurrentCompanyId = 2;
        program.App.CurrentCompanyName = "Caf\xE9 <b>Hulls";
        program.App.CurrentCompanyLocation = "Nice";
        const frmCompany window(program.App, nullptr);
        QCOMPARE(TextOf<QLabel>(window, "lbl_CurrentCompany"), std::string("Caf\xC3\xA9 <b>Hulls\nNice"));
        QCOMPARE(Named<QLabel>(window, "lbl_CurrentCompany").textFormat(), Qt::PlainText);
    }

    void Save_is_enabled_and_default_with_both_texts_only() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        const auto& save = Named<QPushButton>(window, "cmd_Save");
        TypeCompany(window, "Acme", "  ");
        QVERIFY(!save.isEnabled() && !save.isDefault());
        TypeCompany(window, "Acme", "Port");
        QVERIFY(save.isEnabled() && save.isDefault());
        TypeCompany(window, "", "Port");
        QVERIFY(!save.isEnabled() && !save.isDefault());
    }

    void The_first_company_gets_identifier_1() {
        TestProgram program;
        program.App.CurrentCompanyId = 0;
        frmCompany window(program.App, nullptr);
        TypeCompany(window, "  Acme ", "Port");
        Named<QPushButton>(window, "cmd_Save").click();
        auto& list = Named<QListWidget>(window, "lst_Companies");
        QCOMPARE(list.count(), 1);
        QCOMPARE(list.item(0)->text(), QStringLiteral("Acme (Port)"));
        QCOMPARE(list.item(0)->data(Qt::UserRole).toInt(), 1);
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyName"), std::string());
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyLocation"), std::string());
    }

    void A_file_that_cannot_be_worked_with_is_one_failure_of_a_save_and_the_list_stays() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        std::filesystem::remove(program.DataFile("companies.talvor"));
        std::filesystem::create_directory(program.DataFile("companies.talvor"));
        TypeCompany(window, "Acme", "Port");
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
        QCOMPARE(Named<QListWidget>(window, "lst_Companies").count(), 2);
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyName"), std::string("Acme"));
    }

    void Saving_with_only_a_name_shows_the_message_and_writes_nothing() {
        TestProgram program;
        frmCompany window(program.App, nullptr);
        TypeCompany(window, "Acme", "");
        auto& save = Named<QPushButton>(window, "cmd_Save");
        save.setEnabled(true); // to test the routine behind it
        save.click();
        QCOMPARE(program.Prompts.LastText(),
                 std::string("You must specify Company Name and Company Location to add new company"));
        QCOMPARE(program.Prompts.Shown.back().Kind, PromptKind::Information);
        QCOMPARE(Named<QListWidget>(window, "lst_Companies").count(), 0);
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyName"), std::string("Acme"));
    }

    void Edit_overwrites_the_company_that_was_selected() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
        Named<QPushButton>(window, "cmd_Edit").click();
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyName"), std::string("Caf\xC3\xA9 Hulls"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string("2"));
        TypeCompany(window, "Caf\xC3\xA9 Boats", "Nice");
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(program.Companies().size(), std::size_t(2));
        QCOMPARE(program.Companies()[1].CompanyName, std::string("Caf\xE9 Boats"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string());
    }

    void Editing_the_current_company_does_not_rename_it_until_it_is_selected_again() {
        CompanyProgram program;
        program.App.CurrentCompanyId = 1;
        program.App.CurrentCompanyName = "Acme Boats";
        frmCompany window(program.App, nullptr);
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(0);
        Named<QPushButton>(window, "cmd_Edit").click();
        TypeCompany(window, "Other", "Taranto");
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(program.App.CurrentCompanyName, std::string("Acme Boats"));
    }

    void A_selection_that_cannot_be_remembered_is_shown_once_and_holds_for_now() {
        CompanyProgram program;
        program.Settings.FailsWith = Failure{.Reason = "Cannot write the settings"};
        frmCompany window(program.App, nullptr);
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
        Named<QPushButton>(window, "cmd_Switch").click();
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"Cannot write the settings."});
        QCOMPARE(program.App.CurrentCompanyId, std::int16_t(2));
    }

    void Select_makes_the_company_current_and_closes_the_window() {
        CompanyProgram program;
        InNextModal<frmCompany>([](frmCompany& window) {
            Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
            Named<QPushButton>(window, "cmd_Switch").click();
            QVERIFY(!window.isVisible());
        });
        ShowCompanies(program.App, nullptr);
        QCOMPARE(program.App.CurrentCompanyId, std::int16_t(2));
        QCOMPARE(program.App.CurrentCompanyName, std::string("Caf\xE9 Hulls"));
        QCOMPARE(program.App.CurrentCompanyLocation, std::string("Nice"));
        QCOMPARE(program.Settings.Read("COMPANY", "DEFAULT"), std::string("2"));
    }

    void A_double_click_selects_too() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        window.show();
        auto& list = Named<QListWidget>(window, "lst_Companies");
        const QPoint where = list.visualItemRect(list.item(0)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, where);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, where);
        QCOMPARE(program.App.CurrentCompanyId, std::int16_t(1));
        QVERIFY(!window.isVisible());
    }

    void Escape_closes_without_selecting() {
        CompanyProgram program;
        InNextModal<frmCompany>([](frmCompany& window) {
            Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
        ShowCompanies(program.App, nullptr);
        QCOMPARE(program.App.CurrentCompanyId, std::int16_t(0));
    }

    void Enter_selects_when_there_is_nothing_to_save() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        window.show();
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
        QTest::keyClick(&window, Qt::Key_Return);
        QCOMPARE(program.App.CurrentCompanyId, std::int16_t(2));
    }

    void The_window_says_which_company_is_edited_and_New_leads_out() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        QVERIFY(!Named<QPushButton>(window, "cmd_New").isEnabled());
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
        Named<QPushButton>(window, "cmd_Edit").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_Editing"),
                 std::string("Save overwrites Caf\xC3\xA9 Hulls (Nice)."));
        TypeCompany(window, "", "");
        TypeCompany(window, "Third Yard", "Port");
        QCOMPARE(TextOf<QLabel>(window, "lbl_Editing"),
                 std::string("Save overwrites Caf\xC3\xA9 Hulls (Nice), which gets this name. "
                             "New starts a new company instead."));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string("2")); // as before
        Named<QPushButton>(window, "cmd_New").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_Editing"), std::string());
        QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string());
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyName"), std::string());
        TypeCompany(window, "Third Yard", "Port");
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(program.Companies().size(), std::size_t(3));
        QCOMPARE(program.Companies()[1].CompanyName, std::string("Caf\xE9 Hulls"));
    }

    void A_save_is_confirmed() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        TypeCompany(window, "Third Yard", "Port");
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_Editing"),
                 std::string("Saved Third Yard (Port). Select it to work on it."));
    }

    void An_edit_that_could_not_be_saved_stays_an_edit() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
        Named<QPushButton>(window, "cmd_Edit").click();
        std::filesystem::rename(program.DataFile("companies.talvor"), program.DataFile("kept"));
        std::filesystem::create_directory(program.DataFile("companies.talvor"));
        TypeCompany(window, "Caf\xC3\xA9 Boats", "Nice");
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(TextOf<QLineEdit>(window, "txt_CompanyName"), std::string("Caf\xC3\xA9 Boats"));
        std::filesystem::remove(program.DataFile("companies.talvor"));
        std::filesystem::rename(program.DataFile("kept"), program.DataFile("companies.talvor"));
        Named<QPushButton>(window, "cmd_Save").click(); // once more
        QCOMPARE(program.Companies().size(), std::size_t(2));
        QCOMPARE(program.Companies()[1].CompanyName, std::string("Caf\xE9 Boats"));
    }

    void Companies_that_cannot_be_read_are_not_said_to_be_none() {
        TestProgram program;
        std::filesystem::create_directory(program.DataFile("companies.talvor"));
        frmCompany window(program.App, nullptr);
        window.show();
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
        QVERIFY(Named<QListWidget>(window, "lst_Companies")
                    .accessibleDescription()
                    .contains(QStringLiteral("The companies cannot be read.")));
        QVERIFY(window.focusWidget() != &Named<QLineEdit>(window, "txt_CompanyName"));
    }

    void An_emptied_name_is_not_said_to_become_the_name() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
        Named<QPushButton>(window, "cmd_Edit").click();
        TypeCompany(window, "", "");
        QCOMPARE(TextOf<QLabel>(window, "lbl_Editing"),
                 std::string("Save overwrites Caf\xC3\xA9 Hulls (Nice)."));
    }

    void The_keys_do_what_they_do_elsewhere() {
        CompanyProgram program;
        frmCompany window(program.App, nullptr);
        window.show();
        QApplication::setActiveWindow(&window);
        auto& list = Named<QListWidget>(window, "lst_Companies");
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(window.focusWidget(), QStringLiteral("hulls"));
        QCOMPARE(list.currentRow(), 1);
        QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
        QTest::keyClick(&list, Qt::Key_F2);
        QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string("2"));
        QTest::keyClick(window.focusWidget(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string());
        QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_CompanyName"));
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_company_test)
#include "frm_company_test.moc"
