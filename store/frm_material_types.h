#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmMaterialTypes;
}

namespace mact {

/// The material types. On purpose no button opens this window, nothing fills its list, and it never writes
/// the table.
class frmMaterialTypes : public QDialog {
    Q_OBJECT

public:
    frmMaterialTypes(AppContext& app, QWidget* parent);
    ~frmMaterialTypes() override;

    void Initialize_Form();
    /// Shows what is wrong with the entries. True if nothing is.
    bool Validate_Form();
    /// Does nothing.
    void Show_MaterialType_Record(int materialTypeId);

private:
    friend void ShowMaterialTypes(AppContext& app, QWidget* parent);

    void NewType();
    void EditType();
    void EnableEntry();

    AppContext& m_app;
    std::unique_ptr<Ui::frmMaterialTypes> m_ui;
};

void ShowMaterialTypes(AppContext& app, QWidget* parent);
} // namespace mact
