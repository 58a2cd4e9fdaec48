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
    frmUsage(AppContext& app, const std::vector<MaterialRecord>& materials, QWidget* parent);
    ~frmUsage() override;

    bool Validate_Form();
    /// Appends a new record, unless the material has one for the month.
    void Check_4_Save();
    /// Overwrites the edited record, likewise.
    void Check_4_Update();

private:
    friend int NewUsage(AppContext& app, QWidget* parent);
    friend int EditUsage(AppContext& app, std::int16_t usageId, QWidget* parent);

    void PrepareNew();
    void PrepareEdit(const UsageRecord& usage);
    /// The month, year and unit of the last new record, past which the tab key then goes.
    void PrepareRemembered();
    void SelectYear(const QString& year);
    void ShowDescription();
    UsageEntry ReadForm() const;
    void FocusFirstError(const UsageEntry& entry);
    void Save();
    /// Says why not when it returns false; otherwise the dialog closes.
    bool SaveUnlessDuplicate(const UsageRecord& usage);
    int Show();

    AppContext& m_app;
    std::unique_ptr<Ui::frmUsage> m_ui;
    QStringList m_descriptions; ///< of the materials, in the order of cbo_MaterialId
};

/// 0 when a record was saved, -1 otherwise.
int NewUsage(AppContext& app, QWidget* parent);
/// The same; also -1 when the record could not be read.
int EditUsage(AppContext& app, std::int16_t usageId, QWidget* parent);
} // namespace mact
