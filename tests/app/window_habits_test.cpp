#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/elided_label.h"
#include "dialogs/link_label.h"
#include "tests/support/sample_shop.h"
#include "tests/support/window_rows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QTest>
#include <QTextEdit>

#include <map>

namespace mact {
namespace {

/// A screen of 1920x1080 at 200 %, less a task bar.
constexpr QSize SmallestScreen{960, 500};
/// A screen of 1024x768, less a window's title bar.
constexpr QSize OldScreen{1024, 738};

QString Place(const QWidget& control) {
    return control.metaObject()->className() + QStringLiteral(" ") + control.objectName();
}

QString Numbers(int first, int second) {
    return QStringLiteral("%1, %2").arg(first).arg(second);
}

QString Mnemonic(const QString& text) {
    return QKeySequence::mnemonic(text).toString();
}

/// The letter in the sequence of an Alt key.
char Letter(const QString& mnemonic) {
    return mnemonic.back().toLatin1();
}

/// The controls of the window itself, without those of a window opened from it.
template <class T> QList<T*> Own(const QWidget& window) {
    QList<T*> own;
    for (auto* control : window.findChildren<T*>())
        if (control->window() == &window) own << control;
    return own;
}

template <class T> QList<T*> VisibleIn(const QWidget& window) {
    QList<T*> visible;
    for (auto* control : Own<T>(window))
        if (control->isVisibleTo(&window)) visible << control;
    return visible;
}

bool IsValue(const QWidget& control) {
    const auto* label = qobject_cast<const QLabel*>(&control);
    return label && IsCopyable(*label) && !label->text().isEmpty();
}

/// The controls that a user works with, named as in the window's form.
QList<QWidget*> Controls(const QWidget& window) {
    QList<QWidget*> controls;
    for (auto* control : Own<QWidget>(window)) {
        if (qobject_cast<QAbstractItemView*>(control->parentWidget())) continue; // a part of the view
        if (qobject_cast<QAbstractButton*>(control) || qobject_cast<QComboBox*>(control) ||
            qobject_cast<QAbstractItemView*>(control) || qobject_cast<QPlainTextEdit*>(control) ||
            qobject_cast<QTextEdit*>(control) || qobject_cast<LinkLabel*>(control) || IsValue(*control) ||
            (qobject_cast<QLineEdit*>(control) && !qobject_cast<QComboBox*>(control->parentWidget())))
            controls << control;
    }
    return controls;
}

bool IsReachedByArrows(const QWidget& control) {
    return qobject_cast<const QRadioButton*>(&control) && !(control.focusPolicy() & Qt::TabFocus);
}

/// The text box of an editable combo box counts as the combo box.
QWidget* ControlWithFocus(const QWidget& window) {
    QWidget* focus = window.focusWidget();
    if (!focus) return nullptr;
    auto* combo = qobject_cast<QComboBox*>(focus->parentWidget());
    return combo ? combo : focus;
}

QStringList NamesOf(const QList<QWidget*>& controls) {
    QStringList names;
    for (const QWidget* control : controls)
        names << control->objectName();
    return names;
}

QList<QWidget*> TabOrder(QWidget& window, const QList<QWidget*>& expected) {
    QList<QWidget*> reached;
    for (qsizetype step = 0; step < expected.size(); ++step) {
        const QWidget* before = ControlWithFocus(window);
        int keys = 0; // a page has links, which Tab reaches one by one
        do
            QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Tab);
        while (ControlWithFocus(window) == before && ++keys < 100);
        reached << ControlWithFocus(window);
    }
    return reached;
}

/// Whether `second` comes after `first` when read line by line.
bool IsReadAfter(const QWidget& first, const QWidget& second) {
    const QRect before(first.mapToGlobal(QPoint(0, 0)), first.size());
    const QRect after(second.mapToGlobal(QPoint(0, 0)), second.size());
    const bool isSameLine = after.center().y() < before.bottom() && after.center().y() > before.top();
    return isSameLine ? after.left() > before.left() : after.top() > before.top();
}

bool Fits(const QSize& text, const QWidget& control) {
    return text.width() <= control.width() && text.height() <= control.height();
}

bool IsWholeLabel(const QLabel& label) {
    if (qobject_cast<const ElidedLabel*>(&label)) return label.height() >= label.sizeHint().height();
    if (label.text().isEmpty()) return true;
    if (label.wordWrap()) return label.heightForWidth(label.width()) <= label.height();
    return Fits(label.sizeHint(), label);
}

bool IsWholeChoice(const QComboBox& combo) {
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = combo.isEditable();
    const QRect room =
        combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
    const int textMargins = combo.isEditable() ? 6 : 0;
    return combo.fontMetrics().horizontalAdvance(combo.currentText()) + textMargins <= room.width() &&
           combo.sizeHint().height() <= combo.height();
}

/// The controls whose text is partly cut off.
QStringList CutOff(const QWidget& window) {
    QStringList names;
    for (const auto* label : VisibleIn<QLabel>(window))
        if (!IsWholeLabel(*label)) names << Place(*label);
    for (const auto* button : VisibleIn<QAbstractButton>(window))
        if (!Fits(button->sizeHint(), *button)) names << Place(*button);
    for (const auto* combo : VisibleIn<QComboBox>(window))
        if (!IsWholeChoice(*combo)) names << Place(*combo);
    for (const auto* group : VisibleIn<QGroupBox>(window))
        if (!Fits(group->minimumSizeHint(), *group)) names << Place(*group);
    return names;
}

void MakeAsSmallAsPossible(QWidget& window) {
    window.resize(1, 1);
    QCoreApplication::processEvents();
}

/// Larger letters for as long as it lives.
class LargerFont {
public:
    explicit LargerFont(double factor) {
        QFont font = m_before;
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
    }
    LargerFont(const LargerFont&) = delete;
    LargerFont& operator=(const LargerFont&) = delete;
    ~LargerFont() { QApplication::setFont(m_before); }

private:
    QFont m_before = QApplication::font();
};

} // namespace

/// What all windows have in common, so that they work with the keyboard, with a screen reader and on every
/// screen. Each test runs over AllWindows() (tests/support).
class window_habits_test : public QObject {
    Q_OBJECT

    SampleShop m_shop;

    static void EachWindow() { AddRows(AllWindows()); }

    void InThisWindow(const std::function<void(QWidget&)>& act, QWidget* parent = nullptr) {
        QFETCH(const int, row);
        m_shop.Restore();
        InWindow(AllWindows()[static_cast<std::size_t>(row)], m_shop.App, parent, act);
    }

private slots:
    void Every_control_has_a_name_of_its_own_data() { EachWindow(); }
    void Every_control_has_a_name_of_its_own() {
        InThisWindow([](const QWidget& window) {
            QStringList names = NamesOf(Controls(window));
            QVERIFY(!names.contains(QString()));
            QCOMPARE(names.removeDuplicates(), 0);
        });
    }

    void Every_control_says_what_it_is_data() { EachWindow(); }
    void Every_control_says_what_it_is() {
        InThisWindow([](const QWidget& window) {
            for (const QWidget* control : Controls(window)) {
                const auto* button = qobject_cast<const QAbstractButton*>(control);
                QVERIFY2(!control->accessibleName().isEmpty() || (button && !button->text().isEmpty()) ||
                             IsValue(*control), // whose text is what it is
                         qPrintable(Place(*control)));
            }
        });
    }

    void A_label_before_a_field_is_its_buddy_data() { EachWindow(); }
    void A_label_before_a_field_is_its_buddy() {
        InThisWindow([](const QWidget& window) {
            for (const auto* label : Own<QLabel>(window))
                if (label->text().endsWith(u':')) QVERIFY2(label->buddy(), qPrintable(Place(*label)));
        });
    }

    void Every_button_and_every_field_has_an_accelerator_data() { EachWindow(); }
    void Every_button_and_every_field_has_an_accelerator() {
        InThisWindow([](const QWidget& window) {
            for (const auto* button : VisibleIn<QAbstractButton>(window))
                QVERIFY2(!Mnemonic(button->text()).isEmpty(), qPrintable(Place(*button)));
            for (const auto* label : VisibleIn<QLabel>(window))
                if (label->buddy()) QVERIFY2(!Mnemonic(label->text()).isEmpty(), qPrintable(Place(*label)));
        });
    }

    void No_accelerator_occurs_twice_in_a_window_data() { EachWindow(); }
    void No_accelerator_occurs_twice_in_a_window() {
        InThisWindow([](const QWidget& window) {
            QStringList texts;
            for (const auto* button : VisibleIn<QAbstractButton>(window))
                texts << button->text();
            for (const auto* label : VisibleIn<QLabel>(window))
                if (label->buddy()) texts << label->text();
            for (const auto* group : VisibleIn<QGroupBox>(window))
                texts << group->title();
            std::map<QString, QString> owners;
            for (const QString& text : texts) {
                const QString letter = Mnemonic(text);
                const auto [owner, isNew] = owners.emplace(letter, text);
                QVERIFY2(isNew || letter.isEmpty(), qPrintable(owner->second + u'|' + text));
            }
        });
    }

    void The_accelerator_of_a_label_focuses_its_field_data() { EachWindow(); }
    void The_accelerator_of_a_label_focuses_its_field() {
        InThisWindow([](QWidget& window) {
            QVERIFY(QTest::qWaitForWindowActive(&window));
            for (const auto* label : VisibleIn<QLabel>(window)) {
                if (!label->buddy() || !label->buddy()->isEnabled()) continue;
                QTest::keyClick(&window, Letter(Mnemonic(label->text())), Qt::AltModifier);
                QCOMPARE(ControlWithFocus(window)->objectName(), label->buddy()->objectName());
            }
        });
    }

    void Labels_show_plain_text_data() { EachWindow(); }
    void Labels_show_plain_text() {
        InThisWindow([](const QWidget& window) {
            for (const auto* label : Own<QLabel>(window))
                QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(Place(*label)));
        });
    }

    void At_most_one_button_of_a_dialog_is_the_default_data() { EachWindow(); }
    void At_most_one_button_of_a_dialog_is_the_default() {
        InThisWindow([](const QWidget& window) {
            int defaults = 0;
            for (const auto* button : Own<QPushButton>(window))
                if (button->isDefault()) ++defaults;
            QVERIFY(defaults <= 1);
        });
    }

    void No_button_of_a_dialog_becomes_the_default_by_itself_data() { EachWindow(); }
    void No_button_of_a_dialog_becomes_the_default_by_itself() {
        InThisWindow([](const QWidget& window) {
            if (!qobject_cast<const QDialog*>(&window)) return; // in the main window, buttons do
            for (const auto* button : Own<QPushButton>(window))
                QVERIFY2(!button->autoDefault(), qPrintable(Place(*button)));
        });
    }

    void Enter_presses_the_button_that_has_the_focus_data() { EachWindow(); }
    void Enter_presses_the_button_that_has_the_focus() {
        InThisWindow([](QWidget& window) {
            QStringList pressed;
            for (auto* button : Own<QAbstractButton>(window)) {
                QObject::disconnect(button, &QAbstractButton::clicked, nullptr, nullptr); // its real work
                QObject::connect(button, &QAbstractButton::clicked, &window,
                                 [&pressed, button] { pressed << button->objectName(); });
            }
            for (auto* button : VisibleIn<QAbstractButton>(window)) {
                if (!button->isEnabled() || button->isCheckable()) continue;
                pressed.clear();
                QTest::keyClick(button, Qt::Key_Return);
                QTest::keyClick(button, Qt::Key_Enter, Qt::KeypadModifier);
                QCOMPARE(pressed, QStringList({button->objectName(), button->objectName()}));
            }
        });
    }

    void Every_window_with_data_of_a_company_names_it_data() { EachWindow(); }
    void Every_window_with_data_of_a_company_names_it() {
        InThisWindow([this](const QWidget& window) {
            // Of all companies, or of none. Configuration and its restore are of the program.
            static const QStringList ofNone{"frmAbout",  "frm_EmissionFactorHelp", "frmOverviewHelp",
                                            "frmConfig", "frmMaterialTypes",       "frmRestore"};
            if (ofNone.contains(window.objectName()) || m_shop.App.CurrentCompanyId == 0) return;
            QStringList texts;
            for (const auto* label : VisibleIn<QLabel>(window))
                texts << label->text();
            const QString company = FromCodePage(m_shop.App.CurrentCompanyName);
            QVERIFY(!company.isEmpty());
            QVERIFY2(!texts.filter(company).isEmpty(), qPrintable(texts.join(u'|')));
        });
    }

    void Escape_closes_every_dialog_data() { EachWindow(); }
    void Escape_closes_every_dialog() {
        InThisWindow([](QWidget& window) {
            if (!qobject_cast<QDialog*>(&window)) return;
            QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
    }

    void Tab_reaches_every_control_once_data() { EachWindow(); }
    void Tab_reaches_every_control_once() {
        InThisWindow([](QWidget& window) {
            QList<QWidget*> expected;
            for (QWidget* control : Controls(window))
                if (control->isVisibleTo(&window) && control->isEnabled() && !IsReachedByArrows(*control))
                    expected << control;
            QStringList names = NamesOf(expected);
            QStringList reached = NamesOf(TabOrder(window, expected));
            names.sort();
            reached.sort();
            QCOMPARE(reached.join(u' '), names.join(u' '));
        });
    }

    void Tab_goes_through_the_fields_as_they_are_read_data() { EachWindow(); }
    void Tab_goes_through_the_fields_as_they_are_read() {
        InThisWindow([](QWidget& window) {
            std::map<QWidget*, QWidget*> lastOfParent; // each frame is read by itself
            QWidget* control = &window;
            while ((control = control->nextInFocusChain()) != &window) {
                if (!Controls(window).contains(control) || !control->isVisibleTo(&window)) continue;
                if (qobject_cast<QAbstractButton*>(control)) continue; // may stand beside its field
                if (IsValue(*control)) continue;                       // comes after what can be changed
                QWidget*& last = lastOfParent[control->parentWidget()];
                QVERIFY2(!last || IsReadAfter(*last, *control), qPrintable(Place(*control)));
                last = control;
            }
        });
    }

    void Values_in_labels_can_be_reached_and_copied_by_keyboard_data() { EachWindow(); }
    void Values_in_labels_can_be_reached_and_copied_by_keyboard() {
        // The labels that show an address, a value or an outcome. Not among them: captions, hints that screen
        // readers say with their field, and what stands in a box or a list, where it can be copied too.
        static const QStringList values{"lbl_Company",   "lbl_CurrentCompany", "lbl_LastReport",
                                        "lbl_status",    "lbl_Remarks",        "lbl_Sums",
                                        "lbl_Outlook",   "lbl_Saved",          "lbl_Value",
                                        "lbl_Due",       "lbl_Made",           "lbl_Today",
                                        "lbl_BreakEven", "lbl_Newest",         "lbl_NotUnderstood",
                                        "lbl_Answer1",   "lbl_Answer2",        "lbl_Answer3",
                                        "lbl_Version",   "lbl_DataFolder",     "lbl_info",
                                        "lbl_url",       "lbl_Status",         "lbl_Backup"};
        InThisWindow([](QWidget& window) {
            QApplication::setActiveWindow(&window);
            for (auto* label : VisibleIn<QLabel>(window)) {
                QCOMPARE(IsCopyable(*label), values.contains(label->objectName()));
                if (!IsValue(*label)) continue;
                for (int keys = 0; !label->hasFocus() && keys < 100; ++keys)
                    QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Tab);
                QVERIFY2(label->hasFocus(), qPrintable(Place(*label)));
                QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
                QCOMPARE(QGuiApplication::clipboard()->text(),
                         label->text().remove(u'\u200b').replace(QLatin1String("\r\n"), QLatin1String("\n")));
            }
        });
    }

    void No_copyable_label_has_the_focus_at_first_data() { EachWindow(); }
    void No_copyable_label_has_the_focus_at_first() {
        InThisWindow([](QWidget& window) {
            QApplication::setActiveWindow(&window);
            QVERIFY(window.focusWidget() && !IsValue(*window.focusWidget()));
        });
    }

    void Every_window_fits_on_the_smallest_screen_data() { EachWindow(); }
    void Every_window_fits_on_the_smallest_screen() {
        InThisWindow([](QWidget& window) {
            MakeAsSmallAsPossible(window);
            const QSize size = window.size();
            QVERIFY2(size.boundedTo(SmallestScreen) == size,
                     qPrintable(Numbers(size.width(), size.height())));
        });
    }

    void Every_window_opens_no_larger_than_an_old_screen_data() { EachWindow(); }
    void Every_window_opens_no_larger_than_an_old_screen() {
        InThisWindow([](const QWidget& window) {
            const QSize size = window.size();
            QVERIFY2(size.boundedTo(OldScreen) == size, qPrintable(Numbers(size.width(), size.height())));
        });
    }

    void No_text_is_cut_off_data() { EachWindow(); }
    void No_text_is_cut_off() {
        for (const double factor : {1.0, 1.5}) {
            const LargerFont font(factor);
            InThisWindow([](QWidget& window) {
                QCOMPARE(CutOff(window).join(QLatin1String(", ")), QString());
                MakeAsSmallAsPossible(window);
                QCOMPARE(CutOff(window).join(QLatin1String(", ")), QString());
            });
        }
    }

    void A_text_that_is_too_wide_can_be_scrolled_data() { EachWindow(); }
    void A_text_that_is_too_wide_can_be_scrolled() {
        InThisWindow([](const QWidget& window) {
            for (const auto* edit : VisibleIn<QPlainTextEdit>(window)) {
                int widest = 0;
                for (const QString& line : edit->toPlainText().split(u'\n'))
                    widest = std::max(widest, edit->fontMetrics().horizontalAdvance(line));
                const QScrollBar& bar = *edit->horizontalScrollBar();
                QVERIFY(widest <= edit->viewport()->width() || bar.isVisible());
                QVERIFY(widest <= edit->viewport()->width() + bar.maximum());
            }
        });
    }

    void A_window_opens_in_the_middle_of_the_one_below_data() { EachWindow(); }
    void A_window_opens_in_the_middle_of_the_one_below() {
        QWidget below;
        below.setGeometry(below.screen()->availableGeometry().adjusted(20, 20, -20, -20));
        below.show();
        InThisWindow(
            [&below](const QWidget& window) {
                if (!qobject_cast<const QDialog*>(&window)) return;
                const QPoint offset = window.geometry().center() - below.geometry().center();
                QVERIFY2(offset.manhattanLength() <= 8, qPrintable(Numbers(offset.x(), offset.y())));
            },
            &below);
    }
};
} // namespace mact

QTEST_MAIN(mact::window_habits_test)
#include "window_habits_test.moc"
