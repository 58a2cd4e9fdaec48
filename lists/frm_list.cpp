#include "lists/frm_list.h"

#include "base/numbers.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/pictures.h"
#include "lists/frm_month_sheet.h"
#include "lists/ui_frm_list.h"
#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

namespace mact {
namespace {

constexpr int MaterialsHeightInTwips = 4560; // of the window without its filter
constexpr int TwipsPerInch = 1440;

// The captions of cmd_Filter. They are its state, too: a filter is applied while it reads Reset.
constexpr const char* ApplyFilter = "&Apply";
constexpr const char* ResetFilter = "&Reset";

} // namespace

frmList::frmList(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmList>()) {
    m_ui->setupUi(this);
    SelectByKeys(*m_ui->lst_Main);
    connect(m_ui->lst_Main, &QListWidget::itemSelectionChanged, this, &frmList::SetButtons);
    connect(m_ui->lst_Main, &QListWidget::itemClicked, this, &frmList::SetButtons);
    connect(m_ui->lst_Main, &QListWidget::itemDoubleClicked, this, &frmList::EditRecord);
    connect(m_ui->cmd_New, &QPushButton::clicked, this, &frmList::NewRecord);
    connect(m_ui->cmd_Edit, &QPushButton::clicked, this, &frmList::EditRecord);
    connect(m_ui->cmd_Delete, &QPushButton::clicked, this, &frmList::DeleteRecord);
    connect(m_ui->cmd_Import, &QPushButton::clicked, this, &frmList::ImportRecords);
    connect(m_ui->cmd_Export, &QPushButton::clicked, this, &frmList::ExportRecords);
    connect(m_ui->cmd_MonthSheet, &QPushButton::clicked, this, &frmList::OpenMonthSheet);
    connect(m_ui->cmd_Filter, &QPushButton::clicked, this, &frmList::ApplyOrResetFilter);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
    m_ui->cmd_Undo->Bind(app,
                         {.Whose = [this] { return Whose(); },
                          .IsUsed = [this] { return IsUsedMaterial(); },
                          .Reload = [this] { IsForMaterials() ? ReloadMaterialList() : ReloadUsageList(); }});
    const std::pair<QPushButton*, const char*> icons[] = {
        {m_ui->cmd_New,        "new"   },
        {m_ui->cmd_Edit,       "edit"  },
        {m_ui->cmd_Delete,     "delete"},
        {m_ui->cmd_Import,     "import"},
        {m_ui->cmd_Export,     "export"},
        {m_ui->cmd_MonthSheet, "usage" },
        {m_ui->cmd_Close,      "close" },
    };
    for (const auto& [button, name] : icons)
        button->setIcon(LineIcon(QString::fromLatin1(name)));
    SetButtons();
}

frmList::~frmList() = default;

void frmList::Set_Module(std::int16_t mode) {
    m_mode = mode;
    m_ui->cmd_Undo->ShowStep();
}

HistoryOf frmList::Whose() const {
    return {IsForMaterials() ? HistoryKind::Materials : HistoryKind::Usage, m_app.CurrentCompanyId};
}

/// Reads the usage when it is first asked, and once: it may be asked for each of an import's materials.
RecordIsUsed frmList::IsUsedMaterial() {
    return [this, used = std::optional<std::unordered_set<std::int16_t>>()](
               std::int16_t materialId) mutable -> Result<bool> {
        if (!used) {
            Result<std::unordered_set<std::int16_t>> read = ReadUsedMaterials(m_app);
            if (!read) return read.error();
            used = std::move(*read);
        }
        return used->contains(materialId);
    };
}

void frmList::Edit_Module() {}

void frmList::PrepareMaterials() {
    ReloadMaterialList();
    SelectListItem(*m_ui->lst_Main);
    m_ui->filter_frame->hide();
    m_ui->filter_frame->setEnabled(false);
    m_ui->cmd_MonthSheet->hide();
    resize(width(), MaterialsHeightInTwips * logicalDpiY() / TwipsPerInch);
    setWindowTitle(QStringLiteral("Maintain Material"));
    m_ui->FrameList->setTitle(QStringLiteral("Materials"));
}

void frmList::PrepareUsage() {
    // First, since the lines name the materials too: without them, that is told once and no line is made.
    const Result<std::vector<MaterialRecord>> materials = ReadMaterials(m_app);
    const bool hasMaterials = !ShowFailure(m_app, materials);
    std::vector<UsageRecord> usage; // all of it: the filter starts empty
    ListLines lines;
    if (FindUsage(m_app, {}, usage) && hasMaterials) FillUsageList(m_app, lines, usage);
    ShowList(lines);
    SelectListItem(*m_ui->lst_Main);
    ListLines materialLines;
    if (hasMaterials) FillMaterialList(materialLines, *materials, false);
    ShowLines(*m_ui->cbo_Materials, materialLines);
    ShowYears(usage);
    setWindowTitle(QStringLiteral("Maintain Usage"));
    m_ui->FrameList->setTitle(QStringLiteral("Usages"));
}

void frmList::ReloadMaterialList() {
    std::vector<MaterialRecord> materials;
    ListLines lines;
    if (FindMaterials(m_app, {}, materials)) FillMaterialList(lines, materials, true);
    ShowList(lines);
}

void frmList::Refresh_Usage_List() {
    std::vector<UsageRecord> usage;
    ListLines lines;
    const UsageFilter filter{.MaterialId = SelectedData(*m_ui->cbo_Materials),
                             .Year = SelectedText(*m_ui->cbo_Year)};
    if (FindUsage(m_app, filter, usage)) FillUsageList(m_app, lines, usage);
    ShowList(lines);
    SelectListItem(*m_ui->lst_Main);
}

void frmList::ReloadUsageList() {
    const Result<std::vector<UsageRecord>> usage = ReadUsage(m_app);
    if (usage) ShowYears(*usage); // Refresh_Usage_List shows the failure
    Refresh_Usage_List();
}

void frmList::ShowYears(const std::vector<UsageRecord>& usage) {
    ListLines years;
    FillUsageYears(years, usage);
    // The year of a filter stays, even if its last record is gone.
    const std::optional<std::string> selected = SelectedText(*m_ui->cbo_Year);
    if (selected && std::ranges::find(years, *selected, &ListLine::Text) == years.end())
        years.push_back({*selected, ParseInt32(*selected).value_or(0)});
    ShowLines(*m_ui->cbo_Year, years);
    if (selected) SelectListItem(*m_ui->cbo_Year, FromCodePage(*selected), false);
}

void frmList::ShowList(const ListLines& lines) {
    // Otherwise a button that is about to be disabled would pass the focus on to the next one.
    if (focusWidget() == m_ui->cmd_Edit || focusWidget() == m_ui->cmd_Delete) m_ui->lst_Main->setFocus();
    const int row = m_ui->lst_Main->currentRow();
    ShowLines(*m_ui->lst_Main, lines);
    // No line is selected, but the arrow keys go on from where they were.
    if (row >= 0)
        m_ui->lst_Main->setCurrentRow(std::min(row, m_ui->lst_Main->count() - 1),
                                      QItemSelectionModel::NoUpdate);
    SetButtons();
    m_ui->cmd_Undo->ShowStep();
}

void frmList::SetButtons() {
    SetListButtons(m_ui->cmd_New, m_ui->cmd_Import, m_ui->cmd_Edit, m_ui->cmd_Delete, m_ui->lst_Main);
}

void frmList::NewRecord() {
    // An editor returns 0 if it saved. Otherwise the list stays, with its selection.
    if (!IsForMaterials()) {
        if (NewUsage(m_app, this) == 0) ReloadUsageList();
    } else if (NewMaterial(m_app, this) == 0) {
        ReloadMaterialList();
        SelectListItem(*m_ui->lst_Main);
    }
}

void frmList::EditRecord() {
    if (SelectedRow(*m_ui->lst_Main) < 0) return;
    // Of usage, this may be a record that has no line of its own: see FillUsageList.
    const auto recordId =
        static_cast<std::int16_t>(m_ui->lst_Main->currentItem()->data(Qt::UserRole).toInt());
    if (!IsForMaterials()) {
        if (EditUsage(m_app, recordId, this) == 0) ReloadUsageList();
    } else if (EditMaterial(m_app, recordId, this) == 0) {
        ReloadMaterialList();
    }
}

void frmList::DeleteRecord() {
    if (SelectedRow(*m_ui->lst_Main) < 0) return;
    const QListWidgetItem& line = *m_ui->lst_Main->currentItem();
    const auto recordId = static_cast<std::int16_t>(line.data(Qt::UserRole).toInt());
    // The question claims too much, on purpose: the record keeps its slot.
    const std::string question =
        "Are you sure you want to delete " + line.text().toStdString() + "? This can not be undone.";
    if (m_app.Prompts.Show({question, PromptKind::Question, PromptButtons::YesNo}) != PromptAnswer::Yes)
        return;
    if (IsForMaterials()) {
        // A callback, since materials/ may not include usage/.
        const auto isUsed = [this](std::int16_t materialId) { return IsMaterialUsed(m_app, materialId); };
        if (!DeleteMaterial(m_app, recordId, isUsed)) ReloadMaterialList(); // true = not deleted
    } else if (!DeleteUsage(m_app, recordId)) {
        ReloadUsageList();
    }
}

void frmList::ImportRecords() {
    if (IsForMaterials()) {
        ShowMaterialImport(m_app, this);
        ReloadMaterialList();
    } else {
        ShowUsageImport(m_app, this);
        ReloadUsageList();
    }
}

void frmList::ExportRecords() {
    if (IsForMaterials())
        ShowMaterialExport(m_app, this);
    else
        ShowUsageExport(m_app, this);
}

void frmList::OpenMonthSheet() {
    if (ShowMonthSheet(m_app, this)) ReloadUsageList();
}

void frmList::ApplyOrResetFilter() {
    if (m_ui->cmd_Filter->text() == QLatin1String(ResetFilter)) {
        m_ui->cbo_Materials->setCurrentIndex(-1); // both before SetFilterApplied, which reloads the list
        m_ui->cbo_Year->setCurrentIndex(-1);
        SetFilterApplied(false);
    } else if (m_ui->cbo_Materials->currentIndex() < 0 && m_ui->cbo_Year->currentIndex() < 0) {
        m_app.Prompts.Show(
            {"Please select Material Id and/or Year to apply the filter.", PromptKind::Exclamation});
    } else {
        SetFilterApplied(true);
    }
}

void frmList::SetFilterApplied(bool isApplied) {
    // The choices are locked while the filter is applied, so they always describe the list.
    m_ui->cbo_Materials->setEnabled(!isApplied);
    m_ui->cbo_Year->setEnabled(!isApplied);
    m_ui->cmd_Filter->setText(QString::fromLatin1(isApplied ? ResetFilter : ApplyFilter));
    Refresh_Usage_List();
}

void ShowMaterialList(AppContext& app, QWidget* parent) {
    frmList window(app, parent);
    window.PrepareMaterials();
    window.Set_Module(1);
    ShowModally(app, window, QStringLiteral("frmList_Materials"));
}

void ShowUsageList(AppContext& app, QWidget* parent) {
    frmList window(app, parent);
    window.PrepareUsage();
    window.Set_Module(2);
    ShowModally(app, window, QStringLiteral("frmList_Usage"));
}
} // namespace mact
