#pragma once

#include <QFontMetricsF>
#include <QImage>
#include <QPagedPaintDevice>
#include <QString>
#include <QTextDocument>

class QPainter;
class QTextBlock;

namespace mact {

/// An OverviewPage laid out on the sheets of a printer or a PDF, with the page's title and the sheet's number
/// at the foot of each.
class OverviewSheets {
public:
    /// `chart` takes its place as wide as the sheet; without a picture the place is left out. The device must
    /// outlive the sheets.
    OverviewSheets(const QString& html, const QImage& chart, QPagedPaintDevice& device);

    /// Draws all of them. `painter` is at work on the device, whose first sheet is empty yet.
    void Draw(QPainter& painter);

    const QTextDocument& Document() const { return m_document; }
    /// The sheet that a line of the text begins on, from 0.
    int SheetOf(const QTextBlock& block) const;

private:
    QString WithChart(QString html, const QImage& chart) const;
    void KeepHeadingsWithTheirText();
    void DrawText(QPainter& painter, int sheet);
    void DrawFoot(QPainter& painter, const QString& number);

    QPagedPaintDevice& m_device;
    QFontMetricsF m_foot;
    QSizeF m_text; ///< of a sheet
    QTextDocument m_document;
};
} // namespace mact
