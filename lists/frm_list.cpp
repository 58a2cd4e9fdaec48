#include "lists/frm_list.h"

#include "base/numbers.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/pictures.h"
#include "lists/list_texts.h"
#include "lists/ui_frm_list.h"
#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace {

constexpr int MaterialsHeightInTwips = 4560;
constexpr int TwipsPerInch = 1440;

} // namespace

frmList::frmList(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmList>()) {
    m_ui->setupUi(this);
    SelectByKeys(*m_ui->lst_Main);
    connect(m_ui->lst_Main, &QListWidget::itemSelectionChanged, this, &frmList::Set_Buttons);
    connect(m_ui->lst_Main, &QListWidget::itemClicked, this, &frmList::Set_Buttons);
    connect(m_ui->lst_Main, &QListWidget::itemDoubleClicked, this, &frmList::Edit_Record);
    connect(m_ui->cmd_New, &QPushButton::clicked, this, &frmList::New_Record);
    connect(m_ui->cmd_Edit, &QPushButton::clicked, this, &frmList::Edit_Record);
    connect(m_ui->cmd_Delete, &QPushButton::clicked, this, &frmList::Delete_Record);
    connect(m_ui->cmd_Import, &QPushButton::clicked, this, &frmList::Import_Records);
    connect(m_ui->cmd_Export, &QPushButton::clicked, this, &frmList::Export_Records);
    connect(m_ui->cmd_Filter, &QPushButton::clicked, this, &frmList::Apply_Or_Reset_Filter);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
    const std::pair<QPushButton*, const char*> icons[] = {
        {m_ui->cmd_New,    "new"   },
        {m_ui->cmd_Edit,   "edit"  },
        {m_ui->cmd_Delete, "delete"},
        {m_ui->cmd_Import, "import"},
        {m_ui->cmd_Export, "export"},
        {m_ui->cmd_Close,  "close" },
    };
    for (const auto& [button, name] : icons)
        button->setIcon(LineIcon(QString::fromLatin1(name)));
    Set_Buttons();
}

frmList::~frmList() = default;

void frmList::Set_Module(std::int16_t mode) {
    m_mode = mode;
}

void frmList::Edit_Module() {}

void frmList::Prepare_Materials() {
    Reload_Material_List();
    SelectListItem(*m_ui->lst_Main);
    m_ui->filter_frame->hide();
    m_ui->filter_frame->setEnabled(false);
    resize(width(), MaterialsHeightInTwips * logicalDpiY() / TwipsPerInch);
    setWindowTitle(QString::fromLatin1(ListTexts::MaterialsTitle));
    m_ui->FrameList->setTitle(QString::fromLatin1(ListTexts::MaterialsFrame));
}

void frmList::Prepare_Usage() {
    std::vector<UsageRecord> usage;
    ListLines lines;
    if (FindUsage(m_app, {}, usage)) FillUsageList(m_app, lines, usage);
    Show_List(lines);
    SelectListItem(*m_ui->lst_Main);
    std::vector<MaterialRecord> materials;
    ListLines materialLines;
    if (FindMaterials(m_app, {}, materials)) FillMaterialList(materialLines, materials, false);
    ShowLines(*m_ui->cbo_Materials, materialLines);
    Show_Years(usage);
    setWindowTitle(QString::fromLatin1(ListTexts::UsageTitle));
    m_ui->FrameList->setTitle(QString::fromLatin1(ListTexts::UsageFrame));
}

void frmList::Reload_Material_List() {
    std::vector<MaterialRecord> materials;
    ListLines lines;
    if (FindMaterials(m_app, {}, materials)) FillMaterialList(lines, materials, true);
    Show_List(lines);
}

void frmList::Refresh_Usage_List() {
    std::vector<UsageRecord> usage;
    ListLines lines;
    const UsageFilter filter{.MaterialId = SelectedData(*m_ui->cbo_Materials),
                             .Year = SelectedText(*m_ui->cbo_Year)};
    if (FindUsage(m_app, filter, usage)) FillUsageList(m_app, lines, usage);
    Show_List(lines);
    SelectListItem(*m_ui->lst_Main);
}

void frmList::Reload_Usage_List() {
    const Result<std::vector<UsageRecord>> usage = ReadUsage(m_app);
    if (usage) Show_Years(*usage); // the list itself says why not
    Refresh_Usage_List();
}

void frmList::Show_Years(const std::vector<UsageRecord>& usage) {
    ListLines years;
    FillUsageYears(years, usage);
    // The year of a filter stays, also when its last record is gone.
    const std::optional<std::string> selected = SelectedText(*m_ui->cbo_Year);
    if (selected && std::ranges::find(years, *selected, &ListLine::Text) == years.end())
        years.push_back({*selected, ParseInt32(*selected).value_or(0)});
    ShowLines(*m_ui->cbo_Year, years);
    if (selected) SelectListItem(*m_ui->cbo_Year, FromCodePage(*selected), false);
}

void frmList::Show_List(const ListLines& lines) {
    // From a button that is about to be disabled the focus would go on to the next one.
    if (focusWidget() == m_ui->cmd_Edit || focusWidget() == m_ui->cmd_Delete) m_ui->lst_Main->setFocus();
    const int row = m_ui->lst_Main->currentRow();
    ShowLines(*m_ui->lst_Main, lines);
    // The arrow keys go on from where they were, though no line is selected.
    if (row >= 0)
        m_ui->lst_Main->setCurrentRow(std::min(row, m_ui->lst_Main->count() - 1),
                                      QItemSelectionModel::NoUpdate);
    Set_Buttons();
}

void frmList::Set_Buttons() {
    SetListButtons(m_ui->cmd_New, m_ui->cmd_Import, m_ui->cmd_Edit, m_ui->cmd_Delete, m_ui->lst_Main);
}

void frmList::New_Record() {
    if (!IsForMaterials()) {
        if (NewUsage(m_app, this) == 0) Reload_Usage_List();
    } else if (NewMaterial(m_app, this) == 0) {
        Reload_Material_List();
        SelectListItem(*m_ui->lst_Main);
    }
}

void frmList::Edit_Record() {
    if (SelectedRow(*m_ui->lst_Main) < 0) return;
    const auto recordId =
        static_cast<std::int16_t>(m_ui->lst_Main->currentItem()->data(Qt::UserRole).toInt());
    if (!IsForMaterials()) {
        if (EditUsage(m_app, recordId, this) == 0) Reload_Usage_List();
    } else if (EditMaterial(m_app, recordId, this) == 0) {
        Reload_Material_List();
    }
}

void frmList::Delete_Record() {
    if (SelectedRow(*m_ui->lst_Main) < 0) return;
    const QListWidgetItem& line = *m_ui->lst_Main->currentItem();
    const auto recordId = static_cast<std::int16_t>(line.data(Qt::UserRole).toInt());
    const std::string question = std::string(ListTexts::AskDelete) + line.text().toStdString() +
                                 std::string(ListTexts::CannotBeUndone);
    if (m_app.Prompts.Show({question, PromptKind::Question, PromptButtons::YesNo}) != PromptAnswer::Yes)
        return;
    if (IsForMaterials()) {
        const auto isUsed = [this](std::int16_t materialId) { return IsMaterialUsed(m_app, materialId); };
        if (!DeleteMaterial(m_app, recordId, isUsed)) Reload_Material_List();
    } else if (!DeleteUsage(m_app, recordId)) {
        Reload_Usage_List();
    }
}

void frmList::Import_Records() {
    if (IsForMaterials()) {
        ShowMaterialImport(m_app, this);
        Reload_Material_List();
    } else {
        ShowUsageImport(m_app, this);
        Reload_Usage_List();
    }
}

void frmList::Export_Records() {
    if (IsForMaterials())
        ShowMaterialExport(m_app, this);
    else
        ShowUsageExport(m_app, this);
}

void frmList::Apply_Or_Reset_Filter() {
    if (m_ui->cmd_Filter->text() == QLatin1String(ListTexts::Reset)) {
        m_ui->cbo_Materials->setCurrentIndex(-1);
        m_ui->cbo_Year->setCurrentIndex(-1);
        Set_Filter_Applied(false);
    } else if (m_ui->cbo_Materials->currentIndex() < 0 && m_ui->cbo_Year->currentIndex() < 0) {
        m_app.Prompts.Show({std::string(ListTexts::NeedsFilter), PromptKind::Exclamation});
    } else {
        Set_Filter_Applied(true);
    }
}

void frmList::Set_Filter_Applied(bool isApplied) {
    m_ui->cbo_Materials->setEnabled(!isApplied);
    m_ui->cbo_Year->setEnabled(!isApplied);
    m_ui->cmd_Filter->setText(QString::fromLatin1(isApplied ? ListTexts::Reset : ListTexts::Apply));
    Refresh_Usage_List();
}

void ShowMaterialList(AppContext& app, QWidget* parent) {
    frmList window(app, parent);
    window.Prepare_Materials();
    window.Set_Module(1);
    ShowModally(app, window, QStringLiteral("frmList_Materials"));
}

void ShowUsageList(AppContext& app, QWidget* parent) {
    frmList window(app, parent);
    window.Prepare_Usage();
    window.Set_Module(2);
    ShowModally(app, window, QStringLiteral("frmList_Usage"));
}
