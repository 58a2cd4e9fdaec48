#include "overview/overview_print.h"

#include "base/text.h"
#include "overview/overview_sheets.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"

#include <QBuffer>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QTest>
#include <QTextBlock>
#include <QToolButton>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace mact {
namespace {

const QString TitleText = QStringLiteral("Twelve months ending DEC 2005, Acme & Sons");

QString Page(const QString& body) {
    return QStringLiteral(
               "<html><head><title>%1</title></head>\r\n<body>\r\n<h1>Overview</h1>%2</body></html>")
        .arg(TitleText.toHtmlEscaped(), body);
}

/// A table as the page has it.
QString TableOf(int rows) {
    QString html = QStringLiteral("<h2>Rows</h2><table border=\"1\" cellspacing=\"0\" cellpadding=\"3\" "
                                  "width=\"100%\"><thead><tr><th>Type</th><th>kg</th></tr></thead><tbody>");
    for (int row = 0; row < rows; ++row)
        html += QStringLiteral("<tr><td>production resin, nonatomized %1</td><td>%1.25</td></tr>").arg(row);
    return html + QStringLiteral("</tbody></table>");
}

QImage Chart() {
    QImage chart(600, 240, QImage::Format_RGB32);
    chart.fill(Qt::blue);
    return chart;
}

int SheetsIn(const std::string& pdf) {
    int count = 0;
    for (std::size_t at = pdf.find("/Type /Page\n"); at != std::string::npos;
         at = pdf.find("/Type /Page\n", at + 1))
        ++count;
    return count;
}

/// A text of the document's information, which a PDF keeps in UTF-16.
bool HasInformation(const std::string& pdf, const QString& text) {
    std::string wanted;
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        for (const char byte : {static_cast<char>(unit >> 8U), static_cast<char>(unit & 0xFFU)}) {
            if (byte == '(' || byte == ')' || byte == '\\') wanted += '\\';
            wanted += byte;
        }
    }
    return pdf.find(wanted) != std::string::npos;
}

/// Sheets of a PDF in memory.
struct MemorySheets {
    explicit MemorySheets(const QString& html, const QImage& chart = {}) : Sheets(html, chart, Writer) {}

    QBuffer Buffer{};
    QPdfWriter Writer{&Buffer};
    OverviewSheets Sheets;
};

struct PrintProgram : TestProgram {
    std::filesystem::path Target = Folder.Path() / "overview.pdf";
    std::string Written(const QString& html, const QImage& chart = {}) {
        const Done written = WriteOverviewPdf(App, Target, html, chart);
        if (!written) qFatal("%s", SentenceOf(written.error()).c_str());
        return ContentOf(Target);
    }
    std::string FailureOf(const std::filesystem::path& path) {
        const Done written = WriteOverviewPdf(App, path, Page({}), {});
        return written ? std::string() : SentenceOf(written.error());
    }
};

} // namespace

class overview_print_test : public QObject {
    Q_OBJECT

private slots:
    void A_short_page_is_a_PDF_of_one_sheet() {
        PrintProgram program;
        const std::string pdf = program.Written(Page(TableOf(3)));
        QVERIFY(pdf.starts_with("%PDF"));
        QVERIFY(pdf.find("%%EOF") != std::string::npos);
        QCOMPARE(SheetsIn(pdf), 1);
    }

    void The_PDF_has_title_and_creator() {
        PrintProgram program;
        const std::string pdf = program.Written(Page({}));
        QVERIFY(HasInformation(pdf, TitleText));
        QVERIFY(HasInformation(pdf, QStringLiteral("MACT")));
    }

    void A_long_table_goes_on_on_further_sheets() {
        PrintProgram program;
        QVERIFY(SheetsIn(program.Written(Page(TableOf(200)))) >= 3);
    }

    void The_chart_is_in_the_PDF_only_if_there_is_one() {
        PrintProgram program;
        const QString html = Page(QStringLiteral("<p><img src=\"chart\"></p>"));
        QVERIFY(program.Written(html, Chart()).find("/Subtype /Image") != std::string::npos);
        QVERIFY(program.Written(html).find("/Subtype /Image") == std::string::npos);
    }

    void A_heading_stands_on_the_sheet_of_its_text() {
        int moved = 0;
        for (int lines = 20; lines < 90; ++lines) {
            const QString before = QStringLiteral("<p>line</p>").repeated(lines);
            const MemorySheets made(
                Page(before + QStringLiteral("<h2>Rows</h2><h3>First</h3>") + TableOf(1)));
            for (QTextBlock block = made.Sheets.Document().begin(); block.isValid(); block = block.next()) {
                if (block.blockFormat().headingLevel() != 2) continue;
                const int sheet = made.Sheets.SheetOf(block);
                QTextBlock cell = block;
                while (cell.blockFormat().headingLevel() > 0)
                    cell = cell.next();
                QCOMPARE(made.Sheets.SheetOf(cell), sheet);
                if (block.blockFormat().pageBreakPolicy() != QTextFormat::PageBreak_Auto) ++moved;
            }
        }
        QVERIFY(moved > 0); // or nothing was tried
    }

    void The_chart_is_as_wide_as_the_sheet_and_no_wider() {
        const MemorySheets made(Page(QStringLiteral("<p><img src=\"chart\"></p>")), Chart());
        const double width = made.Writer.width();
        QVERIFY(made.Sheets.Document().size().width() <= width);
        for (QTextBlock block = made.Sheets.Document().begin(); block.isValid(); block = block.next())
            if (block.text().contains(QChar::ObjectReplacementCharacter)) {
                const double chart = block.layout()->lineAt(0).naturalTextWidth();
                QVERIFY2(chart > 0.97 * width && chart <= width, qPrintable(QString::number(chart / width)));
                return;
            }
        QFAIL("There is no chart");
    }

    void A_word_of_250_letters_does_not_widen_the_table() {
        const QString name(250, QLatin1Char('W'));
        QString html = Page(TableOf(3));
        html.replace(QStringLiteral("nonatomized 1"), name);
        const MemorySheets made(html);
        QVERIFY(made.Sheets.Document().toPlainText().contains(name));
        QVERIFY(made.Sheets.Document().size().width() <= made.Writer.width());
    }

    void Text_is_black_on_paper_in_dark_windows_too() {
        const QPalette before = QGuiApplication::palette();
        QPalette dark(QColor(50, 54, 60));
        dark.setColor(QPalette::Text, Qt::white);
        QGuiApplication::setPalette(dark);
        QImage paper(2000, 400, QImage::Format_RGB32);
        paper.fill(Qt::white);
        QPainter painter(&paper);
        MemorySheets(Page({})).Sheets.Draw(painter);
        painter.end();
        QGuiApplication::setPalette(before);
        bool isBlackSeen = false;
        for (int y = 0; y < paper.height(); ++y)
            for (int x = 0; x < paper.width(); ++x)
                isBlackSeen = isBlackSeen || qGray(paper.pixel(x, y)) < 16;
        QVERIFY(isBlackSeen);
    }

    void Five_hundred_rows_take_less_than_a_second() {
        PrintProgram program;
        const QString html = Page(TableOf(500));
        QElapsedTimer timer;
        timer.start();
        const std::string pdf = program.Written(html, Chart());
        qInfo("500 rows: %lld ms, %zu bytes, %d sheets", timer.elapsed(), pdf.size(), SheetsIn(pdf));
        QVERIFY(timer.elapsed() < 10000); // sanitizers take their time
    }

    void An_existing_file_is_replaced_whole_and_nothing_stays_beside_it() {
        PrintProgram program;
        WriteContent(program.Target, std::string(1000000, 'x'));
        QVERIFY(program.Written(Page({})).size() < 1000000);
        QCOMPARE(FilesIn(program.Folder.Path()).size(), std::size_t{1});
    }

    void A_folder_in_its_place_is_a_failure_and_stays() {
        PrintProgram program;
        std::filesystem::create_directory(program.Target);
        const std::string sentence = program.FailureOf(program.Target);
        QVERIFY2(sentence.starts_with("Cannot open the file \"" + PathText(program.Target)) ||
                     sentence.starts_with("Cannot write the file \"" + PathText(program.Target)),
                 sentence.c_str());
        QVERIFY(std::filesystem::is_directory(program.Target));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_missing_folder_is_a_failure_in_words() {
        PrintProgram program;
        const std::filesystem::path target = program.Folder.Path() / "missing" / "overview.pdf";
        const std::string sentence = program.FailureOf(target);
        QVERIFY2(sentence.starts_with("Cannot write the file \"" + PathText(target)), sentence.c_str());
        QVERIFY(!std::filesystem::exists(target.parent_path()));
    }

    void A_full_disk_leaves_the_old_file() {
        PrintProgram program;
        WriteContent(program.Target, "old");
        LimitedFiles files;
        files.Limits[TemporaryFor(std::filesystem::canonical(program.Target))].LongestFile = 100;
        const AppContext app{program.Prompts,          program.Settings, program.Programs,
                             program.Dialogs,          program.Calendar, files,
                             program.App.ProgramFolder};
        const Done written = WriteOverviewPdf(app, program.Target, Page({}), {});
        QVERIFY(!written);
        QCOMPARE(SentenceOf(written.error()), "Cannot write the file \"" +
                                                  PathText(std::filesystem::canonical(program.Target)) +
                                                  "\": The disk is full.");
        QCOMPARE(ContentOf(program.Target), std::string("old"));
        QCOMPARE(FilesIn(program.Folder.Path()).size(), std::size_t{1});
    }

    void A_data_file_is_never_replaced() {
        PrintProgram program;
        WriteContent(program.DataFile("1_usage.talvor"), "records");
        const std::filesystem::path target = program.DataFile("1_usage.talvor");
        QCOMPARE(program.FailureOf(target), "Cannot write the file \"" + PathText(target) +
                                                "\": the data folder is for the program's own files.");
        QCOMPARE(ContentOf(target), std::string("records"));
        QVERIFY(!program.FailureOf(program.DataFile("new.pdf")).empty());
        QCOMPARE(FilesIn(program.App.ProgramFolder / "data").size(), std::size_t{1});
    }

    void A_pipe_is_a_failure_and_nobody_waits_for_its_reader() {
#ifdef _WIN32
        QSKIP("There are no such pipes.");
#else
        PrintProgram program;
        QCOMPARE(mkfifo(program.Target.c_str(), 0600), 0);
        QCOMPARE(program.FailureOf(program.Target),
                 "Cannot write the file \"" + PathText(program.Target) + "\": it is a pipe.");
        QVERIFY(std::filesystem::is_fifo(program.Target));
#endif
    }

    void The_preview_opens_without_a_printer_and_Escape_closes_it() {
        PrintProgram program;
        int sheets = 0;
        InNextModal<QPrintPreviewDialog>([&](QPrintPreviewDialog& window) {
            QCOMPARE(window.objectName(), QStringLiteral("frmPrintPreview"));
            sheets = window.findChild<QPrintPreviewWidget*>()->pageCount();
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
        PreviewOverview(program.App, Page(TableOf(200)), Chart(), nullptr);
        QVERIFY2(sheets >= 3, qPrintable(QString::number(sheets)));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void The_preview_keeps_its_size() {
        PrintProgram program;
        InNextModal<QPrintPreviewDialog>([](QPrintPreviewDialog& window) { window.resize(777, 555); });
        PreviewOverview(program.App, Page({}), {}, nullptr);
        InNextModal<QPrintPreviewDialog>(
            [](QPrintPreviewDialog& window) { QCOMPARE(window.size(), QSize(777, 555)); });
        PreviewOverview(program.App, Page({}), {}, nullptr);
    }

    void The_previews_controls_have_names() {
        PrintProgram program;
        InNextModal<QPrintPreviewDialog>([](QPrintPreviewDialog& window) {
            QStringList names;
            for (const auto* button : window.findChildren<QToolButton*>())
                names << button->objectName();
            QVERIFY(!names.contains(QString()));
            QCOMPARE(names.removeDuplicates(), 0);
            QCOMPARE(Named<QComboBox>(window, "cbo_Zoom").accessibleName(), QStringLiteral("Zoom"));
            QCOMPARE(Named<QLineEdit>(window, "txt_Sheet").accessibleName(), QStringLiteral("Sheet"));
        });
        PreviewOverview(program.App, Page({}), {}, nullptr);
    }
};
} // namespace mact

QTEST_MAIN(mact::overview_print_test)
#include "overview_print_test.moc"
