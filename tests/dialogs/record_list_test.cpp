#include "dialogs/dialog_routines.h"
#include "dialogs/record_list.h"

#include <QAccessible>
#include <QPainter>
#include <QTest>

namespace mact {
namespace {

/// What the list paints, with a background of its own.
QImage Painted(QWidget& list) {
    return list.grab().toImage();
}

/// Whether anything but the background is in that part of the picture.
bool HasInk(const QImage& picture, const QRect& part) {
    const QRgb background = picture.pixel(part.topLeft());
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (picture.pixel(x, y) != background) return true;
    return false;
}

} // namespace

class record_list_test : public QObject {
    Q_OBJECT

private slots:
    void A_detail_is_drawn_at_the_right_end_and_is_no_part_of_the_text() {
        RecordList list;
        list.resize(400, 200);
        ShowLines(list,
                  {
                      {"PF-402 (11/2026)", 1},
                      {"PF-7 (11/2026)",   2}
        },
                  {QStringLiteral("402 lbs"), QString()});
        list.show();
        QCOMPARE(list.item(0)->text(), QStringLiteral("PF-402 (11/2026)"));
        const QImage picture = Painted(*list.viewport());
        const auto rightEnd = [&](int row) {
            const QRect line = list.visualItemRect(list.item(row));
            return QRect(line.right() - 60, line.top() + 1, 58, line.height() - 2);
        };
        QVERIFY(HasInk(picture, rightEnd(0)));
        QVERIFY(!HasInk(picture, rightEnd(1)));
    }

    void Screen_readers_read_the_detail_after_the_text() {
        RecordList list;
        ShowLines(list,
                  {
                      {"PF-402 (11/2026)", 1},
                      {"PF-7 (11/2026)",   2}
        },
                  {QStringLiteral("402 lbs"), QString()});
        list.show();
        QAccessibleInterface* const lines = QAccessible::queryAccessibleInterface(&list);
        QVERIFY(lines && lines->tableInterface());
        QCOMPARE(lines->tableInterface()->cellAt(0, 0)->text(QAccessible::Name),
                 QStringLiteral("PF-402 (11/2026), 402 lbs"));
        QCOMPARE(lines->tableInterface()->cellAt(1, 0)->text(QAccessible::Name),
                 QStringLiteral("PF-7 (11/2026)"));
    }

    void A_long_line_can_be_scrolled_to_its_detail() {
        RecordList list;
        list.resize(200, 200);
        ShowLines(list,
                  {
                      {std::string(100, 'W'), 1}
        },
                  {QStringLiteral("402 lbs")});
        list.show();
        const int textWidth = list.fontMetrics().horizontalAdvance(QString(100, u'W'));
        QVERIFY(list.visualItemRect(list.item(0)).width() >=
                textWidth + list.fontMetrics().horizontalAdvance(QStringLiteral("402 lbs")));
    }

    void An_empty_list_says_what_to_do_without_an_entry() {
        RecordList list;
        list.resize(300, 200);
        list.show();
        QVERIFY(!HasInk(Painted(*list.viewport()), list.viewport()->rect()));
        list.SetEmptyText(QStringLiteral("No materials yet."));
        QVERIFY(HasInk(Painted(*list.viewport()), list.viewport()->rect()));
        QCOMPARE(list.count(), 0);
        ShowLines(list, {
                            {"", 1}
        });
        list.setCurrentRow(-1);
        QVERIFY(!HasInk(Painted(*list.viewport()), list.viewport()->rect().adjusted(0, 40, 0, 0)));
    }

    void A_line_that_only_has_the_focus_does_not_look_selected() {
        RecordList list;
        list.resize(300, 200);
        ShowLines(list, {
                            {"GC-1", 1},
                            {"GC-2", 2}
        });
        list.show();
        QApplication::setActiveWindow(&list);
        list.setFocus();
        list.setCurrentRow(0, QItemSelectionModel::NoUpdate);
        QVERIFY(list.hasFocus());
        const QRect line = list.visualItemRect(list.item(0));
        const QColor inside = Painted(*list.viewport()).pixelColor(line.right() - 10, line.center().y());
        QCOMPARE(inside, list.palette().color(QPalette::Base));
        list.setCurrentRow(0);
        QVERIFY(Painted(*list.viewport()).pixelColor(line.right() - 10, line.center().y()) != inside);
    }
};
} // namespace mact

QTEST_MAIN(mact::record_list_test)
#include "record_list_test.moc"
