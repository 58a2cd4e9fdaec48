#include "app/frm_main.h"
#include "lists/frm_list.h"
#include "materials/frm_material.h"
#include "reports/frm_reports.h"
#include "store/companies.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/gui.h"
#include "usage/frm_usage.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace mact {
namespace {

/// Two resins of 9 lb/gal, of each 2204.6 lb in every month of 2005, which is 0.245 Mgal.
struct HandShop : OverviewShop {
    History Changes;

    HandShop() {
        if (!AddNewCompany(App, "Heron Boats", "Dock 4")) qFatal("The test's company was not saved");
        App.CurrentCompanyName = "Heron Boats";
        App.CurrentCompanyLocation = "Dock 4";
        std::vector<std::string> materials;
        std::vector<std::string> usage;
        for (const std::string resin : {"PR-01", "PR-02"}) {
            materials.push_back(resin + "|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0");
            for (int month = 1; month <= 12; ++month)
                usage.push_back(resin + '|' + std::to_string(month) + "|2005|2204.6|lbs");
        }
        ImportMaterials(materials);
        ImportUsage(usage);
        App.Changes = &Changes;
        Prompts.Shown.clear();
    }
};

void Click(const QObject& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void Press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QApplication::setActiveWindow(&window);
    QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, modifiers);
}

std::string Label(const QObject& window, const char* name) {
    return TextOf<QLabel>(window, name);
}

void Choose(const QObject& window, const char* combo, const char* text) {
    auto& box = Named<QComboBox>(window, combo);
    box.setCurrentIndex(box.findText(QString::fromLatin1(text)));
}

void TypeOver(QLineEdit& box, const char* text) {
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, QString::fromLatin1(text));
}

/// 245 gallons, at first taken for 245 Mgal.
void EnterGallons(frmUsage& editor) {
    QCOMPARE(Label(editor, "lbl_Company"), std::string("Company: Heron Boats, Dock 4"));
    Choose(editor, "cbo_MaterialId", "PR-01");
    Choose(editor, "cbo_Month", "JAN");
    TypeOver(*Named<QComboBox>(editor, "cbo_Year").lineEdit(), "2006");
    TypeOver(Named<QLineEdit>(editor, "txt_Quantiry"), "245");
    Choose(editor, "cbo_Unit", "Mgal");
    QCOMPARE(Label(editor, "lbl_QuantityHint"),
             std::string("= 2,205,000 lbs: over five times 2,204.6 lbs, this material's median month; "
                         "1 Mgal is 1,000 gallons"));
    TypeOver(Named<QLineEdit>(editor, "txt_Quantiry"), ".245");
    QCOMPARE(Label(editor, "lbl_QuantityHint"), std::string("= 2,205 lbs"));
    Press(editor, Qt::Key_Return);
}

/// Month, year and unit are those of the record before.
void EnterSecond(frmUsage& editor) {
    QCOMPARE(Named<QComboBox>(editor, "cbo_Month").currentText(), QStringLiteral("JAN"));
    Choose(editor, "cbo_MaterialId", "PR-02");
    TypeOver(Named<QLineEdit>(editor, "txt_Quantiry"), ".25");
    Press(editor, Qt::Key_Return);
}

} // namespace

/// A month that is entered record by record, with a wrong unit that is noticed.
class hand_story_test : public QObject {
    Q_OBJECT

    static void EnterMonth(frmList& list) {
        QCOMPARE(Label(list, "lbl_Status"), std::string("24 records"));
        InNextModal<frmUsage>(EnterGallons);
        Press(list, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(Label(list, "lbl_Status"),
                 std::string("Saved PR-01, JAN 2006, 0.245 Mgal; 1 record this month"));
        InNextModal<frmUsage>(EnterSecond);
        Press(list, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(Label(list, "lbl_Status"),
                 std::string("Saved PR-02, JAN 2006, 0.25 Mgal; 2 records this month"));
    }

    /// A record that is found, deleted by mistake, and brought back.
    static void DeleteAndUndo(frmList& list) {
        auto& lines = Named<QListWidget>(list, "lst_Main");
        Press(list, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(list.focusWidget(), QStringLiteral("pr-02 (1/2006"));
        QCOMPARE(lines.currentItem()->text(), QStringLiteral("PR-02 (1/2006)"));
        Press(list, Qt::Key_Escape);
        Press(list, Qt::Key_Delete);
        QCOMPARE(Label(list, "lbl_Status"), std::string("Deleted PR-02 (1/2006); 25 records"));
        Press(list, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(Label(list, "lbl_Status"), std::string("Undone: delete PR-02 (1/2006)"));
        QCOMPARE(lines.count(), 26);
        Press(list, Qt::Key_Escape);
    }

private slots:
    void A_wrong_unit_is_noticed_before_it_is_saved() {
        HandShop shop;
        frmMain window(shop.App);
        window.show();
        InNextModal<frmList>([&shop](frmList& list) {
            EnterMonth(list);
            shop.Prompts.Answers = {PromptAnswer::Yes};
            DeleteAndUndo(list);
        });
        Click(window, "cmd_Usage");
        QCOMPARE(shop.Prompts.Shown.size(), std::size_t{1}); // the question before the deletion
    }
};
} // namespace mact

QTEST_MAIN(mact::hand_story_test)
#include "hand_story_test.moc"
