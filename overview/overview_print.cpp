#include "overview/overview_print.h"

#include "dialogs/dialog_routines.h"
#include "overview/overview_sheets.h"
#include "store/data_folder.h"

#include <QBuffer>
#include <QComboBox>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTextDocument>
#include <QToolButton>

#include <system_error>

namespace mact {
namespace {

constexpr double MarginMillimetres = 15;

bool DrawSheets(const QString& html, const QImage& chart, QPagedPaintDevice& device) {
    QPainter painter;
    if (!painter.begin(&device)) return false;
    OverviewSheets(html, chart, device).Draw(painter);
    return painter.end();
}

void SetMargins(QPagedPaintDevice& device) {
    device.setPageMargins(
        QMarginsF(MarginMillimetres, MarginMillimetres, MarginMillimetres, MarginMillimetres),
        QPageLayout::Millimeter);
}

/// Where there is no printer to ask.
QPageSize UsualPageSize() {
    const bool isAmerican = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageSize(isAmerican ? QPageSize::Letter : QPageSize::A4);
}

QString TitleOf(const QString& html) {
    QTextDocument document;
    document.setHtml(html.left(html.indexOf(QLatin1String("<body>"))));
    return document.metaInformation(QTextDocument::DocumentTitle);
}

/// Qt's window leaves its controls without names.
void NameControls(const QPrintPreviewDialog& window) {
    int number = 0;
    for (auto* button : window.findChildren<QToolButton*>())
        button->setObjectName(QStringLiteral("cmd_Tool%1").arg(++number));
    for (auto* combo : window.findChildren<QComboBox*>()) {
        combo->setObjectName(QStringLiteral("cbo_Zoom"));
        combo->setAccessibleName(QStringLiteral("Zoom"));
    }
    for (auto* edit : window.findChildren<QLineEdit*>()) {
        if (qobject_cast<QComboBox*>(edit->parentWidget())) continue;
        edit->setObjectName(QStringLiteral("txt_Sheet"));
        edit->setAccessibleName(QStringLiteral("Sheet"));
    }
}

/// A file that a person may choose for a page.
Done CheckTarget(const AppContext& app, const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute(path, error).parent_path();
    if (std::filesystem::equivalent(folder, DataFolder(app), error))
        return Failure{"write the file", path, "the data folder is for the program's own files"};
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_fifo(status) || std::filesystem::is_socket(status))
        return Failure{"write the file", path, "it is a pipe"};
    return Success();
}

} // namespace

void PreviewOverview(AppContext& app, const QString& html, const QImage& chart, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    if (printer.outputFormat() == QPrinter::PdfFormat) printer.setPageSize(UsualPageSize()); // no printer
    SetMargins(printer);
    printer.setDocName(TitleOf(html));
    printer.setCreator(QStringLiteral("MACT"));
    QPrintPreviewDialog window(&printer, parent);
    window.setObjectName(QStringLiteral("frmPrintPreview"));
    NameControls(window);
    window.resize(900, 560);
    QObject::connect(&window, &QPrintPreviewDialog::paintRequested, &window, [&](QPrinter* paper) {
        const BusyCursor cursor;
        DrawSheets(html, chart, *paper);
    });
    ShowModally(app, window);
}

Done WriteOverviewPdf(const AppContext& app, const std::filesystem::path& path, const QString& html,
                      const QImage& chart) {
    const Done checked = CheckTarget(app, path);
    if (!checked) return checked;
    QByteArray content;
    {
        QBuffer buffer(&content);
        QPdfWriter writer(&buffer);
        writer.setPageSize(UsualPageSize());
        SetMargins(writer);
        writer.setTitle(TitleOf(html));
        writer.setCreator(QStringLiteral("MACT"));
        if (!buffer.open(QIODevice::WriteOnly) || !DrawSheets(html, chart, writer))
            return Failure{"make the PDF", path, {}};
    }
    return ReplaceFile(app.Files, path, {content.constData(), static_cast<std::size_t>(content.size())});
}
} // namespace mact
