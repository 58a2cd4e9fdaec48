#include "tests/support/all_windows.h"

#include "app/backup.h"
#include "app/backup_note.h"
#include "app/frm_about.h"
#include "app/frm_config.h"
#include "app/frm_main.h"
#include "app/frm_restore.h"
#include "dialogs/dialog_routines.h"
#include "lists/frm_list.h"
#include "lists/frm_month_sheet.h"
#include "lists/sheet_view.h"
#include "materials/frm_emission_factor_help.h"
#include "materials/frm_material.h"
#include "materials/frm_other_pollutants.h"
#include "overview/frm_half_year.h"
#include "overview/frm_overview.h"
#include "overview/frm_overview_help.h"
#include "overview/frm_overview_options.h"
#include "overview/frm_trace.h"
#include "overview/frm_what_if.h"
#include "reports/frm_reports.h"
#include "store/companies.h"
#include "store/frm_company.h"
#include "store/frm_extra_pollutants_names.h"
#include "store/frm_material_types.h"
#include "tests/support/gui.h"
#include "transfer/frm_error_log.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QTableView>
#include <QTableWidget>
#include <QTreeView>

#include <fstream>
#include <utility>

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
    while (window.isVisible())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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

/// With something to take back.
void OpenUsageAfterDelete(AppContext& app, QWidget* parent) {
    History changes;
    app.Changes = &changes;
    if (DeleteUsage(app, 1)) qFatal("The usage was not deleted");
    ShowUsageList(app, parent);
    app.Changes = nullptr;
}

void OpenCompaniesAfterEdit(AppContext& app, QWidget* parent) {
    History changes;
    app.Changes = &changes;
    if (!StoreCompany(
            app,
            {.CompanyId = app.CurrentCompanyId, .CompanyName = "Boats & more", .CompanyLocation = "Dock 1"}))
        qFatal("The company was not saved");
    ShowCompanies(app, parent);
    app.Changes = nullptr;
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

/// With a complete set and one that was cut off.
void OpenRestore(AppContext& app, QWidget* parent) {
    for (const char* name : {"talvor_backupset_1", "talvor_backupset_2", "talvor_backupset_3"}) {
        std::error_code ignored;
        std::filesystem::remove_all(app.ProgramFolder / name, ignored);
    }
    std::error_code ignored;
    static_cast<void>(app.Settings.Write("BACKUP", "BK_VOLUME", "1"));
    static_cast<void>(RunBackupToItsEnd(app));
    const auto set = RunBackupToItsEnd(app);
    std::filesystem::resize_file(*set / "1_usage.talvor", 1000, ignored);
    std::ofstream(*set / BackupFailuresName) << "Cannot back up the file \"data/1_materials.talvor\": "
                                                "Input/output error.\r\n";
    ShowRestore(app, parent);
}

/// The sets are looked into after the window is painted.
void WithSets(const QWidget& window) {
    const auto& table = Named<QTableWidget>(window, "tbl_Sets");
    while (table.rowCount() < 2 || !table.item(1, 5) || table.item(1, 5)->text().isEmpty() ||
           table.item(0, 5)->text().isEmpty())
        QCoreApplication::processEvents();
}

void ChooseIncomplete(const QWidget& window) {
    WithSets(window);
    auto& table = Named<QTableWidget>(window, "tbl_Sets");
    for (int row = 0; row < table.rowCount(); ++row)
        if (table.item(row, 5)->text() != QLatin1String("complete")) table.selectRow(row);
}

void RestoreASet(const QWidget& window) {
    WithSets(window);
    auto& table = Named<QTableWidget>(window, "tbl_Sets");
    for (int row = 0; row < table.rowCount(); ++row)
        if (table.item(row, 5)->text() == QLatin1String("complete")) table.selectRow(row);
    Press(window, "chk_Confirm");
    Press(window, "cmd_Restore");
    WithSets(window);
}

/// Calculated after the window is painted.
void WithVerdict(const QWidget& window) {
    while (Named<QLabel>(window, "lbl_Verdict").text().isEmpty())
        QCoreApplication::processEvents();
    QCoreApplication::processEvents(); // the layout makes room for it
}

constexpr MonthNumber LastMonth = MonthNumberOf(2005, 12); // of the sample shop

void OpenOverviewOptions(AppContext& app, QWidget* parent) {
    EditOverviewOptions(app, parent);
}

void OpenDamagedOverviewOptions(AppContext& app, QWidget* parent) {
    std::ofstream(app.ProgramFolder / "data" / "1_overview.txt")
        << "start=13/2005\r\nwarn_content=" << std::string(200, 'x')
        << "\r\noption.production resin=average\r\naddress=14 Slipway Road\r\n";
    EditOverviewOptions(app, parent);
}

void OpenHalfYear(AppContext& app, QWidget* parent) {
    std::error_code ignored;
    std::filesystem::remove_all(app.ProgramFolder / "half-year", ignored);
    const auto records = ReadShopRecords(app);
    const ShopFigures shop(*records);
    ShowHalfYearPacks(app, shop, shop.NewestUse().value_or(LastMonth), parent);
}

/// With one pack from other records and one that is damaged.
void OpenKeptHalfYears(AppContext& app, QWidget* parent) {
    std::error_code ignored;
    std::filesystem::remove_all(app.ProgramFolder / "half-year", ignored);
    const auto records = ReadShopRecords(app);
    const ShopFigures shop(*records);
    const HalfYear newest = NewestHalfYear(*shop.NewestUse());
    static_cast<void>(WritePack(app, newest, true));
    const HalfYear before{.Year = newest.Year - 1, .Half = newest.Half};
    static_cast<void>(WritePack(app, before, true));
    std::ofstream(PackFilesOf(app, before).Csv) << "no pack";
    ShopRecords changed = *records;
    for (auto& material : changed.Materials)
        material.HapContent += 1;
    const ShopFigures other(changed);
    ShowHalfYearPacks(app, other, *shop.NewestUse(), parent);
}

void ChooseKeptPack(const QWidget& window) {
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
    Named<QListWidget>(window, "lst_Packs").setCurrentRow(0);
}
void MakeAPack(const QWidget& window) {
    Press(window, "cmd_Make");
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
}

void TypeLostNames(const QWidget& window) {
    Type(window, "txt_pname_0", QStringLiteral("1,3-Butadiene"));
}

void SelectCompanyLine(const QWidget& window) {
    Named<QListWidget>(window, "lst_Companies").setCurrentRow(1);
}

void EditCompany(const QWidget& window) {
    SelectCompanyLine(window);
    Press(window, "cmd_Edit");
}

void SearchList(const QWidget& window) {
    Named<QWidget>(window, "wdg_Search").show();
    Named<QLineEdit>(window, "txt_Find").insert(QStringLiteral("RP-1")); // as if it were typed
    QCoreApplication::processEvents();                                   // makes room for it
}

/// Of a company without records.
void OpenEmptyList(AppContext& app, QWidget* parent) {
    const std::int16_t before = std::exchange(app.CurrentCompanyId, std::int16_t{99});
    ShowMaterialList(app, parent);
    app.CurrentCompanyId = before;
}

void TypeGallonsAsMgal(const QWidget& window) {
    Named<QComboBox>(window, "cbo_MaterialId").setCurrentIndex(1);
    Named<QComboBox>(window, "cbo_Unit").setCurrentIndex(0);
    Type(window, "txt_Quantiry", QStringLiteral("55"));
}

void DoubtMaterial(const QWidget& window) {
    Named<QComboBox>(window, "cbo_MaterialType").setCurrentIndex(0);
    Type(window, "txt_density", QStringLiteral("0.92"));
    Type(window, "txt_HapContents", QStringLiteral("0.35"));
    Press(window, "chk_EmissionFactor");
}

void FilterUsage(const QWidget& window) {
    Named<QComboBox>(window, "cbo_Materials").setCurrentIndex(3);
    Named<QComboBox>(window, "cbo_Year").setCurrentIndex(1);
    Press(window, "cmd_Filter");
}

void TypeMissingBrowser(const QWidget& window) {
    Type(window, "txt_browser", QStringLiteral("C:\\Program Files\\Browser\\browser.exe"));
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

/// After an earlier run.
void OpenReportsWithLast(AppContext& app, QWidget* parent) {
    const std::filesystem::path report = app.ProgramFolder / "report2.htm";
    std::ofstream(report) << "<html></html>";
    ShowReportsForm(app, parent);
    std::error_code ignored;
    std::filesystem::remove(report, ignored);
}

/// Without a browser, and with months that hold nothing.
void ShowLastReport(const QWidget& window) {
    Press(window, "opt_materials_1");
    for (const char* name : {"cbo_Year", "cbo_Year3"})
        Named<QComboBox>(window, name).setCurrentIndex(0);
    Named<QComboBox>(window, "cbo_Year4").setEditText(QStringLiteral("202"));
    Press(window, "cmd_LastReport");
}

/// With the statements at its foot.
void SelectWorstRow(const QWidget& window) {
    Named<QTableView>(window, "tbl_Rows").selectRow(0);
    Press(window, "cmd_Statements");
    QCoreApplication::processEvents();
}

void OpenTrace(AppContext& app, QWidget* parent) {
    const Result<ShopRecords> records = ReadShopRecords(app);
    const ShopFigures shop(*records);
    ShowTrace(app, shop, shop.At(LastMonth), "emissions", "", parent);
}

void SelectTracedRecord(const QWidget& window) {
    auto& tree = Named<QTreeView>(window, "tre_Parts");
    tree.setCurrentIndex(tree.model()->index(2, 0, tree.model()->index(0, 0)));
}

void OpenMonthSheet(AppContext& app, QWidget* parent) {
    ShowMonthSheet(app, parent);
}

void EnterCell(const QWidget& window, int row, int column, const QString& text) {
    QAbstractItemModel& rows = *Named<SheetView>(window, "tbl_Rows").model();
    rows.setData(rows.index(row, column), text);
}

/// With an error, in a month that has records already, after cells that could not all be matched.
void FillMonthSheet(const QWidget& window) {
    auto& view = Named<SheetView>(window, "tbl_Rows");
    Named<QComboBox>(window, "cbo_Year").setCurrentIndex(5); // 2005
    Named<QComboBox>(window, "cbo_Month").setCurrentIndex(11);
    QGuiApplication::clipboard()->setText(
        QStringLiteral("GC-121\t1,250.5\tlbs\nXX-1\t5\tlbs\nPR-101\tmany\tMgal\nGC-110\t93\tgallons\n"));
    Press(window, "cmd_Paste");
    EnterCell(window, 1, MonthSheetTable::Quantity, QStringLiteral("9o"));
    view.GoTo(1, MonthSheetTable::Quantity);
    QCoreApplication::processEvents();
}

/// In a month that lies before all others, so that only the empty row is there.
void EmptyMonthSheet(const QWidget& window) {
    Named<QComboBox>(window, "cbo_Year").setCurrentIndex(0); // 2000
    EnterCell(window, 0, MonthSheetTable::MaterialId, QStringLiteral("XX-1"));
    QCoreApplication::processEvents();
}

/// 300 materials with long names, all used.
void OpenLongMonthSheet(AppContext& app, QWidget* parent) {
    std::ofstream materials(app.ProgramFolder / "data" / "1_materials.talvor", std::ios::binary);
    std::ofstream usage(app.ProgramFolder / "data" / "1_usage.talvor", std::ios::binary);
    for (std::int16_t number = 1; number <= 300; ++number) {
        materials << Pack(MaterialLayout, {.MaterialId = number,
                                           .CustomId = "GC-" + std::to_string(1000 + number),
                                           .Density = 9.5,
                                           .Description = std::string(250, 'W')});
        usage << Pack(UsageLayout, {.UsageId = number,
                                    .MaterialId = number,
                                    .Period = "12/2005",
                                    .Quantity = 1234567.875,
                                    .Unit = UnitLbs});
    }
    materials.close();
    usage.close();
    ShowMonthSheet(app, parent);
}

void GoToLastRow(const QWidget& window) {
    auto& view = Named<SheetView>(window, "tbl_Rows");
    view.GoTo(view.model()->rowCount() - 1, MonthSheetTable::MaterialId);
}

void OpenWhatIf(AppContext& app, QWidget* parent) {
    const Result<ShopRecords> shop = ReadShopRecords(app);
    ShowWhatIf(app, *shop, {}, LastMonth, parent);
}

/// Calculates in steps.
void AsCalculated(const QWidget& window) {
    while (Named<QTimer>(window, "tmr_Steps").isActive())
        QCoreApplication::processEvents();
}

void ChooseChange(const QWidget& window, int kind) {
    Named<QComboBox>(window, "cbo_Kind").setCurrentIndex(kind);
    AsCalculated(window);
}

/// After a first change.
void HalveAnAmount(const QWidget& window) {
    Type(window, "txt_Number", QStringLiteral("24"));
    Press(window, "cmd_Add");
    ChooseChange(window, 4);
    Type(window, "txt_Number", QStringLiteral("0.5"));
}

void ChangeMethod(const QWidget& window) {
    ChooseChange(window, 3);
}

void ReplaceMaterial(const QWidget& window) {
    ChooseChange(window, 5);
}

} // namespace

const std::vector<WindowState>& AllWindows() { // NOLINT(readability-function-size): a table
    static const std::vector<WindowState> windows{
        {"frmMain",                           OpenMain,                   WithVerdict       },
        {"frmMain_no_company",                OpenMainWithoutCompany,     AsItOpens         },
        {"frmMain_warning",                   OpenMainWithWarning,        WithVerdict       },
        {"frmAbout",                          ShowAbout,                  AsItOpens         },
        {"frmCompany",                        ShowCompanies,              SelectCompanyLine },
        {"frmCompany_edit",                   ShowCompanies,              EditCompany       },
        {"frmExtraPollutantsNames",           ShowAdditionalNames,        AsItOpens         },
        {"frmExtraPollutantsNames_lost",      ShowAdditionalNames,        TypeLostNames     },
        {"frmMaterialTypes",                  ShowMaterialTypes,          AsItOpens         },
        {"frmMaterialTypes_new",              ShowMaterialTypes,          StartNewType      },
        {"frmList_materials",                 ShowMaterialList,           AsItOpens         },
        {"frmList_usage",                     ShowUsageList,              AsItOpens         },
        {"frmList_usage_filtered",            ShowUsageList,              FilterUsage       },
        {"frmList_usage_undo",                OpenUsageAfterDelete,       AsItOpens         },
        {"frmList_search",                    ShowUsageList,              SearchList        },
        {"frmList_empty",                     OpenEmptyList,              AsItOpens         },
        {"frmCompany_undo",                   OpenCompaniesAfterEdit,     AsItOpens         },
        {"frmMonthSheet",                     OpenMonthSheet,             AsItOpens         },
        {"frmMonthSheet_filled",              OpenMonthSheet,             FillMonthSheet    },
        {"frmMonthSheet_empty",               OpenMonthSheet,             EmptyMonthSheet   },
        {"frmMonthSheet_long",                OpenLongMonthSheet,         GoToLastRow       },
        {"frmMaterial_new",                   OpenNewMaterial,            AsItOpens         },
        {"frmMaterial_doubts",                OpenNewMaterial,            DoubtMaterial     },
        {"frmMaterial_edit",                  OpenMaterial,               GiveEmissionFactor},
        {"frmMaterial_filled",                OpenFilledMaterial,         AsItOpens         },
        {"frmOtherPollutants",                OpenOtherPollutants,        AsItOpens         },
        {"frm_EmissionFactorHelp",            ShowEmissionFactorHelp,     AsItOpens         },
        {"frmUsage_new",                      OpenNewUsage,               AsItOpens         },
        {"frmUsage_doubt",                    OpenNewUsage,               TypeGallonsAsMgal },
        {"frmUsage_edit",                     OpenUsage,                  AsItOpens         },
        {"frmImport",                         ShowMaterialImport,         AsItOpens         },
        {"frmImport_path",                    ShowMaterialImport,         TypeImportPath    },
        {"frmImport_at_work",                 ShowMaterialImport,         ShowImportAtWork  },
        {"frmImport_errors",                  ShowUsageImport,            ImportWithErrors  },
        {"frmExport",                         ShowMaterialExport,         AsItOpens         },
        {"frmExport_done",                    ShowUsageExport,            ExportToFile      },
        {"frmErrorLog",                       OpenErrorLog,               AsItOpens         },
        {"frmConfig",                         ShowConfiguration,          AsItOpens         },
        {"frmConfig_missing_browser",         ShowConfiguration,          TypeMissingBrowser},
        {"frmRestore",                        OpenRestore,                AsItOpens         },
        {"frmRestore_incomplete",             OpenRestore,                ChooseIncomplete  },
        {"frmRestore_done",                   OpenRestore,                RestoreASet       },
        {"frmReports",                        ShowReportsForm,            AsItOpens         },
        {"frmReports_month",                  ShowReportsForm,            ChooseMonths      },
        {"frmReports_last",                   OpenReportsWithLast,        ShowLastReport    },
        {"frmOverview",                       ShowOverview,               AsItOpens         },
        {"frmOverview_row",                   ShowOverview,               SelectWorstRow    },
        {"frmOverviewOptions",                OpenOverviewOptions,        AsItOpens         },
        {"frmOverviewOptions_not_understood", OpenDamagedOverviewOptions, AsItOpens         },
        {"frmHalfYear",                       OpenHalfYear,               AsItOpens         },
        {"frmHalfYear_made",                  OpenHalfYear,               MakeAPack         },
        {"frmHalfYear_kept",                  OpenKeptHalfYears,          ChooseKeptPack    },
        {"frmOverviewHelp",                   ShowOverviewHelp,           AsItOpens         },
        {"frmTrace",                          OpenTrace,                  AsItOpens         },
        {"frmTrace_record",                   OpenTrace,                  SelectTracedRecord},
        {"frmWhatIf",                         OpenWhatIf,                 AsCalculated      },
        {"frmWhatIf_amount",                  OpenWhatIf,                 HalveAnAmount     },
        {"frmWhatIf_method",                  OpenWhatIf,                 ChangeMethod      },
        {"frmWhatIf_replace",                 OpenWhatIf,                 ReplaceMaterial   },
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
