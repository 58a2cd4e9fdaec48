#pragma once

#include "base/app_context.h"
#include "materials/material_entry.h"

#include <QDialog>

#include <array>
#include <memory>

class QLabel;
class QLineEdit;

namespace Ui {
class frmOtherPollutants;
}

namespace mact {

/// The contents and emission factors of the six additional pollutants, for the material in the editor. The
/// values are kept here until the editor saves or closes.
class frmOtherPollutants : public QDialog {
    Q_OBJECT

public:
    frmOtherPollutants(AppContext& app, QWidget* parent);
    ~frmOtherPollutants() override;

    /// Sets up the rows and returns true if `names` are six joined by "|"; otherwise changes nothing.
    bool SetNames(std::string_view names);
    void SetValues(const MaterialRecord& material);
    SixPollutants Values() const;
    /// Whether every enabled row holds numbers; shows an error if not.
    bool Validate_Form();

    int exec() override;
    /// Restores the values that were there when the window opened.
    void reject() override;

private:
    struct Row {
        QLabel* Number;
        QLabel* Name;
        QLineEdit* Content;
        QLineEdit* Factor;
    };

    void ShowValues(const SixPollutants& values);
    void CloseIfValid();
    void FocusFirstFault();

    AppContext& m_app;
    std::unique_ptr<Ui::frmOtherPollutants> m_ui;
    std::array<Row, 6> m_rows;
    SixPollutants m_valuesBefore;
};
} // namespace mact
