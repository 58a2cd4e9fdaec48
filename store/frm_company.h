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
    void FillList();
    void ShowCurrentCompany();
    void Enable_Button();
    void EnableListButtons();
    void EditCompany();
    void SaveEntry();
    void Select_Company();
    /// Empty if no line is selected or its company cannot be found.
    std::optional<CompanyRecord> SelectedCompany();

    AppContext& m_app;
    std::unique_ptr<Ui::frmCompany> m_ui;
};

void ShowCompanies(AppContext& app, QWidget* parent);
} // namespace mact
