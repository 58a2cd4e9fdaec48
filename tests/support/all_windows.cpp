#include "tests/support/all_windows.h"

#include "app/backup.h"
#include "app/backup_note.h"
#include "app/frm_about.h"
#include "app/frm_config.h"
#include "app/frm_main.h"
#include "dialogs/dialog_routines.h"
#include "lists/frm_list.h"
#include "materials/frm_emission_factor_help.h"
#include "materials/frm_material.h"
#include "materials/frm_other_pollutants.h"
#include "reports/frm_reports.h"
#include "store/frm_company.h"
#include "store/frm_extra_pollutants_names.h"
#include "store/frm_material_types.h"
#include "tests/support/gui.h"
#include "transfer/frm_error_log.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>

#include <fstream>

namespace mact {
namespace {

void Press(const QWidget& window, const char* button) {
    Named<QAbstractButton>(window, button).click();
}

void Type(const QWidget& window, const char* edit, const QString& text) {
    Named<QLineEdit>(window, edit).setText(text);
}

void ShowUntilClosed(frmMain& window) {
    window.show();
    QEventLoop untilClosed;
    QTimer::singleShot(0, &untilClosed, [&] { // after InWindow's timer, which works with the window
        window.close();
        untilClosed.quit();
    });
    untilClosed.exec();
}

void OpenMain(AppContext& app, QWidget*) {
    frmMain window(app);
    ShowUntilClosed(window);
}

/// After a backup that turned out incomplete.
void OpenMainWithWarning(AppContext& app, QWidget*) {
    const auto set = RunBackup(app, false);
    if (set) std::ofstream(*set / BackupFailuresName) << "Cannot back up a file.\r\n";
    frmMain window(app);
    window.LookAtBackup();
    ShowUntilClosed(window);
}

void OpenMainWithoutCompany(AppContext& app, QWidget* parent) {
    app.CurrentCompanyId = 0;
    OpenMain(app, parent);
}

void OpenErrorLog(AppContext& app, QWidget* parent) {
    int processedCount = 0;
    int errorCount = 0;
    ImportMaterialFile(app, app.ProgramFolder / "samples" / "materials_with_errors.txt", processedCount,
                       errorCount);
    ShowErrorLog(app, ImportErrorLog(app, TransferModule::Materials), parent);
}

void OpenNewMaterial(AppContext& app, QWidget* parent) {
    NewMaterial(app, parent);
}

void OpenMaterial(AppContext& app, QWidget* parent) {
    EditMaterial(app, 12, parent);
}

void OpenFilledMaterial(AppContext& app, QWidget* parent) {
    EditMaterial(app, 25, parent);
}

void OpenOtherPollutants(AppContext& app, QWidget* parent) {
    frmOtherPollutants window(app, parent);
    window.SetNames(app.AdditionalNames);
    ShowModally(app, window);
}

void OpenNewUsage(AppContext& app, QWidget* parent) {
    NewUsage(app, parent);
}

void OpenUsage(AppContext& app, QWidget* parent) {
    EditUsage(app, 1, parent);
}

void AsItOpens(const QWidget&) {}

void SelectCompanyLine(const QWidget& window) {
    Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
}

void EditCompany(const QWidget& window) {
    SelectCompanyLine(window);
    Press(window, "cmd_Edit");
}

void FilterUsage(const QWidget& window) {
    Named<QComboBox>(window, "cbo_Materials").setCurrentIndex(3);
    Named<QComboBox>(window, "cbo_Year").setCurrentIndex(1);
    Press(window, "cmd_Filter");
}

void TypeImportPath(const QWidget& window) {
    Type(window, "txt_SourceFile", QStringLiteral("samples/materials.txt"));
}

void ShowImportAtWork(const QWidget& window) {
    TypeImportPath(window);
    for (const char* name : {"txt_SourceFile", "cmd_Browse", "cmd_Import"})
        Named<QWidget>(window, name).setEnabled(false);
    Named<QLabel>(window, "lbl_status").setText(QStringLiteral("Importing..."));
    Named<QProgressBar>(window, "bar_Progress").setValue(430);
    Named<QLabel>(window, "lbl_Progress").setText(QStringLiteral("1,028,768 lines"));
    Named<QProgressBar>(window, "bar_Progress").show();
    Named<QLabel>(window, "lbl_Progress").show();
}

void ImportWithErrors(const QWidget& window) {
    Type(window, "txt_SourceFile", QStringLiteral("samples/usage_with_errors.txt"));
    Press(window, "cmd_Import");
}

void ExportToFile(const QWidget& window) {
    Type(window, "txt_SourceFile", QStringLiteral("usage.txt"));
    Press(window, "cmd_Export");
}

void GiveEmissionFactor(const QWidget& window) {
    Press(window, "chk_EmissionFactor");
    Type(window, "txt_EmissionFactor", QStringLiteral("57.5"));
    Type(window, "txt_Comments", QStringLiteral("Stack test of June 2005, report 05-114"));
}

void StartNewType(const QWidget& window) {
    Press(window, "cmd_New");
}

void ChooseMonths(const QWidget& window) {
    Press(window, "opt_materials_1");
}

} // namespace

const std::vector<WindowState>& AllWindows() {
    static const std::vector<WindowState> windows{
        {"frmMain",                 OpenMain,               AsItOpens         },
        {"frmMain_no_company",      OpenMainWithoutCompany, AsItOpens         },
        {"frmMain_warning",         OpenMainWithWarning,    AsItOpens         },
        {"frmAbout",                ShowAbout,              AsItOpens         },
        {"frmCompany",              ShowCompanies,          SelectCompanyLine },
        {"frmCompany_edit",         ShowCompanies,          EditCompany       },
        {"frmExtraPollutantsNames", ShowAdditionalNames,    AsItOpens         },
        {"frmMaterialTypes",        ShowMaterialTypes,      AsItOpens         },
        {"frmMaterialTypes_new",    ShowMaterialTypes,      StartNewType      },
        {"frmList_materials",       ShowMaterialList,       AsItOpens         },
        {"frmList_usage",           ShowUsageList,          AsItOpens         },
        {"frmList_usage_filtered",  ShowUsageList,          FilterUsage       },
        {"frmMaterial_new",         OpenNewMaterial,        AsItOpens         },
        {"frmMaterial_edit",        OpenMaterial,           GiveEmissionFactor},
        {"frmMaterial_filled",      OpenFilledMaterial,     AsItOpens         },
        {"frmOtherPollutants",      OpenOtherPollutants,    AsItOpens         },
        {"frm_EmissionFactorHelp",  ShowEmissionFactorHelp, AsItOpens         },
        {"frmUsage_new",            OpenNewUsage,           AsItOpens         },
        {"frmUsage_edit",           OpenUsage,              AsItOpens         },
        {"frmImport",               ShowMaterialImport,     AsItOpens         },
        {"frmImport_path",          ShowMaterialImport,     TypeImportPath    },
        {"frmImport_at_work",       ShowMaterialImport,     ShowImportAtWork  },
        {"frmImport_errors",        ShowUsageImport,        ImportWithErrors  },
        {"frmExport",               ShowMaterialExport,     AsItOpens         },
        {"frmExport_done",          ShowUsageExport,        ExportToFile      },
        {"frmErrorLog",             OpenErrorLog,           AsItOpens         },
        {"frmConfig",               ShowConfiguration,      AsItOpens         },
        {"frmReports",              ShowReportsForm,        AsItOpens         },
        {"frmReports_month",        ShowReportsForm,        ChooseMonths      },
    };
    return windows;
}

void InWindow(const WindowState& state, AppContext& app, QWidget* parent,
              const std::function<void(QWidget&)>& act) {
    const QString folderBefore = QDir::currentPath();
    QDir::setCurrent(FromPath(app.ProgramFolder)); // typed paths are relative to it
    bool isDone = false;
    QTimer::singleShot(0, qApp, [&] {
        QWidget* window = QApplication::activeModalWidget();
        for (QWidget* other : QApplication::topLevelWidgets())
            if (!window && other != parent && other->isVisible()) window = other;
        if (!window) qFatal("The window %s is not open", state.Name);
        state.Prepare(*window);
        const QPointer<QWidget> watched = window;
        act(*window);
        isDone = true;
        if (watched && watched->isVisible()) watched->close();
    });
    state.Open(app, parent);
    QDir::setCurrent(folderBefore);
    if (!isDone) qFatal("The window %s did not wait", state.Name);
}
} // namespace mact
