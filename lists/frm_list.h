#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"

#include <QDialog>

#include <memory>
#include <vector>

struct UsageRecord;

namespace Ui {
class frmList;
}

/// The list browser: the live materials, or the live usage records, of the current company. A mode, set
/// before the window is shown, decides which of the two every button works on.
class frmList : public QDialog {
    Q_OBJECT

public:
    frmList(AppContext& app, QWidget* parent);
    ~frmList() override;

    /// 1 = materials; any other value = usage.
    void Set_Module(std::int16_t mode);
    /// Reloads the list from the filter, and selects its first line.
    void Refresh_Usage_List();
    /// Does nothing.
    void Edit_Module();

private:
    friend void ShowMaterialList(AppContext& app, QWidget* parent);
    friend void ShowUsageList(AppContext& app, QWidget* parent);

    bool IsForMaterials() const { return m_mode == 1; }
    void Prepare_Materials();
    void Prepare_Usage();
    /// Leaves no line selected.
    void Reload_Material_List();
    void Show_List(const ListLines& lines);
    /// After a change of records: a year that is new can be filtered by.
    void Reload_Usage_List();
    void Show_Years(const std::vector<UsageRecord>& usage);
    void Set_Buttons();
    void New_Record();
    void Edit_Record();
    void Delete_Record();
    void Import_Records();
    void Export_Records();
    void Apply_Or_Reset_Filter();
    void Set_Filter_Applied(bool isApplied);

    AppContext& m_app;
    std::unique_ptr<Ui::frmList> m_ui;
    std::int16_t m_mode = 0;
};

void ShowMaterialList(AppContext& app, QWidget* parent);
void ShowUsageList(AppContext& app, QWidget* parent);
