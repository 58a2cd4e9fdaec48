#include "store/frm_material_types.h"

#include "base/messages.h"
#include "dialogs/dialog_routines.h"
#include "store/material_type_entry.h"
#include "store/ui_frm_material_types.h"

namespace mact {

frmMaterialTypes::frmMaterialTypes(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmMaterialTypes>()) {
    m_ui->setupUi(this);
    m_ui->lbl_Id->hide();
    for (QLineEdit* edit : {m_ui->txt_MaterialName, m_ui->txt_MaterialType, m_ui->txt_HapContents})
        AcceptCodePageText(*edit);
    connect(m_ui->cbo_MaterialTypes, &QComboBox::activated, this, [this](int row) {
        if (row >= 0) Show_MaterialType_Record(m_ui->cbo_MaterialTypes->itemData(row).toInt());
    });
    // cmd_Save stays unconnected: this window never writes.
    connect(m_ui->cmd_New, &QPushButton::clicked, this, &frmMaterialTypes::NewType);
    connect(m_ui->cmd_Edit, &QPushButton::clicked, this, &frmMaterialTypes::EditType);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &frmMaterialTypes::Initialize_Form);
    Initialize_Form();
}

frmMaterialTypes::~frmMaterialTypes() = default;

void frmMaterialTypes::Initialize_Form() {
    for (QLineEdit* edit :
         {m_ui->txt_MaterialTypeId, m_ui->txt_MaterialName, m_ui->txt_MaterialType, m_ui->txt_HapContents}) {
        edit->clear();
        edit->setEnabled(false);
    }
    m_ui->cbo_MaterialTypes->setEnabled(true);
    m_ui->cbo_MaterialTypes->setCurrentIndex(-1);
    m_ui->cmd_New->setEnabled(true);
    m_ui->cmd_New->setDefault(true);
    for (QPushButton* button : {m_ui->cmd_Edit, m_ui->cmd_Cancel, m_ui->cmd_Save})
        button->setEnabled(false); // nothing enables cmd_Edit again
    m_ui->cbo_MaterialTypes->setFocus();
}

void frmMaterialTypes::NewType() {
    EnableEntry();
    m_ui->cmd_Cancel->setEnabled(true);
}

void frmMaterialTypes::EditType() {
    EnableEntry(); // but not Cancel
}

void frmMaterialTypes::EnableEntry() {
    for (QLineEdit* edit : {m_ui->txt_MaterialName, m_ui->txt_MaterialType, m_ui->txt_HapContents})
        edit->setEnabled(true);
    m_ui->cmd_Save->setEnabled(true);
    m_ui->cmd_Save->setDefault(true);
    m_ui->txt_MaterialName->setFocus();
    m_ui->cmd_Edit->setEnabled(false);
    m_ui->cbo_MaterialTypes->setEnabled(false);
}

bool frmMaterialTypes::Validate_Form() {
    const FormErrors errors =
        CheckMaterialTypeEntry({.Name = ToCodePage(m_ui->txt_MaterialName->text()),
                                .Type = ToCodePage(m_ui->txt_MaterialType->text()),
                                .HapContents = ToCodePage(m_ui->txt_HapContents->text())});
    if (!errors.IsEmpty()) ShowFormErrors(m_app, errors.Text());
    return errors.IsEmpty();
}

void frmMaterialTypes::Show_MaterialType_Record(int) {}

void ShowMaterialTypes(AppContext& app, QWidget* parent) {
    frmMaterialTypes window(app, parent);
    window.m_ui->lbl_Id->setText(QStringLiteral("1")); // nothing in the program reads it
    ShowModally(app, window);
}
} // namespace mact
