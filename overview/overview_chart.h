#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

namespace mact {

/// A month end in the chart.
struct ChartPoint {
    QString Month{};               ///< as in "DEC 2005"
    std::optional<double> Value{}; ///< percent of the limit; empty = none, which leaves a gap
    QString Text{};                ///< the value in words, as in "99.0 %, within"
    bool IsOver = false;           ///< drawn as a triangle, and in another colour
};

/// A line of figures in percent of their limit, with the limit as a line of its own. Drawn in the window's
/// colours.
class OverviewChart : public QWidget {
    Q_OBJECT

public:
    explicit OverviewChart(QWidget* parent = nullptr);
    /// `title` says what the values are.
    void Show(const QString& title, std::vector<ChartPoint> points);
    /// As it is on paper: in light colours, and sharp when it is printed.
    QImage Picture() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRectF PlotArea() const;
    double LeastShown() const;
    double MostShown() const;
    /// How high a value stands in the plot, from 0 to 1.
    double ShareOf(double value) const;
    QPointF PlaceOf(std::size_t point) const;
    void DrawLimit(QPainter& painter) const;
    void DrawMonths(QPainter& painter) const;
    void DrawPoints(QPainter& painter) const;
    QString TextOf(const ChartPoint& point) const;

    QString m_title;
    std::vector<ChartPoint> m_points;
};
} // namespace mact
