#include "store/frm_company.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "store/ui_frm_company.h"

#include <QShortcut>

namespace mact {
namespace {

std::string TrimmedText(const QLineEdit& edit) {
    return std::string(Trim(ToCodePage(edit.text())));
}

} // namespace

frmCompany::frmCompany(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmCompany>()) {
    m_ui->setupUi(this);
    SelectByKeys(*m_ui->lst_Companies);
    m_ui->lbl_Id->hide(); // the number of the company that is edited
    for (QLineEdit* edit : {m_ui->txt_CompanyName, m_ui->txt_CompanyLocation}) {
        AcceptCodePageText(*edit);
        connect(edit, &QLineEdit::textChanged, this, &frmCompany::Enable_Button);
    }
    connect(m_ui->lst_Companies, &QListWidget::itemSelectionChanged, this, &frmCompany::EnableListButtons);
    connect(m_ui->lst_Companies, &QListWidget::itemDoubleClicked, this, &frmCompany::Select_Company);
    connect(m_ui->cmd_Switch, &QPushButton::clicked, this, &frmCompany::Select_Company);
    connect(m_ui->cmd_Edit, &QPushButton::clicked, this, &frmCompany::EditCompany);
    connect(m_ui->cmd_Save, &QPushButton::clicked, this, &frmCompany::SaveEntry);
    connect(m_ui->cmd_New, &QPushButton::clicked, this, &frmCompany::StartNewCompany);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_N), this), &QShortcut::activated, m_ui->cmd_New,
            &QPushButton::click);
    connect(new QShortcut(QKeySequence(Qt::Key_F2), this), &QShortcut::activated, m_ui->cmd_Edit,
            &QPushButton::click);
    m_ui->cmd_New->setToolTip(QStringLiteral("Ctrl+N"));
    m_ui->cmd_Edit->setToolTip(QStringLiteral("F2"));
    m_ui->wdg_Search->Bind(*m_ui->lst_Companies);
    m_ui->lbl_Editing->SetFields({m_ui->txt_CompanyName, m_ui->txt_CompanyLocation});
    MakeRoomForLines(*m_ui->lbl_Editing, 2);
    m_ui->cmd_Undo->Bind(app, {.Whose = [] { return HistoryOf{.Kind = HistoryKind::Companies}; },
                               .IsUsed = [this]() -> RecordIsUsed {
                                   return [this](std::int16_t companyId) {
                                       return IsCurrentCompany(m_app, companyId);
                                   };
                               },
                               .Reload = [this] { FillList(); },
                               .Say =
                                   [this](const QString& text) {
                                       m_said = text;
                                       ShowHint();
                                   }});
    const bool isRead = FillList();
    ShowCurrentCompany();
    MakeCopyable(*m_ui->lbl_CurrentCompany);
    Enable_Button();
    // With no company yet, the first step is to type one.
    if (isRead && m_ui->lst_Companies->count() == 0) m_ui->txt_CompanyName->setFocus();
}

frmCompany::~frmCompany() = default;

bool frmCompany::FillList() {
    const Result<std::vector<CompanyRecord>> companies = ReadCompanies(m_app);
    if (ShowFailure(m_app, companies)) {
        if (m_ui->lst_Companies->count() == 0)
            m_ui->lst_Companies->SetEmptyText(QStringLiteral("The companies cannot be read."));
        m_ui->lst_Companies->Describe({});
        return false;
    }
    m_ui->lst_Companies->SetEmptyText(
        QStringLiteral("No companies yet.\nType a name and a location below, then Save."));
    ListLines lines;
    FillCompanyList(lines, *companies);
    ShowLines(*m_ui->lst_Companies, lines);
    m_ui->lst_Companies->Describe({});
    EnableListButtons();
    return true;
}

void frmCompany::ShowCurrentCompany() {
    m_ui->lbl_CurrentCompany->setText(
        m_app.CurrentCompanyId != 0
            ? FromCodePage(m_app.CurrentCompanyName + "\n" + m_app.CurrentCompanyLocation)
            : QStringLiteral("None"));
}

void frmCompany::Enable_Button() {
    const bool canSave =
        !TrimmedText(*m_ui->txt_CompanyName).empty() && !TrimmedText(*m_ui->txt_CompanyLocation).empty();
    m_ui->cmd_Save->setEnabled(canSave);
    m_ui->cmd_Save->setDefault(canSave);
    m_ui->cmd_New->setEnabled(m_edited || !m_ui->txt_CompanyName->text().isEmpty() ||
                              !m_ui->txt_CompanyLocation->text().isEmpty());
    EnableListButtons();
    ShowHint();
}

void frmCompany::EnableListButtons() {
    const bool hasSelection = SelectedRow(*m_ui->lst_Companies) >= 0;
    m_ui->cmd_Switch->setEnabled(hasSelection);
    m_ui->cmd_Edit->setEnabled(hasSelection);
    // Enter saves what was typed or, if there is nothing to save, selects.
    if (!m_ui->cmd_Save->isDefault()) m_ui->cmd_Switch->setDefault(hasSelection);
}

std::optional<CompanyRecord> frmCompany::SelectedCompany() {
    if (SelectedRow(*m_ui->lst_Companies) < 0) return {};
    const int companyId = m_ui->lst_Companies->currentItem()->data(Qt::UserRole).toInt();
    std::vector<CompanyRecord> found;
    if (!FindCompanies(m_app, {.CompanyId = static_cast<std::int16_t>(companyId)}, found)) return {};
    return found.front();
}

void frmCompany::ShowHint() {
    if (!m_edited) return m_ui->lbl_Editing->Show({.Text = m_said.toStdString()});
    const std::string name(Trim(m_edited->CompanyName));
    const std::string typed = TrimmedText(*m_ui->txt_CompanyName);
    const bool isOtherName = !typed.empty() && !IsSameName(typed, name);
    const std::string which = name + " (" + std::string(Trim(m_edited->CompanyLocation)) + ")";
    m_ui->lbl_Editing->Show(
        {.Text = "Save overwrites " + Utf8FromCodePage(which) +
                 (isOtherName ? ", which gets this name. New starts a new company instead." : "."),
         .IsDoubtful = isOtherName});
}

void frmCompany::EditCompany() {
    const std::optional<CompanyRecord> company = SelectedCompany();
    if (!company) return;
    m_edited = company;
    m_ui->lbl_Id->setText(QString::number(company->CompanyId));
    m_ui->FrameCompany->setTitle(QStringLiteral("Edited company"));
    m_ui->txt_CompanyName->setText(FromCodePage(Trim(company->CompanyName)));
    m_ui->txt_CompanyLocation->setText(FromCodePage(Trim(company->CompanyLocation)));
    Enable_Button();
    m_ui->txt_CompanyName->setFocus();
    m_ui->txt_CompanyName->selectAll();
}

void frmCompany::EmptyEntry() {
    m_edited.reset();
    m_ui->lbl_Id->clear(); // what is typed next is a new company
    m_ui->FrameCompany->setTitle(QStringLiteral("New company"));
    m_ui->txt_CompanyName->clear();
    m_ui->txt_CompanyLocation->clear();
    Enable_Button();
}

void frmCompany::StartNewCompany() {
    m_said.clear();
    EmptyEntry();
    m_ui->txt_CompanyName->setFocus();
}

void frmCompany::SaveEntry() {
    const std::string name = TrimmedText(*m_ui->txt_CompanyName);
    const std::string location = TrimmedText(*m_ui->txt_CompanyLocation);
    if (name.empty() || location.empty()) {
        ShowInformation(m_app, NeedsNameAndLocation);
        return;
    }
    // The current company keeps its old name until it is selected again.
    const std::int16_t edited = ParseInt16(m_ui->lbl_Id->text().toStdString()).value_or(0);
    const Done written =
        StoreCompany(m_app, {.CompanyId = edited, .CompanyName = name, .CompanyLocation = location});
    // After a failure what was typed stays, to be saved again. The list does too: reading may meet the same
    // fault, which is to be told once.
    if (ShowFailure(m_app, written)) return;
    m_said =
        QStringLiteral("Saved %1. Select it to work on it.").arg(FromCodePage(name + " (" + location + ")"));
    EmptyEntry();
    FillList();
    m_ui->cmd_Undo->ShowStep();
    m_ui->lst_Companies->setFocus(); // cmd_Save, disabled by now, may have had it
}

void frmCompany::Select_Company() {
    const std::optional<CompanyRecord> company = SelectedCompany();
    if (!company) return;
    ShowFailure(m_app, SelectCompany(m_app, *company)); // it is current all the same
    ShowCurrentCompany();
    hide();
}

void ShowCompanies(AppContext& app, QWidget* parent) {
    frmCompany window(app, parent);
    ShowModally(app, window);
}
} // namespace mact
