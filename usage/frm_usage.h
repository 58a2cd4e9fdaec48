#pragma once

#include "base/app_context.h"
#include "usage/usage_entry.h"
#include "usage/usage_record.h"

#include <QDialog>

#include <memory>
#include <vector>

class QComboBox;

namespace Ui {
class frmUsage;
}

namespace mact {

struct MaterialRecord;

/// Enters or changes how much of one material was used in one month.
class frmUsage : public QDialog {
    Q_OBJECT

public:
    /// `usage` is what the hint compares a quantity with.
    frmUsage(AppContext& app, const std::vector<MaterialRecord>& materials, std::vector<UsageRecord> usage,
             QWidget* parent);
    ~frmUsage() override;

    bool Validate_Form();
    /// Appends a new record and closes, unless the material has one for the month.
    void Check_4_Save();
    /// Overwrites the edited record, on the same condition.
    void Check_4_Update();

private:
    friend int NewUsage(AppContext& app, QWidget* parent);
    friend int EditUsage(AppContext& app, std::int16_t usageId, QWidget* parent);

    void PrepareNew();
    void PrepareEdit(const UsageRecord& usage);
    /// Selects month, year and unit of the last new record; the tab key then reaches month and year last.
    void PrepareRemembered();
    void SelectYear(const QString& year);
    void ShowDescription();
    void ShowHint();
    UsageEntry ReadForm() const;
    void FocusFirstError(const UsageEntry& entry);
    void Save();
    /// Closes the dialog and returns true, or shows why it did not save.
    bool SaveUnlessDuplicate(const UsageRecord& usage);
    int Show();

    AppContext& m_app;
    std::unique_ptr<Ui::frmUsage> m_ui;
    std::vector<UsageRecord> m_usage;
    QStringList m_descriptions;      ///< of the materials, in the order of cbo_MaterialId
    std::vector<double> m_densities; ///< in the same order; lb/gal
};

/// 0 if a record was saved, otherwise -1.
int NewUsage(AppContext& app, QWidget* parent);
/// The same; also -1 if the record could not be read.
int EditUsage(AppContext& app, std::int16_t usageId, QWidget* parent);
} // namespace mact
