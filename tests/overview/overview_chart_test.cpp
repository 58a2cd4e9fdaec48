#include "overview/overview_chart.h"

#include <QImage>
#include <QTest>

namespace mact {
namespace {

/// How high the writing beside the plot is, from its first line of pixels to its last.
int HeightOfAxisLabels(OverviewChart& chart) {
    const QImage picture = chart.grab().toImage();
    const int width = chart.fontMetrics().horizontalAdvance(QStringLiteral("100 % ")) - 5;
    const QRgb background = picture.pixel(0, picture.height() - 1);
    int first = -1;
    int last = -1;
    for (int y = 2 * chart.fontMetrics().height(); y < picture.height(); ++y)
        for (int x = 0; x < width; ++x)
            if (picture.pixel(x, y) != background) {
                if (first < 0) first = y;
                last = y;
            }
    return last - first + 1;
}

} // namespace

class overview_chart_test : public QObject {
    Q_OBJECT

private slots:
    void The_limit_and_the_lowest_value_are_never_written_over_each_other() {
        OverviewChart chart;
        chart.resize(600, 10 * chart.fontMetrics().height());
        const auto show = [&](double highest) {
            chart.Show(QStringLiteral("t"), {
                                                {QString(),                  50     },
                                                {QStringLiteral("DEC 2005"), highest}
            });
        };
        show(110); // from 40 to 115 %: the limit is 60 of 75 parts above the lowest
        QVERIFY(HeightOfAxisLabels(chart) > 2 * chart.fontMetrics().height());
        show(635); // 60 of 600 parts of seven lines, that is 0.7 of a line
        QVERIFY(HeightOfAxisLabels(chart) <= chart.fontMetrics().height());
    }
};
} // namespace mact

QTEST_MAIN(mact::overview_chart_test)
#include "overview_chart_test.moc"
