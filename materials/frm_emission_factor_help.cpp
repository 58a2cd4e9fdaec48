#include "materials/frm_emission_factor_help.h"

#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "materials/material_texts.h"
#include "materials/ui_frm_emission_factor_help.h"

namespace mact {

frm_EmissionFactorHelp::frm_EmissionFactorHelp(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frm_EmissionFactorHelp>()) {
    setObjectName(QStringLiteral("frm_EmissionFactorHelp")); // uic would name a parameter so
    m_ui->setupUi(this);
    m_ui->lbl_info->setText(QString::fromLatin1(MaterialTexts::AboutEmissionFactors));
    m_ui->lbl_url->setText(QString::fromLatin1(MaterialTexts::EmissionFactorAddress));
    for (QLabel* text : {m_ui->lbl_info, m_ui->lbl_url})
        MakeCopyable(*text);
    m_ui->cmd_Close->setFocus(); // rather than the first text
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
}

frm_EmissionFactorHelp::~frm_EmissionFactorHelp() = default;

void ShowEmissionFactorHelp(AppContext& app, QWidget* parent) {
    frm_EmissionFactorHelp window(parent);
    ShowModally(app, window);
}
} // namespace mact
