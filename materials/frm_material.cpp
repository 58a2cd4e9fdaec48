#include "materials/frm_material.h"

#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/pictures.h"
#include "materials/frm_emission_factor_help.h"
#include "materials/frm_other_pollutants.h"
#include "materials/material_hints.h"
#include "materials/material_texts.h"
#include "materials/ui_frm_material.h"
#include "store/additional_names.h"
#include "store/frm_extra_pollutants_names.h"
#include "store/material_types.h"

#include <utility>

namespace mact {
namespace {

void ShowNames(QComboBox& combo, const std::vector<std::string>& names) {
    ListLines lines;
    for (const std::string& name : names)
        lines.push_back({name, 0});
    ShowLines(combo, lines);
}

void Focus(QWidget& box) {
    box.setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(&box)) edit->selectAll(); // typing replaces the text
}

} // namespace

frmMaterial::frmMaterial(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmMaterial>()),
      m_pollutants(std::make_unique<frmOtherPollutants>(app, this)) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    setWindowTitle(QString::fromLatin1(MaterialTexts::NewCaption));
    m_ui->lbl_Id->hide();     // the number of the material that is edited
    m_ui->lbl_result->hide(); // what Outcome reads
    m_ui->txt_CustomId->setFocus();
    m_ui->img_help->setIcon(LineIcon(QStringLiteral("help")));
    for (QLineEdit* edit :
         {m_ui->txt_CustomId, m_ui->txt_Description, m_ui->txt_density, m_ui->txt_HapContents,
          m_ui->txt_filler, m_ui->txt_EmissionFactor, m_ui->txt_Comments}) {
        AcceptCodePageText(*edit);
        ShowDisabledInWindowColour(*edit);
    }
    // Anything but six names counts as undefined, so that ShowPollutants asks for them.
    if (!m_pollutants->SetNames(m_app.AdditionalNames)) m_app.AdditionalNames.clear();
    std::vector<std::string> types;
    GetMaterialTypes(m_app, types, true);
    ShowNames(*m_ui->cbo_MaterialType, types);
    FollowEntries();

    // A choice by the user arrives as currentIndexChanged and then as activated. Choosing the same type again
    // arrives as activated alone, and counts too: the flag tells whether the choice was handled already.
    connect(m_ui->cbo_MaterialType, &QComboBox::currentIndexChanged, this, [this] {
        m_hasTypeJustChanged = true;
        ShowMethodsOfType();
    });
    connect(m_ui->cbo_MaterialType, &QComboBox::activated, this, [this] {
        if (!std::exchange(m_hasTypeJustChanged, false)) ShowMethodsOfType();
    });
    connect(m_ui->chk_EmissionFactor, &QCheckBox::toggled, this, &frmMaterial::ShowEmissionFactor);
    connect(m_ui->img_help, &QToolButton::clicked, this, [this] { ShowEmissionFactorHelp(m_app, this); });
    connect(m_ui->cmd_Additional, &QPushButton::clicked, this, &frmMaterial::ShowPollutants);
    connect(m_ui->cmd_Save, &QPushButton::clicked, this, &frmMaterial::Save);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmMaterial::~frmMaterial() = default;

void frmMaterial::PrepareEdit(const MaterialRecord& material) {
    const auto text = [](const std::string& field) { return FromCodePage(Trim(field)); };
    const auto number = [](double field) { return FromCodePage(NumberText(field)); };
    // The type first, because choosing it fills the methods and resets the filler.
    SelectListItem(*m_ui->cbo_MaterialType, text(material.MaterialType), false);
    m_hasTypeJustChanged = false; // a choice made here is not followed by activated
    SelectListItem(*m_ui->cbo_ApplicationType, text(material.ApplicationMethod), false);
    m_ui->txt_CustomId->setText(text(material.CustomId));
    m_ui->txt_density->setText(number(material.Density));
    m_ui->txt_Description->setText(text(material.Description));
    m_ui->txt_HapContents->setText(number(material.HapContent));
    // Ticked before the texts are set, because ticking empties both boxes.
    if (material.EmissionFactor != 0) {
        m_ui->chk_EmissionFactor->setChecked(true);
        m_ui->txt_EmissionFactor->setText(number(material.EmissionFactor));
    }
    m_ui->txt_Comments->setText(text(material.Comments));
    m_ui->lbl_Id->setText(QString::number(material.MaterialId));
    setWindowTitle(QString::fromLatin1(MaterialTexts::UpdateCaption));
    m_pollutants->SetValues(material);
    // Whatever the type, on purpose: a filled resin without filler gets one only if its type is chosen again.
    ShowFiller(number(material.Filler), material.Filler != 0);
}

TypedMaterial frmMaterial::ReadForm() const {
    return {.CustomId = ToCodePage(m_ui->txt_CustomId->text()),
            .Description = ToCodePage(m_ui->txt_Description->text()),
            .MaterialType = SelectedText(*m_ui->cbo_MaterialType),
            .ApplicationMethod = SelectedText(*m_ui->cbo_ApplicationType),
            .Density = ToCodePage(m_ui->txt_density->text()),
            .HapContent = ToCodePage(m_ui->txt_HapContents->text()),
            .HasEmissionFactor = m_ui->chk_EmissionFactor->isChecked(),
            .EmissionFactor = ToCodePage(m_ui->txt_EmissionFactor->text()),
            .Comments = ToCodePage(m_ui->txt_Comments->text()),
            .CanHaveFiller = m_ui->txt_filler->isEnabled(),
            .Filler = ToCodePage(m_ui->txt_filler->text()),
            .Pollutants = m_pollutants->Values()};
}

QWidget& frmMaterial::BoxOf(MaterialField field) const {
    QWidget* const boxes[] = {m_ui->txt_CustomId,        m_ui->txt_Description, m_ui->cbo_MaterialType,
                              m_ui->cbo_ApplicationType, m_ui->txt_density,     m_ui->txt_HapContents,
                              m_ui->txt_EmissionFactor,  m_ui->txt_filler}; // in the order of MaterialField
    QWidget& box = *boxes[static_cast<std::size_t>(field)];
    // Without methods their box is disabled: only another type can bring some.
    return &box == m_ui->cbo_ApplicationType && !box.isEnabled() ? *m_ui->cbo_MaterialType : box;
}

void frmMaterial::ShowMethodsOfType() {
    const std::optional<std::string> type = SelectedText(*m_ui->cbo_MaterialType);
    if (type) {
        std::vector<std::string> methods;
        GetApplicationMethods(m_app, methods, true, type);
        ShowNames(*m_ui->cbo_ApplicationType, methods);
        SelectListItem(*m_ui->cbo_ApplicationType);
    }
    const bool hasMethods = m_ui->cbo_ApplicationType->count() > 0;
    m_ui->cbo_ApplicationType->setEnabled(hasMethods);
    m_ui->lbl_ApplicationMethod->setEnabled(hasMethods);
    const bool isFilled = type && TakesFiller(*type);
    ShowFiller(isFilled ? QString() : QStringLiteral("0"), isFilled); // empty: the user must enter one
}

void frmMaterial::ShowFiller(const QString& filler, bool canBeTyped) {
    m_ui->txt_filler->setText(filler);
    m_ui->txt_filler->setEnabled(canBeTyped);
    ShowHints();
}

void frmMaterial::ShowEmissionFactor(bool isTicked) {
    m_ui->txt_EmissionFactor->clear();
    m_ui->txt_Comments->clear();
    for (QWidget* control : std::initializer_list<QWidget*>{
             m_ui->txt_EmissionFactor, m_ui->lbl_EmissionFactor, m_ui->txt_Comments, m_ui->lbl_Basis})
        control->setEnabled(isTicked);
}

/// Shows the hints, from now on.
void frmMaterial::FollowEntries() {
    // Without the table there are no hints on it: what is wrong was just told by those who fill the types.
    if (Result<std::vector<HapContentRecord>> types = ReadHapContents(m_app)) m_types = std::move(*types);
    m_ui->lbl_Figures->SetFields({m_ui->cbo_MaterialType, m_ui->cbo_ApplicationType, m_ui->txt_filler});
    m_ui->lbl_Doubts->SetFields({m_ui->txt_density, m_ui->txt_HapContents});
    MakeRoomForLines(*m_ui->lbl_Figures, 2); // so that the window stays while a number is typed
    MakeRoomForLines(*m_ui->lbl_Doubts, 2);
    for (const QLineEdit* edit : {m_ui->txt_density, m_ui->txt_HapContents, m_ui->txt_filler})
        connect(edit, &QLineEdit::textChanged, this, &frmMaterial::ShowHints);
    for (const QComboBox* combo : {m_ui->cbo_MaterialType, m_ui->cbo_ApplicationType})
        connect(combo, &QComboBox::currentIndexChanged, this, &frmMaterial::ShowHints);
    connect(m_ui->chk_EmissionFactor, &QCheckBox::toggled, this, &frmMaterial::ShowHints);
}

void frmMaterial::ShowHints() {
    const MaterialHints hints = HintsOn(ReadForm(), m_types);
    m_ui->lbl_Figures->Show(hints.Figures);
    m_ui->lbl_Doubts->Show(hints.Doubts);
}

void frmMaterial::ShowPollutants() {
    if (m_app.AdditionalNames.empty()) {
        const Prompt question{std::string(MaterialTexts::AskToDefineNames), PromptKind::Question,
                              PromptButtons::YesNo};
        if (m_app.Prompts.Show(question) != PromptAnswer::Yes) return;
        ShowAdditionalNames(m_app, this);
        LoadAdditionalNames(m_app); // the window saves them, but leaves loading to its opener
        if (!m_pollutants->SetNames(m_app.AdditionalNames)) {
            m_app.AdditionalNames.clear(); // so that the next click asks again
            return;
        }
    }
    ShowModally(m_app, *m_pollutants);
}

bool frmMaterial::Validate_Form() {
    const TypedMaterial material = ReadForm();
    const FormErrors errors = CheckMaterialEntry(material);
    if (errors.IsEmpty()) return true;
    ShowFormErrors(m_app, errors.Text());
    Focus(BoxOf(*FirstFaultyField(material)));
    return false;
}

void frmMaterial::Save() {
    if (!Validate_Form()) return;
    if (ParseInt16(m_ui->lbl_Id->text().toStdString())) // set by PrepareEdit
        Check_4_Update();
    else
        Check_4_Save();
}

void frmMaterial::Check_4_Save() {
    const MaterialEntry entry = ToMaterialEntry(ReadForm());
    const Result<std::vector<MaterialRecord>> sameId = ReadMaterials(m_app, {.CustomId = entry.CustomId});
    if (ShowFailure(m_app, sameId)) return; // a duplicate cannot be ruled out
    if (sameId->empty()) {
        CloseWhenSaved(SaveMaterial(m_app, entry));
    } else {
        ShowFormErrors(m_app, MaterialTexts::IdExists);
        Focus(*m_ui->txt_CustomId);
    }
}

// No duplicate check, on purpose: only a new material is refused a Material ID that is taken.
void frmMaterial::Check_4_Update() {
    const std::optional<std::int16_t> materialId = ParseInt16(m_ui->lbl_Id->text().toStdString());
    CloseWhenSaved(SaveMaterial(m_app, ToMaterialEntry(ReadForm()), materialId));
}

void frmMaterial::CloseWhenSaved(Failed hasFailed) {
    if (hasFailed) return;
    m_ui->lbl_result->setText(QStringLiteral("0"));
    hide(); // ends exec(), whose result the opener ignores
}

std::int16_t frmMaterial::Outcome() const {
    return static_cast<std::int16_t>(ResultOf(*m_ui->lbl_result));
}

std::int16_t NewMaterial(AppContext& app, QWidget* parent) {
    frmMaterial window(app, parent);
    ShowModally(app, window);
    return window.Outcome();
}

std::int16_t EditMaterial(AppContext& app, std::int16_t materialId, QWidget* parent) {
    const Result<std::vector<MaterialRecord>> found = ReadMaterials(app, {.MaterialId = materialId});
    if (ShowFailure(app, found)) return -1;
    if (found->empty()) {
        ShowFormErrors(app, MaterialTexts::MaterialNotFound);
        return -1;
    }
    frmMaterial window(app, parent);
    window.PrepareEdit(found->front());
    ShowModally(app, window);
    return window.Outcome();
}
} // namespace mact
