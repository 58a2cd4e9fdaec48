#pragma once

#include "base/app_context.h"
#include "overview/overview_options_entry.h"

#include <QDialog>

#include <array>
#include <memory>

class QComboBox;

namespace Ui {
class frmOverviewOptions;
}

namespace mact {

/// What the user sets for the overview of the current company.
class frmOverviewOptions : public QDialog {
    Q_OBJECT

public:
    frmOverviewOptions(AppContext& app, OverviewOptions options, QWidget* parent);
    ~frmOverviewOptions() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FillForm();
    void ShowNotUnderstood();
    /// As high as its texts need, as far as the screen has room; beyond that it can be scrolled.
    void SizeToTexts();
    OverviewOptionsEntry ReadForm() const;
    bool Validate_Form();
    void FocusFirstError(const OverviewOptionsEntry& entry);
    void SaveForm();
    /// In the order of Operations.
    std::array<QComboBox*, Operations.size()> OptionBoxes() const;

    AppContext& m_app;
    std::unique_ptr<Ui::frmOverviewOptions> m_ui;
    OverviewOptions m_options; ///< as they were read
    QString m_addressAtFirst;  ///< as shown
};

/// True when they were saved.
bool EditOverviewOptions(AppContext& app, QWidget* parent);
} // namespace mact
