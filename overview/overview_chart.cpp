#include "overview/overview_chart.h"

#include "overview/state_colours.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace mact {
namespace {

constexpr double LimitPercent = 100;
constexpr double Margin = 5; // percent, above the highest value and below the lowest
constexpr double Step = 20;  // the axis begins at a multiple of so many percent
constexpr double PointSize = 4;
const QString WidestMonth = QStringLiteral("MMM 2005  ");

QPainterPath Triangle(const QPointF& centre) {
    QPainterPath path;
    path.moveTo(centre + QPointF(0, -1.5 * PointSize));
    path.lineTo(centre + QPointF(1.4 * PointSize, PointSize));
    path.lineTo(centre + QPointF(-1.4 * PointSize, PointSize));
    path.closeSubpath();
    return path;
}

} // namespace

OverviewChart::OverviewChart(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void OverviewChart::Show(const QString& title, std::vector<ChartPoint> points) {
    m_title = title;
    m_points = std::move(points);
    QStringList values;
    for (const ChartPoint& point : m_points)
        values << TextOf(point);
    setAccessibleName(m_title);
    setAccessibleDescription(values.join(QStringLiteral("; ")));
    update();
}

QString OverviewChart::TextOf(const ChartPoint& point) const {
    return point.Month + QStringLiteral(": ") + (point.Value ? point.Text : tr("no figure"));
}

QImage OverviewChart::Picture() const {
    constexpr double sharper = 3; // than a screen
    OverviewChart chart;
    chart.setPalette(QPalette(Qt::white));
    chart.Show(m_title, m_points);
    chart.resize(chart.fontMetrics().averageCharWidth() * 100, chart.fontMetrics().height() * 14);
    QImage picture(chart.size() * sharper, QImage::Format_RGB32);
    picture.setDevicePixelRatio(sharper);
    chart.render(&picture);
    return picture;
}

QSize OverviewChart::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 10};
}
QSize OverviewChart::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 30, fontMetrics().height() * 5};
}

QRectF OverviewChart::PlotArea() const {
    const double line = fontMetrics().height();
    const double left = fontMetrics().horizontalAdvance(QStringLiteral("100 % "));
    const double right = fontMetrics().horizontalAdvance(WidestMonth) / 2.0;
    return QRectF(rect()).adjusted(left, 1.6 * line, -right, -1.4 * line);
}

double OverviewChart::MostShown() const {
    double most = LimitPercent;
    for (const ChartPoint& point : m_points)
        most = std::max(most, point.Value.value_or(0));
    return most + Margin;
}

double OverviewChart::LeastShown() const {
    double least = LimitPercent;
    for (const ChartPoint& point : m_points)
        least = std::min(least, point.Value.value_or(least));
    return std::max(0.0, std::floor((least - Margin) / Step) * Step);
}

double OverviewChart::ShareOf(double value) const {
    return (value - LeastShown()) / (MostShown() - LeastShown());
}

QPointF OverviewChart::PlaceOf(std::size_t point) const {
    const QRectF area = PlotArea();
    const double steps = std::max<double>(1, static_cast<double>(m_points.size()) - 1);
    const double share = ShareOf(m_points[point].Value.value_or(LeastShown()));
    return {area.left() + area.width() * static_cast<double>(point) / steps,
            area.bottom() - area.height() * share};
}

void OverviewChart::DrawLimit(QPainter& painter) const {
    const QRectF area = PlotArea();
    const double limit = area.bottom() - area.height() * ShareOf(LimitPercent);
    painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DashLine));
    painter.drawLine(QPointF(area.left(), limit), QPointF(area.right(), limit));
    painter.setPen(palette().color(QPalette::Text));
    const double line = fontMetrics().height();
    painter.drawText(QRectF(0, limit - line / 2, area.left() - PointSize, line),
                     Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("100 %"));
    if (area.bottom() - limit >= line) // else the two would be one above the other
        painter.drawText(QRectF(0, area.bottom() - line / 2, area.left() - PointSize, line),
                         Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("%1 %").arg(LeastShown()));
    painter.drawLine(area.bottomLeft(), area.bottomRight());
}

/// As many as have room, the last one always.
void OverviewChart::DrawMonths(QPainter& painter) const {
    if (m_points.empty()) return;
    const QRectF area = PlotArea();
    const double width = fontMetrics().horizontalAdvance(WidestMonth);
    const double most = std::max(1.0, std::floor(area.width() / width));
    const auto step = static_cast<std::size_t>(std::ceil(static_cast<double>(m_points.size()) / most));
    painter.setPen(palette().color(QPalette::Text));
    for (std::size_t back = 0; back < m_points.size(); back += step) {
        const std::size_t point = m_points.size() - 1 - back;
        const double centre = PlaceOf(point).x();
        painter.drawText(QRectF(centre - width / 2, area.bottom() + 2, width, fontMetrics().height()),
                         Qt::AlignCenter, m_points[point].Month);
    }
}

void OverviewChart::DrawPoints(QPainter& painter) const {
    painter.setPen(QPen(FigureColour(palette()), 2));
    for (std::size_t point = 1; point < m_points.size(); ++point)
        if (m_points[point - 1].Value && m_points[point].Value)
            painter.drawLine(PlaceOf(point - 1), PlaceOf(point));
    painter.setPen(Qt::NoPen);
    for (std::size_t point = 0; point < m_points.size(); ++point) {
        if (!m_points[point].Value) continue;
        painter.setBrush(m_points[point].IsOver ? ColourOf(State::Over, false, palette())
                                                : FigureColour(palette()));
        if (m_points[point].IsOver)
            painter.drawPath(Triangle(PlaceOf(point)));
        else
            painter.drawEllipse(PlaceOf(point), PointSize, PointSize);
    }
}

void OverviewChart::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRectF(rect()).adjusted(PointSize, 0, -PointSize, 0), Qt::AlignTop | Qt::AlignHCenter,
                     fontMetrics().elidedText(m_title, Qt::ElideRight, width() - 2 * int(PointSize)));
    DrawLimit(painter);
    DrawMonths(painter);
    DrawPoints(painter);
}

bool OverviewChart::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || m_points.empty()) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    std::size_t nearest = 0;
    for (std::size_t point = 1; point < m_points.size(); ++point)
        if (std::abs(PlaceOf(point).x() - help->pos().x()) < std::abs(PlaceOf(nearest).x() - help->pos().x()))
            nearest = point;
    QToolTip::showText(help->globalPos(), TextOf(m_points[nearest]), this);
    return true;
}
} // namespace mact
