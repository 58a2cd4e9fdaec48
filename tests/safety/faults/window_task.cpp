// window_task TASK FOLDER: does one task in the program's windows, as a user would, in the shop of the tests
// of system-call faults. Each message goes to a line of its own: a failure to the error output, what else is
// told to the standard output; questions are answered so that the task goes on. After a failure the user
// stops, and the program ends with status 1.

#include "app/frm_config.h"
#include "app/frm_main.h"
#include "app/frm_restore.h"
#include "app/startup.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "lists/frm_list.h"
#include "lists/frm_month_sheet.h"
#include "lists/sheet_view.h"
#include "materials/frm_material.h"
#include "platform/os_files.h"
#include "platform/qt_clock.h"
#include "platform/qt_file_dialogs.h"
#include "platform/qt_programs.h"
#include "platform/qt_prompts.h"
#include "platform/qt_settings.h"
#include "reports/frm_reports.h"
#include "store/frm_company.h"
#include "store/frm_extra_pollutants_names.h"
#include "tests/support/gui.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTableWidget>

#include <functional>
#include <iostream>
#include <map>

using namespace mact;

namespace {

bool hasFailed = false;

std::string InOneLine(QString text) {
    return text.replace(u'\n', u' ').toStdString();
}

/// Writes down what each message box says and gives the answer that goes on with the task.
class MessageReader : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const box = qobject_cast<QMessageBox*>(watched);
        if (box && event->type() == QEvent::Show) QTimer::singleShot(0, box, [box] { Answer(*box); });
        return QObject::eventFilter(watched, event);
    }

private:
    static void Answer(QMessageBox& box) {
        const bool isRefusal = box.text().startsWith(QLatin1String("Error(s) found"));
        const bool isFailure =
            isRefusal || box.icon() == QMessageBox::Critical || box.icon() == QMessageBox::Warning;
        if (box.icon() != QMessageBox::Question)
            (isFailure ? std::cerr : std::cout) << InOneLine(box.text().trimmed()) << '\n';
        hasFailed = hasFailed || isFailure;
        const bool hasCancel =
            box.button(QMessageBox::Cancel) != nullptr; // a backup without a folder of its own
        for (const auto button : {hasCancel ? QMessageBox::No : QMessageBox::Yes, QMessageBox::Ok})
            if (box.button(button)) box.button(button)->click();
    }
};

/// Passes the next modal window to `act` once the message boxes before it are answered, unless one of them
/// was of a failure; then closes it.
template <class W, class Act> void InNext(Act act) {
    QTimer::singleShot(0, qApp, [act] {
        QWidget* const modal = QApplication::activeModalWidget();
        if (qobject_cast<QMessageBox*>(modal)) {
            InNext<W>(act);
            return;
        }
        const QPointer<W> window = qobject_cast<W*>(modal);
        if (!window && hasFailed) return; // it did not open
        if (!window) qFatal("The expected window %s is not open", W::staticMetaObject.className());
        if (!hasFailed) act(*window);
        if (window && window->isVisible()) window->close();
    });
}

void Click(const QObject& window, const char* button) {
    Named<QAbstractButton>(window, button).click();
}
void Type(const QObject& window, const char* edit, const QString& text) {
    Named<QLineEdit>(window, edit).setText(text);
}
void Choose(const QObject& window, const char* combo, const char* text) {
    Named<QComboBox>(window, combo).setCurrentText(QString::fromLatin1(text));
}
void ChooseRow(const QObject& window, const char* list, int row) {
    Named<QListWidget>(window, list).setCurrentRow(row);
}
void Tell(const QObject& window, const char* label) {
    std::cout << InOneLine(Named<QLabel>(window, label).text()) << '\n';
}

/// The open main window, and the shop's folder.
struct Shop {
    frmMain& Main;
    QString Folder;
};

/// Does something in the list of materials or usage.
template <class Act> void InList(const Shop& shop, const char* button, Act act) {
    InNext<frmList>(act);
    Click(shop.Main, button);
}

void FillMaterial(frmMaterial& window) {
    Type(window, "txt_CustomId", QStringLiteral("N-9"));
    Type(window, "txt_Description", QStringLiteral("a new resin"));
    Choose(window, "cbo_MaterialType", "Production resin");
    if (hasFailed) return; // the methods of the type could not be listed
    Choose(window, "cbo_ApplicationType", "Spray");
    Type(window, "txt_density", QStringLiteral("9.1"));
    Type(window, "txt_HapContents", QStringLiteral("27"));
    Click(window, "cmd_Save");
}
void SaveNewMaterial(const Shop& shop) {
    InList(shop, "cmd_Material", [](frmList& list) {
        InNext<frmMaterial>(FillMaterial);
        Click(list, "cmd_New");
    });
}
void SaveEditedMaterial(const Shop& shop) {
    InList(shop, "cmd_Material", [](frmList& list) {
        ChooseRow(list, "lst_Main", 1);
        InNext<frmMaterial>([](frmMaterial& window) {
            Type(window, "txt_Description", QStringLiteral("an edited resin"));
            Click(window, "cmd_Save");
        });
        Click(list, "cmd_Edit");
    });
}
void DeleteMaterial(const Shop& shop) {
    InList(shop, "cmd_Material", [](frmList& list) {
        ChooseRow(list, "lst_Main", 2);
        Click(list, "cmd_Delete");
    });
}

void SaveNewUsage(const Shop& shop) {
    InList(shop, "cmd_Usage", [](frmList& list) {
        InNext<frmUsage>([](frmUsage& window) {
            Named<QComboBox>(window, "cbo_MaterialId").setCurrentIndex(1);
            Named<QComboBox>(window, "cbo_Month").setCurrentIndex(4);
            Choose(window, "cbo_Year", "2005");
            Type(window, "txt_Quantiry", QStringLiteral("12.5"));
            Click(window, "cmd_Save");
        });
        Click(list, "cmd_New");
    });
}
void SaveEditedUsage(const Shop& shop) {
    InList(shop, "cmd_Usage", [](frmList& list) {
        ChooseRow(list, "lst_Main", 0);
        InNext<frmUsage>([](frmUsage& window) {
            Type(window, "txt_Quantiry", QStringLiteral("13.5"));
            Click(window, "cmd_Save");
        });
        Click(list, "cmd_Edit");
    });
}
void DeleteUsage(const Shop& shop) {
    InList(shop, "cmd_Usage", [](frmList& list) {
        ChooseRow(list, "lst_Main", 1);
        Click(list, "cmd_Delete");
    });
}
/// Takes back what was done last, if that could be noted.
void TakeBack(const frmList& list) {
    if (hasFailed) return;
    if (Named<QAbstractButton>(list, "cmd_Undo").isVisible())
        Click(list, "cmd_Undo");
    else
        std::cout << "There is nothing to undo.\n";
}
/// The last record of the list.
void TakeBackDeletedUsage(const Shop& shop) {
    InList(shop, "cmd_Usage", [](frmList& list) {
        ChooseRow(list, "lst_Main", Named<QListWidget>(list, "lst_Main").count() - 1);
        Click(list, "cmd_Delete");
        TakeBack(list);
    });
}

/// Waits for what the overview says; it may have nothing to say for a failure.
void AwaitOutlook(const QObject& window) {
    while (Named<QTimer>(window, "tmr_Outlook").isActive())
        QCoreApplication::processEvents();
    const QString outlook = Named<QLabel>(window, "lbl_Outlook").text();
    if (!outlook.startsWith(QLatin1String("Cannot"))) return;
    std::cerr << InOneLine(outlook) << '\n';
    hasFailed = true;
}
/// February 2005, in which the shop has a record of its second material.
void FillMonthSheet(frmMonthSheet& window) {
    AwaitOutlook(window);
    if (hasFailed) return;
    Named<QComboBox>(window, "cbo_Month").setCurrentIndex(1);
    Choose(window, "cbo_Year", "2005");
    QAbstractItemModel& rows = *Named<SheetView>(window, "tbl_Rows").model();
    for (int row = 0; row < 2; ++row) // in the unit of the record, or of the last one
        rows.setData(rows.index(row, MonthSheetTable::Quantity), QStringLiteral("14.5"));
    Click(window, "cmd_Save");
    if (!hasFailed) Tell(window, "lbl_Saved");
}
void SaveMonthSheet(const Shop& shop) {
    InList(shop, "cmd_Usage", [](frmList& list) {
        InNext<frmMonthSheet>(FillMonthSheet);
        Click(list, "cmd_MonthSheet");
    });
}

void FillCompany(frmCompany& window, const char* name) {
    Type(window, "txt_CompanyName", QString::fromLatin1(name));
    Type(window, "txt_CompanyLocation", QStringLiteral("Dock 9"));
    Click(window, "cmd_Save");
}
void SaveNewCompany(const Shop& shop) {
    InNext<frmCompany>([](frmCompany& window) { FillCompany(window, "Gamma"); });
    Click(shop.Main, "cmd_Company");
}
void SaveEditedCompany(const Shop& shop) {
    InNext<frmCompany>([](frmCompany& window) {
        ChooseRow(window, "lst_Companies", 1);
        Click(window, "cmd_Edit");
        if (!hasFailed) FillCompany(window, "Edited");
    });
    Click(shop.Main, "cmd_Company");
}
void SelectOtherCompany(const Shop& shop) {
    InNext<frmCompany>([](frmCompany& window) {
        ChooseRow(window, "lst_Companies", 1);
        Click(window, "cmd_Switch");
    });
    Click(shop.Main, "cmd_Company");
}

void SaveNames(const Shop& shop) {
    InNext<frmConfig>([](frmConfig& window) {
        InNext<frmExtraPollutantsNames>([](frmExtraPollutantsNames& names) {
            for (const char* name :
                 {"txt_pname_0", "txt_pname_1", "txt_pname_2", "txt_pname_3", "txt_pname_4", "txt_pname_5"})
                Type(names, name, QStringLiteral("a name"));
            Click(names, "cmd_OK");
        });
        Click(window, "cmd_ExtraPollutants");
    });
    Click(shop.Main, "cmd_Config");
}
void SaveConfiguration(const Shop& shop) {
    InNext<frmConfig>([folder = shop.Folder](frmConfig& window) {
        Type(window, "dir_backup", folder + QStringLiteral("/out"));
        Named<QCheckBox>(window, "chk_auto").setChecked(true);
        Type(window, "txt_browser", folder + QStringLiteral("/in/browser"));
        Click(window, "cmd_Save");
    });
    Click(shop.Main, "cmd_Config");
}

template <class W> void Transfer(frmList& list, const char* button, const QString& file) {
    InNext<W>([button, file](W& window) {
        Type(window, "txt_SourceFile", file);
        Click(window, button);
        Tell(window, "lbl_status");
    });
    Click(list, button);
}
void ImportMaterials(const Shop& shop) {
    InList(shop, "cmd_Material", [file = shop.Folder + QStringLiteral("/in/materials.txt")](frmList& list) {
        Transfer<frmImport>(list, "cmd_Import", file);
    });
}
void TakeBackImportedMaterials(const Shop& shop) {
    InList(shop, "cmd_Material", [file = shop.Folder + QStringLiteral("/in/materials.txt")](frmList& list) {
        Transfer<frmImport>(list, "cmd_Import", file);
        TakeBack(list);
    });
}
void ImportUsage(const Shop& shop) {
    InList(shop, "cmd_Usage", [file = shop.Folder + QStringLiteral("/in/usage.txt")](frmList& list) {
        Transfer<frmImport>(list, "cmd_Import", file);
    });
}
void ExportMaterials(const Shop& shop) {
    InList(shop, "cmd_Material", [file = shop.Folder + QStringLiteral("/out/new.txt")](frmList& list) {
        Transfer<frmExport>(list, "cmd_Export", file);
    });
}
void ExportUsage(const Shop& shop) {
    InList(shop, "cmd_Usage", [file = shop.Folder + QStringLiteral("/out/old.txt")](frmList& list) {
        Transfer<frmExport>(list, "cmd_Export", file);
    });
}

void Report(const Shop& shop) {
    InNext<frmReports>([](frmReports& window) {
        Named<QComboBox>(window, "cbo_Month2").setCurrentIndex(11);
        Choose(window, "cbo_Year2", "2005");
        Click(window, "cmd_Generate2");
    });
    Click(shop.Main, "cmd_Reports");
}
void BackUp(const Shop& shop) {
    Click(shop.Main, "cmd_Backup");
}

void Restore(const Shop& shop) {
    InNext<frmConfig>([](frmConfig& configuration) {
        InNext<frmRestore>([](frmRestore& window) {
            auto& confirm = Named<QCheckBox>(window, "chk_Confirm");
            while (!confirm.isEnabled() && !hasFailed) { // until the set has been looked into
                QCoreApplication::processEvents();
                auto& sets = Named<QTableWidget>(window, "tbl_Sets");
                for (int row = 0; row < sets.rowCount(); ++row)
                    if (sets.item(row, 0)->text() == QLatin1String("5")) sets.selectRow(row);
            }
            if (hasFailed) return;
            confirm.setChecked(true);
            Click(window, "cmd_Restore");
            Tell(window, "lbl_Status");
        });
        Click(configuration, "cmd_Restore");
    });
    Click(shop.Main, "cmd_Config");
}

const std::map<std::string, std::function<void(const Shop&)>>& Tasks() {
    static const std::map<std::string, std::function<void(const Shop&)>> tasks = {
        {"SaveNewMaterial",           SaveNewMaterial          },
        {"SaveEditedMaterial",        SaveEditedMaterial       },
        {"DeleteMaterial",            DeleteMaterial           },
        {"SaveNewUsage",              SaveNewUsage             },
        {"SaveEditedUsage",           SaveEditedUsage          },
        {"DeleteUsage",               DeleteUsage              },
        {"TakeBackDeletedUsage",      TakeBackDeletedUsage     },
        {"SaveMonthSheet",            SaveMonthSheet           },
        {"SaveNewCompany",            SaveNewCompany           },
        {"SaveEditedCompany",         SaveEditedCompany        },
        {"SelectCompany",             SelectOtherCompany       },
        {"SaveNames",                 SaveNames                },
        {"SaveConfiguration",         SaveConfiguration        },
        {"ImportMaterials",           ImportMaterials          },
        {"TakeBackImportedMaterials", TakeBackImportedMaterials},
        {"ImportUsage",               ImportUsage              },
        {"ExportMaterials",           ExportMaterials          },
        {"ExportUsage",               ExportUsage              },
        {"Report",                    Report                   },
        {"Backup",                    BackUp                   },
        {"Restore",                   Restore                  },
    };
    return tasks;
}

} // namespace

int main(int argc, char* argv[]) {
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg) std::cerr << text.toStdString() << '\n';
    });
    const QApplication application(argc, argv);
    MessageReader reader;
    qApp->installEventFilter(&reader);
    const QStringList arguments = QCoreApplication::arguments();
    const QString& folder = arguments.at(2);
    QtPrompts prompts;
    QtSettings settings;
    QtPrograms programs;
    QtFileDialogs dialogs;
    QtClock calendar;
    OsFiles files;
    AppContext app{prompts, settings, programs, dialogs, calendar, files, ToPath(folder + "/program")};
    History changes;
    app.Changes = &changes;
    if (const Done started = StartUp(app); !started) {
        ShowError(app, started.error());
    } else if (!hasFailed) {
        frmMain window(app);
        window.show();
        Tasks().at(arguments.at(1).toStdString())({window, folder});
    }
    return hasFailed ? 1 : 0;
}
