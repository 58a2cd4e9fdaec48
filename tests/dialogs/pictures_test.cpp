#include "dialogs/pictures.h"

#include <QApplication>
#include <QPalette>
#include <QTest>

namespace mact {
namespace {

/// Four times its drawing's size. There, the wall of the drum of "materials" goes down at x 5 of 24, and the
/// lowest point of its coloured level is at 12, 13.9.
QImage Drum(QIcon::Mode mode = QIcon::Normal) {
    return LineIcon(QStringLiteral("materials")).pixmap(QSize(96, 96), mode).toImage();
}
constexpr QPoint Wall{20, 40};
constexpr QPoint Level{48, 55};

void SetColours(const char* button, const char* text, const char* disabledText) {
    QPalette palette;
    palette.setColor(QPalette::Button, QLatin1String(button));
    palette.setColor(QPalette::ButtonText, QLatin1String(text));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QLatin1String(disabledText));
    QApplication::setPalette(palette);
}

} // namespace

class pictures_test : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void A_line_drawing_has_the_colour_of_the_text_and_one_of_its_own() {
        SetColours("#f0f0f0", "#102030", "#808080");
        QCOMPARE(Drum().pixelColor(Wall), QColor("#102030"));
        QCOMPARE(Drum().pixelColor(Level), QColor("#1f7a8c"));
        QCOMPARE(Drum().pixelColor(48, 80).alpha(), 0);
    }

    void In_the_dark_its_own_colour_is_lighter() {
        SetColours("#303030", "#f0e0d0", "#808080");
        QCOMPARE(Drum().pixelColor(Wall), QColor("#f0e0d0"));
        QCOMPARE(Drum().pixelColor(Level), QColor("#5cc3d8"));
    }

    void Disabled_it_has_one_colour() {
        SetColours("#f0f0f0", "#102030", "#818283");
        QCOMPARE(Drum(QIcon::Disabled).pixelColor(Wall), QColor("#818283"));
        QCOMPARE(Drum(QIcon::Disabled).pixelColor(Level), QColor("#818283"));
    }

    void An_icon_follows_a_change_of_the_colours() {
        SetColours("#f0f0f0", "#102030", "#808080");
        const QIcon icon = LineIcon(QStringLiteral("materials"));
        QCOMPARE(icon.pixmap(QSize(96, 96)).toImage().pixelColor(Wall), QColor("#102030"));
        SetColours("#303030", "#f0e0d0", "#808080");
        QCOMPARE(icon.pixmap(QSize(96, 96)).toImage().pixelColor(Wall), QColor("#f0e0d0"));
    }

    void At_any_scale_a_line_drawing_has_all_the_pixels_there_are() {
        const QPixmap pixmap = LineIcon(QStringLiteral("usage")).pixmap(QSize(20, 20), 3.0);
        QCOMPARE(pixmap.size(), QSize(60, 60));
        QCOMPARE(pixmap.devicePixelRatio(), 3.0);
    }

    void At_three_times_its_size_nothing_is_enlarged() {
        QCOMPARE(MainPicture().actualSize(QSize(1680, 570)), QSize(1680, 570));
        QCOMPARE(EmblemIcon().actualSize(QSize(216, 216)), QSize(216, 216)); // 72 in frmAbout
        for (const char* name : {"information", "exclamation", "failure", "question"}) {
            const QIcon icon = ColouredIcon(QStringLiteral("message_") + QLatin1String(name));
            QCOMPARE(icon.actualSize(QSize(144, 144)), QSize(144, 144)); // 48 in a message box
        }
    }

    void The_emblem_is_drawn_for_each_size_that_a_desktop_shows() {
        const QList<QSize> sizes = EmblemIcon().availableSizes();
        for (const int size : {16, 20, 24, 32, 40, 48, 64, 96, 128, 256})
            QVERIFY2(sizes.contains(QSize(size, size)), qPrintable(QString::number(size)));
    }

    void A_view_fills_itself_with_its_picture() {
        PictureView view;
        view.resize(560, 190);
        QPixmap red(560, 190);
        red.fill(Qt::red);
        view.SetPicture(QIcon(red));
        const QImage shown = view.grab().toImage();
        for (const QPoint& corner : {QPoint(0, 0), QPoint(559, 0), QPoint(0, 189), QPoint(559, 189)})
            QCOMPARE(shown.pixelColor(corner), QColor(Qt::red));
    }
};
} // namespace mact

QTEST_MAIN(mact::pictures_test)
#include "pictures_test.moc"
