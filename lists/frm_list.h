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

struct MaterialRecord;
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
    void AddKeys();
    /// To be called after a change of records, each with its count in the status line. Both return what they
    /// have read: nothing after a failure, which they show.
    void ReloadList();
    /// Leaves no line selected.
    std::vector<MaterialRecord> ReloadMaterialList();
    /// Also offers a new year in the filter.
    std::vector<UsageRecord> ReloadUsageList();
    /// After an import or a month's sheet.
    void ReloadAfterMany();
    void ShowList(const ListLines& lines, const QStringList& details = {});
    /// What passes the filter, with the first line selected.
    void ShowUsage(const Result<std::vector<UsageRecord>>& read);
    /// An empty list that says why it is empty.
    void ShowUnlisted(const char* why);
    void ShowStatus(const QString& text);
    void ShowSavedMaterial(const std::vector<MaterialRecord>& materials, std::int16_t materialId);
    void ShowSavedUsage(const std::vector<UsageRecord>& usage, std::int16_t usageId);
    bool IsListed(std::int16_t recordId) const;
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
    std::size_t m_records = 0;          ///< live ones, when they were read last
    const char* m_emptyUsage = nullptr; ///< what an empty list of usage says
};

void ShowMaterialList(AppContext& app, QWidget* parent);
void ShowUsageList(AppContext& app, QWidget* parent);
} // namespace mact
