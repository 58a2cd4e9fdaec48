#include "overview/overview_sheets.h"

#include "overview/overview_page.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QUrl>

namespace mact {
namespace {

constexpr double TextPoints = 9;
constexpr double FootPoints = 8;
constexpr double ChartPerSheet = 0.3; // of the height, at most

QFont FontOf(double points) {
    QFont font = QGuiApplication::font();
    font.setPointSizeF(points);
    return font;
}

/// What the foot, with a blank line above it, leaves.
QSizeF TextSizeOf(const QPaintDevice& device, const QFontMetricsF& foot) {
    return {static_cast<double>(device.width()), device.height() - 2 * foot.lineSpacing()};
}

} // namespace

OverviewSheets::OverviewSheets(const QString& html, const QImage& chart, QPagedPaintDevice& device)
    : m_device(device), m_foot(FontOf(FootPoints), &device), m_text(TextSizeOf(device, m_foot)) {
    m_document.setDefaultFont(FontOf(TextPoints));
    m_document.setDocumentMargin(0);
    m_document.documentLayout()->setPaintDevice(&device);
    m_document.setPageSize(m_text);
    m_document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("chart")), chart);
    m_document.setHtml(WithChart(html, chart));
    KeepHeadingsWithTheirText();
}

/// Gives the picture its size, in pixels of the screen, which the layout turns into the device's.
QString OverviewSheets::WithChart(QString html, const QImage& chart) const {
    const QString place = QString::fromUtf8(OverviewPageChart.data(), qsizetype(OverviewPageChart.size()));
    if (chart.isNull()) return html.remove(place);
    const double scale = m_device.logicalDpiY() / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    const QSizeF size =
        QSizeF(chart.size()).scaled(m_text.width(), m_text.height() * ChartPerSheet, Qt::KeepAspectRatio) /
        scale;
    return html.replace(place, QStringLiteral("<img src=\"chart\" width=\"%1\" height=\"%2\">")
                                   .arg(int(size.width()))
                                   .arg(int(size.height())));
}

int OverviewSheets::SheetOf(const QTextBlock& block) const {
    return static_cast<int>(m_document.documentLayout()->blockBoundingRect(block).top() / m_text.height());
}

/// A heading at the end of a sheet goes to the next one, where its text is.
void OverviewSheets::KeepHeadingsWithTheirText() {
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) continue;
        QTextBlock text = block.next();
        while (text.isValid() && text.blockFormat().headingLevel() > 0)
            text = text.next();
        if (!text.isValid() || SheetOf(text) == SheetOf(block)) continue;
        QTextBlockFormat onNextSheet = block.blockFormat();
        onNextSheet.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(block).setBlockFormat(onNextSheet);
    }
}

void OverviewSheets::Draw(QPainter& painter) {
    const int count = m_document.pageCount();
    for (int sheet = 0; sheet < count; ++sheet) {
        if (sheet > 0) m_device.newPage();
        DrawText(painter, sheet);
        DrawFoot(painter, QStringLiteral("%1 / %2").arg(sheet + 1).arg(count));
    }
}

void OverviewSheets::DrawText(QPainter& painter, int sheet) {
    const QRectF shown(QPointF(0, sheet * m_text.height()), m_text);
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = shown;
    context.palette.setColor(QPalette::Text, Qt::black); // whatever the windows' colours
    painter.save();
    painter.translate(-shown.topLeft());
    painter.setClipRect(shown);
    m_document.documentLayout()->draw(&painter, context);
    painter.restore();
}

void OverviewSheets::DrawFoot(QPainter& painter, const QString& number) {
    const QRectF line(0, m_device.height() - m_foot.lineSpacing(), m_device.width(), m_foot.lineSpacing());
    const double room = line.width() - m_foot.horizontalAdvance(number + QStringLiteral("  "));
    const QString title = m_document.metaInformation(QTextDocument::DocumentTitle);
    painter.setFont(FontOf(FootPoints));
    painter.setPen(Qt::black);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     m_foot.elidedText(title, Qt::ElideRight, room));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, number);
}
} // namespace mact
