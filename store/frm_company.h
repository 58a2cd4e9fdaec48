#pragma once

#include "base/app_context.h"
#include "store/companies.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace Ui {
class frmCompany;
}

namespace mact {

/// The companies and locations: add one, change one, make one current.
class frmCompany : public QDialog {
    Q_OBJECT

public:
    frmCompany(AppContext& app, QWidget* parent);
    ~frmCompany() override;

private:
    /// False if the companies cannot be read, which is shown.
    bool FillList();
    void ShowCurrentCompany();
    void Enable_Button();
    void EnableListButtons();
    /// Which company is edited; otherwise what was done last.
    void ShowHint();
    void EditCompany();
    /// Leads out of editing.
    void StartNewCompany();
    void EmptyEntry();
    void SaveEntry();
    void Select_Company();
    /// Empty if no line is selected or its company cannot be found.
    std::optional<CompanyRecord> SelectedCompany();

    AppContext& m_app;
    std::unique_ptr<Ui::frmCompany> m_ui;
    std::optional<CompanyRecord> m_edited{}; ///< as it was when its editing began
    QString m_said{};
};

void ShowCompanies(AppContext& app, QWidget* parent);
} // namespace mact
