#include "app/frm_main.h"

#include "dialogs/link_label.h"
#include "overview/frm_overview.h"
#include "store/companies.h"
#include "store/frm_company.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/gui.h"

#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// 22,046 lb of a resin at 34 % in each month of 2005: its point value is 42.68 kg/Mg, of 46. That is 92.8 %.
struct YearProgram : OverviewShop {
    YearProgram() {
        ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        std::vector<std::string> lines;
        for (int month = 1; month <= 12; ++month)
            lines.push_back("PR-1|" + std::to_string(month) + "|2005|22046|lbs");
        ImportUsage(lines);
        Prompts.Shown.clear();
    }
};
constexpr const char* December =
    "DEC 2005: emission average 92.8 % of the allowance; nothing needs attention";

LinkLabel& Line(const frmMain& window) {
    return Named<LinkLabel>(window, "lbl_Verdict");
}

/// Does so, and says whether the overview opened.
template <class Act> bool OpensOverview(Act act) {
    bool isOpen = false;
    InNextModal<frmOverview>([&isOpen](frmOverview&) { isOpen = true; });
    act();
    return isOpen;
}

} // namespace

class frm_main_verdict_test : public QObject {
    Q_OBJECT

private slots:
    void The_verdict_stands_below_the_company_once_the_window_is_painted() {
        YearProgram program;
        frmMain window(program.App);
        QVERIFY(Line(window).text().isEmpty());
        window.show();
        QTRY_COMPARE(Line(window).text(), QString::fromLatin1(December));
        QVERIFY(Line(window).y() > Named<QLabel>(window, "lbl_Company").y());
        QVERIFY(Line(window).isEnabled());
        QVERIFY(program.Prompts.Shown.empty());
    }

    void It_moves_no_control_when_it_appears() {
        YearProgram program;
        frmMain window(program.App);
        window.show();
        const QSize size = window.size();
        const QRect buttons = Named<QWidget>(window, "Frame1").geometry();
        QTRY_VERIFY(!Line(window).text().isEmpty());
        QCOMPARE(window.size(), size);
        QCOMPARE(Named<QWidget>(window, "Frame1").geometry(), buttons);
    }

    void It_opens_the_overview() {
        YearProgram program;
        frmMain window(program.App);
        window.show();
        QTRY_VERIFY(Line(window).isEnabled());
        QVERIFY(OpensOverview([&] { QTest::mouseClick(&Line(window), Qt::LeftButton); }));
        QVERIFY(OpensOverview([&] { QTest::keyClick(&Line(window), Qt::Key_Return); }));
        QVERIFY(OpensOverview([&] { Named<QPushButton>(window, "cmd_Overview").click(); }));
        QApplication::setActiveWindow(&window); // shortcuts are of the active window
        QVERIFY(OpensOverview([&] { QTest::keyClick(&window, Qt::Key_F8); }));
    }

    void Without_a_company_the_overview_says_to_choose_one() {
        TestProgram program;
        program.App.CurrentCompanyId = 0;
        frmMain window(program.App);
        window.show();
        QVERIFY(Named<QPushButton>(window, "cmd_Overview").isEnabled());
        Named<QPushButton>(window, "cmd_Overview").click();
        QCOMPARE(program.ShownTexts(),
                 std::vector<std::string>{"Choose Companies first: add a company or select one."});
        QVERIFY(Line(window).text().isEmpty());
        QVERIFY(!Line(window).isEnabled());
    }

    void It_is_calculated_again_when_records_have_changed() {
        YearProgram program;
        frmMain window(program.App);
        window.show();
        QTRY_COMPARE(Line(window).text(), QString::fromLatin1(December));
        program.ImportUsage({"PR-1|1|2006|22046|lbs"});
        InNextModal<frmOverview>([](frmOverview&) {});
        Named<QPushButton>(window, "cmd_Overview").click(); // on the way back the window looks
        QTRY_VERIFY(Line(window).text().startsWith(QLatin1String("JAN 2006: ")));
    }

    void It_is_of_the_company_that_was_switched_to() {
        YearProgram program;
        QVERIFY(AddNewCompany(program.App, "Other", "Elsewhere"));
        frmMain window(program.App);
        window.show();
        QTRY_COMPARE(Line(window).text(), QString::fromLatin1(December));
        InNextModal<frmCompany>([](frmCompany& companies) {
            auto& list = Named<QListWidget>(companies, "lst_Companies");
            list.setCurrentRow(list.item(0)->text().startsWith(QLatin1String("Other")) ? 0 : 1);
            Named<QPushButton>(companies, "cmd_Switch").click();
        });
        Named<QPushButton>(window, "cmd_Company").click();
        QVERIFY(Line(window).text().isEmpty()); // at once
        QTRY_COMPARE(Line(window).text(), QStringLiteral("No use is recorded yet."));
    }

    void A_file_that_cannot_be_read_is_said_there_and_in_no_box() {
        YearProgram program;
        std::filesystem::remove(program.DataFile("1_usage.talvor"));
        std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
        frmMain window(program.App);
        window.show();
        QTRY_VERIFY(Line(window).text().startsWith(QLatin1String("Cannot ")));
        QVERIFY(Line(window).text().contains(QLatin1String("1_usage.talvor")));
        QTRY_VERIFY(Line(window).height() >= Line(window).heightForWidth(Line(window).width()));
        QVERIFY(program.Prompts.Shown.empty());
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_main_verdict_test)
#include "frm_main_verdict_test.moc"
