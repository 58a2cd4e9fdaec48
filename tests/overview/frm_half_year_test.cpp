#include "overview/frm_half_year.h"

#include "base/settings.h"
#include "base/text.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <functional>

namespace mact {
namespace {

constexpr HalfYear FirstOf2005{.Year = 2005, .Half = 1};
constexpr MonthNumber November2005 = MonthNumberOf(2005, 11);
constexpr MonthNumber December2005 = MonthNumberOf(2005, 12);

/// 250 lb of a pigmented gel coat of 31 % in every month from 7/2004 to 12/2005.
struct PackProgram : OverviewShop {
    PackProgram() {
        ImportMaterials({"PG|of R1|Pigmented production gel|All|9|31|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        std::vector<std::string> lines;
        for (int month = 7; month <= 24; ++month)
            lines.push_back("PG|" + std::to_string((month - 1) % 12 + 1) + '|' +
                            std::to_string(2004 + (month - 1) / 12) + "|250|lbs");
        ImportUsage(lines);
    }
    void Open(MonthNumber monthEnd, const std::function<void(frmHalfYear&)>& act) {
        const Result<ShopRecords> records = ReadShopRecords(App);
        if (!records) qFatal("The test's records cannot be read");
        InNextModal<frmHalfYear>(act);
        ShowHalfYearPacks(App, ShopFigures(*records), monthEnd, nullptr);
    }
    void Keep(HalfYear half) {
        if (!WritePack(App, half, false)) qFatal("The test's pack was not written");
    }
    std::filesystem::path PackFile(const std::string& name) const {
        return App.ProgramFolder / "half-year" / "1" / name;
    }
    std::map<std::string, std::string> Data() const { return FilesIn(App.ProgramFolder / "data"); }
};

QStringList Packs(const QWidget& window) {
    const auto& list = Named<QListWidget>(window, "lst_Packs");
    QStringList lines;
    for (int row = 0; row < list.count(); ++row)
        lines << list.item(row)->text();
    return lines;
}

/// The table's lines, cells joined by "|".
QStringList Differences(const QWidget& window) {
    const QAbstractItemModel& model = *Named<QTableView>(window, "tbl_Differences").model();
    QStringList lines;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells << model.index(row, column).data().toString();
        lines << cells.join(u'|');
    }
    return lines;
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

const QString Same = QStringLiteral("January to June 2005. Its figures still come out the same.");

} // namespace

class frm_half_year_test : public QObject {
    Q_OBJECT

private slots:
    void Opens_with_the_newest_half_year_that_is_over_and_writes_nothing() {
        PackProgram program;
        const auto before = program.Data();
        program.Open(November2005, [](frmHalfYear& window) {
            QCOMPARE(Named<QComboBox>(window, "cbo_Half").currentText(), QStringLiteral("January to June"));
            QCOMPARE(Named<QComboBox>(window, "cbo_Year").currentText(), QStringLiteral("2005"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_Due"),
                     "Due 60 days after the half year, on 29 August 2005, unless your permit sets another "
                     "date.");
            QCOMPARE(Packs(window), QStringList{"No pack is kept yet."});
            QVERIFY(!Named<QLabel>(window, "lbl_Made").isVisible());
            QVERIFY(!Named<QPushButton>(window, "cmd_Open").isEnabled());
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_Half"));
        });
        QCOMPARE(program.Data(), before);
        QVERIFY(!std::filesystem::exists(program.ProgramFile("half-year")));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void The_due_date_is_that_of_the_half_year_chosen() {
        PackProgram program;
        program.Open(November2005, [](frmHalfYear& window) {
            QTest::keyClick(&Named<QComboBox>(window, "cbo_Half"), Qt::Key_Down);
            QVERIFY(TextOf<QLabel>(window, "lbl_Due").find("on 1 March 2006,") != std::string::npos);
            Named<QComboBox>(window, "cbo_Year").setEditText(QStringLiteral("2015"));
            QVERIFY(TextOf<QLabel>(window, "lbl_Due").find("on 29 February 2016,") != std::string::npos);
        });
    }

    void Without_a_whole_year_none_can_be_made() {
        PackProgram program;
        program.Open(November2005, [](frmHalfYear& window) {
            for (const char* year : {"", "200", "1899"}) {
                Named<QComboBox>(window, "cbo_Year").setEditText(QString::fromLatin1(year));
                QVERIFY(!Named<QPushButton>(window, "cmd_Make").isEnabled());
                QCOMPARE(TextOf<QLabel>(window, "lbl_Due"), "Choose a year from 1900 to 9999.");
            }
            Named<QComboBox>(window, "cbo_Year").setEditText(QStringLiteral("1900"));
            QVERIFY(Named<QPushButton>(window, "cmd_Make").isEnabled());
        });
    }

    void Enter_makes_the_pack_and_says_where_it_is() {
        PackProgram program;
        const auto before = program.Data();
        program.Open(November2005, [&](frmHalfYear& window) {
            QTest::keyClick(&Named<QComboBox>(window, "cbo_Half"), Qt::Key_Return);
            const auto& made = Named<QLabel>(window, "lbl_Made");
            QVERIFY(made.isVisible());
            QVERIFY(made.textInteractionFlags() & Qt::TextSelectableByMouse);
            QCOMPARE(made.text().toStdString(), "The pack for January to June 2005 has been saved as\n" +
                                                    PathText(program.PackFile("2005-1.htm")) + "\n" +
                                                    PathText(program.PackFile("2005-1.csv")));
            QTRY_COMPARE(Packs(window), QStringList{Same});
            QVERIFY(Named<QListWidget>(window, "lst_Packs").item(0)->isSelected());
            QVERIFY(Differences(window).isEmpty());
        });
        QCOMPARE(FilesIn(program.PackFile("")).size(), 2u);
        QCOMPARE(program.Data(), before);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void The_paths_are_whole_in_the_smallest_window() {
        PackProgram program;
        program.Open(November2005, [](frmHalfYear& window) {
            Press(window, "cmd_Make");
            window.resize(1, 1);
            QCoreApplication::processEvents();
            const auto& made = Named<QLabel>(window, "lbl_Made");
            QVERIFY(made.heightForWidth(made.width()) <= made.height());
        });
    }

    void A_kept_pack_is_replaced_only_after_a_question() {
        PackProgram program;
        program.Keep(FirstOf2005);
        WriteContent(program.PackFile("2005-1.htm"), "kept");
        program.Prompts.Answers = {PromptAnswer::No, PromptAnswer::Yes};
        program.Open(November2005, [&](frmHalfYear& window) {
            Press(window, "cmd_Make");
            QCOMPARE(ContentOf(program.PackFile("2005-1.htm")), "kept");
            QVERIFY(!Named<QLabel>(window, "lbl_Made").isVisible());
            Press(window, "cmd_Make");
            QVERIFY(ContentOf(program.PackFile("2005-1.htm")).starts_with("<!DOCTYPE html>"));
            QVERIFY(Named<QLabel>(window, "lbl_Made").isVisible());
        });
        QCOMPARE(program.Prompts.Shown.size(), 2u);
        const Prompt& question = program.Prompts.Shown.front();
        QCOMPARE(question.Text, "There is a half-year pack for January to June 2005 already. Replace it with "
                                "one from today's records?");
        QVERIFY(question.Kind == PromptKind::Question && question.Buttons == PromptButtons::YesNo);
    }

    void What_cannot_be_made_is_told_once() {
        PackProgram program;
        program.Open(November2005, [&](frmHalfYear& window) {
            std::filesystem::remove(program.DataFile("1_usage.talvor"));
            std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
            Press(window, "cmd_Make");
            QVERIFY(!Named<QLabel>(window, "lbl_Made").isVisible());
        });
        QCOMPARE(program.Prompts.Shown.size(), 1u);
        QVERIFY(program.Prompts.Shown.front().Kind == PromptKind::Failure);
        QVERIFY(!std::filesystem::exists(program.ProgramFile("half-year")));
    }

    void Kept_packs_are_compared_one_after_the_other() {
        PackProgram program;
        program.Keep({.Year = 2004, .Half = 2});
        program.Keep(FirstOf2005);
        program.Keep({.Year = 2005, .Half = 2});
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        const ShopFigures shop(*records);
        const frmHalfYear window(program.App, shop, December2005, nullptr);
        const auto waiting = [&] { return Packs(window).filter(QStringLiteral("Being compared...")).size(); };
        QCOMPARE(Packs(window), QStringList({"July to December 2005. Being compared...",
                                             "January to June 2005. Being compared...",
                                             "July to December 2004. Being compared..."}));
        for (int turn = 0; turn < 1000 && waiting() > 0; ++turn) {
            const qsizetype before = waiting();
            QCoreApplication::processEvents(); // one turn of the event loop
            QVERIFY(before - waiting() <= 1);
        }
        QCOMPARE(waiting(), 0);
        QCOMPARE(Packs(window).filter(QStringLiteral("Its figures still come out the same.")).size(), 3);
    }

    // 250 lb of clear gel coat in 12/2005 adds its content, its point value and its amount, and changes
    // emissions, allowance and headroom, in kg and in percent.
    void Choosing_a_pack_shows_what_differs() {
        PackProgram program;
        program.Keep({.Year = 2005, .Half = 2});
        program.Keep(FirstOf2005);
        program.ImportMaterials({"CG|clear|Clear production gel coat|All|9|40|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage({"CG|12|2005|250|lbs"});
        program.Open(December2005, [](frmHalfYear& window) {
            QTRY_COMPARE(Packs(window), QStringList({"July to December 2005. 7 figures differ.", Same}));
            QVERIFY(Differences(window).isEmpty());
            auto& list = Named<QListWidget>(window, "lst_Packs");
            list.setFocus();
            QTest::keyClick(&list, Qt::Key_Down);
            const QStringList differences = Differences(window);
            QCOMPARE(differences.size(), 7);
            QVERIFY(differences.contains(
                QStringLiteral("12/2005, content, clear gel coat||40, 40, 48, %, within")));
            QTest::keyClick(&list, Qt::Key_Down);
            QVERIFY(Differences(window).isEmpty());
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_single_difference_shows_both_figures() {
        PackProgram program;
        program.Keep(FirstOf2005);
        std::string csv = ContentOf(program.PackFile("2005-1.csv"));
        const std::string kept = "6/2005,content,pigmented gel coat,31,31,33,%,within,";
        const std::size_t at = csv.find("\n" + kept);
        QVERIFY(at != std::string::npos);
        csv.replace(at + 1, kept.size(), "6/2005,content,pigmented gel coat,34,34,33,%,over,");
        WriteContent(program.PackFile("2005-1.csv"), csv);
        program.Open(November2005, [](frmHalfYear& window) {
            Named<QListWidget>(window, "lst_Packs").setCurrentRow(0); // before it is compared, or after
            QTRY_COMPARE(Packs(window), QStringList{"January to June 2005. 1 figure differs."});
            QCOMPARE(Differences(window),
                     QStringList{"6/2005, content, pigmented gel coat|34, 34, 33, %, over|"
                                 "31, 31, 33, %, within"});
            const QAbstractItemModel& model = *Named<QTableView>(window, "tbl_Differences").model();
            QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Figure"));
            QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("In the pack"));
            QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), QStringLiteral("Today"));
        });
    }

    void A_pack_that_cannot_be_read_is_told_in_the_list() {
        PackProgram program;
        program.Keep(FirstOf2005);
        WriteContent(program.PackFile("2005-1.csv"), "no pack\r\n");
        program.Open(November2005, [&](frmHalfYear& window) {
            QTRY_COMPARE(Packs(window), QStringList{QString::fromStdString(
                                            "January to June 2005. Cannot read the half-year pack \"" +
                                            PathText(program.PackFile("2005-1.csv")) +
                                            "\": its first line is not that of a pack.")});
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_folder_that_cannot_be_listed_is_told_in_the_list() {
        PackProgram program;
        std::filesystem::create_directory(program.ProgramFile("half-year"));
        WriteContent(program.ProgramFile("half-year") / "1", "a file");
        program.Open(November2005, [](frmHalfYear& window) {
            QCOMPARE(Packs(window).size(), 1);
            QVERIFY(Packs(window).front().startsWith(QStringLiteral("Cannot list the folder \"")));
            QVERIFY(!Named<QPushButton>(window, "cmd_Open").isEnabled());
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Open_shows_the_page_of_the_selected_pack_in_the_browser() {
        PackProgram program;
        program.Keep(FirstOf2005);
        const std::string browser = PathText(program.ProgramFile("browser"));
        WriteContent(program.ProgramFile("browser"), "");
        program.Settings.Values[{std::string(Settings::Browser), std::string(Settings::Path)}] = browser;
        program.Open(November2005, [](frmHalfYear& window) {
            QVERIFY(!Named<QPushButton>(window, "cmd_Open").isEnabled());
            Named<QListWidget>(window, "lst_Packs").setCurrentRow(0);
            Press(window, "cmd_Open");
        });
        QCOMPARE(program.Programs.Started.size(), 1u);
        QCOMPARE(program.Programs.Started.front().CommandLine,
                 browser + ' ' + PathText(program.PackFile("2005-1.htm")));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_page_that_is_gone_is_told() {
        PackProgram program;
        program.Keep(FirstOf2005);
        std::filesystem::remove(program.PackFile("2005-1.htm"));
        program.Open(November2005, [](frmHalfYear& window) {
            Named<QListWidget>(window, "lst_Packs").setCurrentRow(0);
            Press(window, "cmd_Open");
        });
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"Cannot open the page \"" +
                                                                PathText(program.PackFile("2005-1.htm")) +
                                                                "\": there is no such file."});
        QVERIFY(program.Programs.Started.empty());
    }

    void Escape_closes() {
        PackProgram program;
        program.Open(November2005, [](frmHalfYear& window) {
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_half_year_test)
#include "frm_half_year_test.moc"
