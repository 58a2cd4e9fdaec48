#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {
class frmList;
}

namespace mact {

struct UsageRecord;

/// The list browser: the live materials or the live usage records of the current company. The mode, set
/// before the window is shown, decides which of the two the buttons work on.
class frmList : public QDialog {
    Q_OBJECT

public:
    frmList(AppContext& app, QWidget* parent);
    ~frmList() override;

    /// 1 = materials; any other value = usage.
    void Set_Module(std::int16_t mode);
    /// Reloads the usage that passes the filter, and selects the first line.
    void Refresh_Usage_List();
    /// Does nothing.
    void Edit_Module();

private:
    friend void ShowMaterialList(AppContext& app, QWidget* parent);
    friend void ShowUsageList(AppContext& app, QWidget* parent);

    bool IsForMaterials() const { return m_mode == 1; }
    HistoryOf Whose() const;
    /// For an undo, made anew for each.
    RecordIsUsed IsUsedMaterial();
    void PrepareMaterials();
    void PrepareUsage();
    /// Leaves no line selected.
    void ReloadMaterialList();
    void ShowList(const ListLines& lines);
    /// To be called after a change of records: also offers a new year in the filter.
    void ReloadUsageList();
    void ShowYears(const std::vector<UsageRecord>& usage);
    void SetButtons();
    void NewRecord();
    void EditRecord();
    void DeleteRecord();
    void ImportRecords();
    void ExportRecords();
    void OpenMonthSheet();
    void ApplyOrResetFilter();
    void SetFilterApplied(bool isApplied);

    AppContext& m_app;
    std::unique_ptr<Ui::frmList> m_ui;
    std::int16_t m_mode = 0;
};

void ShowMaterialList(AppContext& app, QWidget* parent);
void ShowUsageList(AppContext& app, QWidget* parent);
} // namespace mact
