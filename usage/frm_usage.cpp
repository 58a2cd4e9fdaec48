#include "usage/frm_usage.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "materials/material_store.h"
#include "usage/ui_frm_usage.h"
#include "usage/usage_hint.h"
#include "usage/usage_store.h"
#include "usage/usage_texts.h"

#include <utility>

namespace mact {

namespace {

/// What the hint needs. Nothing, if it cannot be read or is not there: whatever is wrong with it is told by
/// the list and by the save.
std::vector<UsageRecord> UsageForHint(const DataFiles& data) {
    if (!IsFileAt(UsageFile(data))) return {};
    Result<std::vector<UsageRecord>> usage = ReadUsage(data);
    return usage ? std::move(*usage) : std::vector<UsageRecord>();
}

} // namespace

frmUsage::frmUsage(AppContext& app, const std::vector<MaterialRecord>& materials,
                   std::vector<UsageRecord> usage, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmUsage>()), m_usage(std::move(usage)) {
    m_ui->setupUi(this);
    m_ui->lbl_Id->hide();     // the number of the record that is edited
    m_ui->lbl_result->hide(); // what Show returns
    ShowCompany(*m_ui->lbl_Company, app);
    ListLines lines;
    FillMaterialList(lines, materials, false);
    ShowLines(*m_ui->cbo_MaterialId, lines);
    m_densities.reserve(materials.size());
    for (const MaterialRecord& material : materials) {
        m_descriptions << FromCodePage(Trim(material.Description));
        m_densities.push_back(material.Density);
    }
    for (QComboBox* combo : {m_ui->cbo_Month, m_ui->cbo_Unit}) {
        NumberItems(*combo);
        combo->setCurrentIndex(-1); // the form has selected the first entry
    }
    AcceptAnyYear(*m_ui->cbo_Year);
    AcceptCodePageText(*m_ui->txt_Quantiry);
    m_ui->lbl_QuantityHint->SetFields({m_ui->txt_Quantiry, m_ui->cbo_Unit});
    MakeRoomForLines(*m_ui->lbl_QuantityHint, 3); // so that the window stays while a number is typed
    connect(m_ui->cbo_MaterialId, &QComboBox::currentIndexChanged, this, &frmUsage::ShowDescription);
    for (const QComboBox* combo : {m_ui->cbo_MaterialId, m_ui->cbo_Unit})
        connect(combo, &QComboBox::currentIndexChanged, this, &frmUsage::ShowHint);
    connect(m_ui->txt_Quantiry, &QLineEdit::textChanged, this, &frmUsage::ShowHint);
    connect(m_ui->cmd_Save, &QPushButton::clicked, this, &frmUsage::Save);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);
    m_ui->cbo_MaterialId->setFocus();
}

frmUsage::~frmUsage() = default;

void frmUsage::PrepareNew() {
    setWindowTitle(QString::fromLatin1(UsageTexts::NewTitle));
    if (m_app.LastUsage.Unit != 0) { // a record was entered since the program started
        PrepareRemembered();
        return;
    }
    const std::chrono::year_month today = m_app.Calendar.CurrentMonth();
    SelectYear(QString::number(static_cast<int>(today.year())));
    SelectListItem(*m_ui->cbo_Month, static_cast<unsigned>(today.month()));
    SelectListItem(*m_ui->cbo_Unit); // the first
}

void frmUsage::PrepareRemembered() {
    SelectListItem(*m_ui->cbo_Month, m_app.LastUsage.Month);
    SelectYear(FromCodePage(m_app.LastUsage.Year));
    SelectListItem(*m_ui->cbo_Unit, m_app.LastUsage.Unit);
    // Month and year last: whoever enters a month's records leaves them as they are.
    QWidget* const order[] = {m_ui->cbo_MaterialId, m_ui->txt_Quantiry, m_ui->cbo_Unit, m_ui->cmd_Save,
                              m_ui->cmd_Cancel,     m_ui->cbo_Month,    m_ui->cbo_Year};
    for (std::size_t index = 1; index < std::size(order); ++index)
        setTabOrder(order[index - 1], order[index]);
}

void frmUsage::PrepareEdit(const UsageRecord& usage) {
    // What the lists lack (a deleted material, a month 13) stays unselected, and saving asks for it.
    const PeriodPieces period = SplitPeriod(usage.Period);
    SelectListItem(*m_ui->cbo_MaterialId, usage.MaterialId);
    SelectListItem(*m_ui->cbo_Month, FromCodePage(period.Month));
    SelectYear(FromCodePage(period.Year));
    SelectListItem(*m_ui->cbo_Unit, usage.Unit);
    m_ui->txt_Quantiry->setText(FromCodePage(NumberText(usage.Quantity)));
    m_ui->lbl_Id->setText(QString::number(usage.UsageId)); // so that Save overwrites it
    ShowHint();                                            // which leaves that record out
}

/// A year that the list lacks is shown as if it had been typed.
void frmUsage::SelectYear(const QString& year) {
    m_ui->cbo_Year->setCurrentIndex(-1); // SelectListItem leaves the selection if nothing matches
    SelectListItem(*m_ui->cbo_Year, year, false);
    if (m_ui->cbo_Year->currentIndex() < 0) m_ui->cbo_Year->setEditText(year);
}

void frmUsage::ShowDescription() {
    const int row = m_ui->cbo_MaterialId->currentIndex();
    m_ui->lbl_Description->setText(row < 0 ? QString() : m_descriptions.at(row));
}

void frmUsage::ShowHint() {
    const UsageEntry entry = ReadForm();
    const int row = m_ui->cbo_MaterialId->currentIndex();
    if (!entry.MaterialId || row < 0) return m_ui->lbl_QuantityHint->Show({});
    const double density = m_densities[static_cast<std::size_t>(row)];
    const std::int16_t edited = ParseInt16(m_ui->lbl_Id->text().toStdString()).value_or(0);
    m_ui->lbl_QuantityHint->Show(
        HintOn(entry, density, MedianMonth(m_usage, *entry.MaterialId, density, edited)));
}

UsageEntry frmUsage::ReadForm() const {
    return {.MaterialId = SelectedData(*m_ui->cbo_MaterialId),
            .Month = SelectedData(*m_ui->cbo_Month),
            .Year = ToCodePage(m_ui->cbo_Year->currentText()),
            .Quantity = ToCodePage(m_ui->txt_Quantiry->text()),
            .Unit = SelectedData(*m_ui->cbo_Unit)};
}

bool frmUsage::Validate_Form() {
    const UsageEntry entry = ReadForm();
    const FormErrors errors = CheckUsageEntry(entry);
    if (errors.IsEmpty()) return true;
    ShowFormErrors(m_app, errors.Text());
    FocusFirstError(entry);
    return false;
}

// In the order of CheckUsageEntry.
void frmUsage::FocusFirstError(const UsageEntry& entry) {
    if (!entry.MaterialId)
        m_ui->cbo_MaterialId->setFocus();
    else if (!IsNumeric(Trim(entry.Quantity)))
        m_ui->txt_Quantiry->setFocus();
    else if (!entry.Month)
        m_ui->cbo_Month->setFocus();
    else if (!IsUsageYear(Trim(entry.Year)))
        m_ui->cbo_Year->setFocus();
    else
        m_ui->cbo_Unit->setFocus();
}

void frmUsage::Save() {
    if (!Validate_Form()) return;
    if (IsNumeric(m_ui->lbl_Id->text().toStdString())) // set by PrepareEdit
        Check_4_Update();
    else
        Check_4_Save();
}

void frmUsage::Check_4_Save() {
    const UsageEntry entry = ReadForm();
    const UsageRecord usage = RecordOf(entry, 0);
    // Remembered here alone: the month of an edited record may be long past.
    if (SaveUnlessDuplicate(usage))
        m_app.LastUsage = {.Month = entry.Month.value_or(0), .Year = entry.Year, .Unit = usage.Unit};
}

void frmUsage::Check_4_Update() {
    const std::string id = m_ui->lbl_Id->text().toStdString();
    SaveUnlessDuplicate(RecordOf(ReadForm(), ParseInt16(id).value_or(0)));
}

bool frmUsage::SaveUnlessDuplicate(const UsageRecord& usage) {
    const Result<bool> isDuplicate = IsDuplicate(m_app, usage);
    if (ShowFailure(m_app, isDuplicate)) return false; // a duplicate cannot be ruled out
    if (*isDuplicate) {
        ShowFormErrors(m_app, UsageTexts::IsDuplicate);
        return false;
    }
    if (SaveUsage(m_app, usage)) return false;
    m_ui->lbl_result->setText(QStringLiteral("0"));
    hide(); // ends exec(), whose result is ignored
    return true;
}

int frmUsage::Show() {
    m_ui->lbl_result->clear();
    ShowModally(m_app, *this);
    return ResultOf(*m_ui->lbl_result);
}

int NewUsage(AppContext& app, QWidget* parent) {
    const Result<std::vector<MaterialRecord>> materials = ReadMaterials(app);
    if (ShowFailure(app, materials)) return -1;
    if (materials->empty()) {
        ShowFormErrors(app, UsageTexts::NeedsMaterials);
        return -1;
    }
    frmUsage window(app, *materials, UsageForHint(app), parent);
    window.PrepareNew();
    return window.Show();
}

int EditUsage(AppContext& app, std::int16_t usageId, QWidget* parent) {
    const Result<std::vector<UsageRecord>> found = ReadUsage(app, {.UsageId = usageId});
    if (ShowFailure(app, found)) return -1;
    if (found->empty()) {
        ShowFormErrors(app, UsageTexts::UsageNotFound);
        return -1;
    }
    const Result<std::vector<MaterialRecord>> materials = ReadMaterials(app);
    if (ShowFailure(app, materials)) return -1;
    if (materials->empty()) {
        ShowFormErrors(app, UsageTexts::MaterialsNotFound);
        return -1;
    }
    frmUsage window(app, *materials, UsageForHint(app), parent);
    window.PrepareEdit(found->front());
    return window.Show();
}
} // namespace mact
