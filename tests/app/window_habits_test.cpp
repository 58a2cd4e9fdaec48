#include "app/frm_main.h"
#include "lists/frm_list.h"
#include "reports/frm_reports.h"
#include "store/frm_company.h"
#include "tests/support/test_program.h"
#include "tests/support/windows.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <map>
#include <memory>

/// What every window does alike, so that the keyboard and a screen reader can work with it.
class window_habits_test : public QObject {
    Q_OBJECT

    TestProgram m_program;
    std::vector<std::unique_ptr<QWidget>> m_windows;

    static QString Place(const QWidget& window, const QWidget& control) {
        return window.objectName() + u'.' + control.objectName();
    }

    /// The controls that a user works with, as the window's form names them.
    static QList<QWidget*> Controls(const QWidget& window) {
        QList<QWidget*> controls;
        for (auto* control : window.findChildren<QWidget*>())
            if (qobject_cast<QAbstractButton*>(control) || qobject_cast<QComboBox*>(control) ||
                qobject_cast<QListWidget*>(control) ||
                (qobject_cast<QLineEdit*>(control) && !qobject_cast<QComboBox*>(control->parentWidget())))
                controls << control;
        return controls;
    }

private slots:
    void initTestCase() {
        AppContext& app = m_program.App;
        m_windows.push_back(std::make_unique<frmMain>(app));
        m_windows.push_back(std::make_unique<frmCompany>(app, nullptr));
        m_windows.push_back(std::make_unique<frmList>(app, nullptr));
        m_windows.push_back(std::make_unique<frmImport>(app, TransferModule::Materials, nullptr));
        m_windows.push_back(std::make_unique<frmExport>(app, TransferModule::Usage, nullptr));
        m_windows.push_back(std::make_unique<frmReports>(app, nullptr));
    }

    void Every_control_has_a_name_of_its_own() {
        for (const auto& window : m_windows) {
            QStringList names;
            for (const QWidget* control : Controls(*window))
                names << control->objectName();
            QVERIFY2(!names.contains(QString()), qPrintable(window->objectName()));
            QCOMPARE(names.removeDuplicates(), 0);
        }
    }

    void Every_control_says_what_it_is() {
        for (const auto& window : m_windows)
            for (const QWidget* control : Controls(*window)) {
                const auto* button = qobject_cast<const QAbstractButton*>(control);
                QVERIFY2(!control->accessibleName().isEmpty() || (button && !button->text().isEmpty()),
                         qPrintable(Place(*window, *control)));
            }
    }

    void No_accelerator_occurs_twice_in_a_window() {
        for (const auto& window : m_windows) {
            std::map<QString, QString> owners;
            for (const auto* button : window->findChildren<QAbstractButton*>()) {
                const QString letter = QKeySequence::mnemonic(button->text()).toString();
                if (letter.isEmpty() || button->isHidden()) continue;
                QVERIFY2(owners.emplace(letter, button->objectName()).second,
                         qPrintable(Place(*window, *button) + u' ' + letter));
            }
        }
    }

    void A_label_before_a_field_is_its_buddy() {
        for (const auto& window : m_windows)
            for (const auto* label : window->findChildren<QLabel*>())
                if (label->text().endsWith(u':'))
                    QVERIFY2(label->buddy(), qPrintable(Place(*window, *label)));
    }

    void Labels_show_plain_text() {
        for (const auto& window : m_windows)
            for (const auto* label : window->findChildren<QLabel*>())
                QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(Place(*window, *label)));
    }

    void At_most_one_button_of_a_dialog_is_the_default() {
        for (const auto& window : m_windows) {
            int defaults = 0;
            for (const auto* button : window->findChildren<QPushButton*>())
                if (button->isDefault()) ++defaults;
            QVERIFY2(defaults <= 1, qPrintable(window->objectName()));
        }
    }

    void No_button_of_a_dialog_becomes_the_default_by_itself() {
        for (const auto& window : m_windows) {
            if (!qobject_cast<QDialog*>(window.get())) continue; // Enter presses a button of the main window
            for (const auto* button : window->findChildren<QPushButton*>())
                QVERIFY2(!button->autoDefault(), qPrintable(Place(*window, *button)));
        }
    }
};

QTEST_MAIN(window_habits_test)
#include "window_habits_test.moc"
