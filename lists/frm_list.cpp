#include "lists/frm_list.h"

#include "base/numbers.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/pictures.h"
#include "lists/frm_month_sheet.h"
#include "lists/list_status.h"
#include "lists/ui_frm_list.h"
#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QShortcut>

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

namespace mact {
namespace {

constexpr int MaterialsHeightInTwips = 4560; // of the window without its filter
constexpr int TwipsPerInch = 1440;

// The captions of cmd_Filter. They are its state, too: a filter is applied while it reads Reset.
constexpr const char* ApplyFilter = "&Apply";
constexpr const char* ResetFilter = "&Reset";

constexpr const char* EmptyMaterials =
    "No materials yet.\nNew (Ctrl+N) enters one, Import reads a file of them.";
constexpr const char* EmptyUsage =
    "No usage yet.\nNew (Ctrl+N) enters a record, Month sheet a whole month, Import reads a file.";
constexpr const char* EmptyUsageWithoutMaterials =
    "No usage yet, and no materials.\nClose this window and enter materials first.";
constexpr const char* EmptyFilter = "The filter lets no record pass.\nReset shows all.";
// An empty list is not always one without records.
constexpr const char* UnreadMaterials = "The materials cannot be read.";
constexpr const char* UnreadUsage = "The usage cannot be read.";
constexpr const char* UnlistedUsage = "The usage cannot be listed without its materials.";

} // namespace

frmList::frmList(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmList>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    MakeCopyable(*m_ui->lbl_Status);
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
    m_ui->cmd_Undo->Bind(app, {.Whose = [this] { return Whose(); },
                               .IsUsed = [this] { return IsUsedMaterial(); },
                               .Reload = [this] { ReloadList(); },
                               .Say = [this](const QString& text) { ShowStatus(text); }});
    m_ui->wdg_Search->Bind(*m_ui->lst_Main);
    AddKeys();
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

void frmList::AddKeys() {
    const auto add = [](QWidget* where, const QKeySequence& keys, QPushButton* button) {
        const auto context = qobject_cast<QListWidget*>(where) ? Qt::WidgetShortcut : Qt::WindowShortcut;
        connect(new QShortcut(keys, where, nullptr, nullptr, context), &QShortcut::activated, button,
                [button] { button->click(); });
        button->setToolTip(keys.toString(QKeySequence::NativeText));
    };
    add(this, QKeySequence(Qt::CTRL | Qt::Key_N), m_ui->cmd_New);
    add(this, QKeySequence(Qt::Key_F2), m_ui->cmd_Edit);
    add(m_ui->lst_Main, QKeySequence(Qt::Key_Delete), m_ui->cmd_Delete); // boxes have it for their text
}

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
    m_emptyUsage = hasMaterials && materials->empty() ? EmptyUsageWithoutMaterials : EmptyUsage;
    const Result<std::vector<UsageRecord>> usage = ReadUsage(m_app); // all of it: the filter starts empty
    ShowFailure(m_app, usage);
    m_records = usage ? usage->size() : 0;
    if (hasMaterials)
        ShowUsage(usage);
    else
        ShowUnlisted(UnlistedUsage);
    ListLines materialLines;
    if (hasMaterials) FillMaterialList(materialLines, *materials, false);
    ShowLines(*m_ui->cbo_Materials, materialLines);
    if (usage) ShowYears(*usage);
    setWindowTitle(QStringLiteral("Maintain Usage"));
    m_ui->FrameList->setTitle(QStringLiteral("Usages"));
}

void frmList::ReloadList() {
    if (IsForMaterials())
        ReloadMaterialList();
    else
        ReloadUsageList();
}

std::vector<MaterialRecord> frmList::ReloadMaterialList() {
    Result<std::vector<MaterialRecord>> materials = ReadMaterials(m_app);
    m_records = materials ? materials->size() : 0;
    if (ShowFailure(m_app, materials)) {
        ShowUnlisted(UnreadMaterials);
        return {};
    }
    ListLines lines;
    FillMaterialList(lines, *materials, true);
    m_ui->lst_Main->SetEmptyText(QString::fromLatin1(EmptyMaterials));
    ShowList(lines);
    ShowStatus(FromUtf8(ListedText(m_records, m_records, "material")));
    return std::move(*materials);
}

void frmList::Refresh_Usage_List() {
    const Result<std::vector<UsageRecord>> usage = ReadUsage(
        m_app, {.MaterialId = SelectedData(*m_ui->cbo_Materials), .Year = SelectedText(*m_ui->cbo_Year)});
    ShowFailure(m_app, usage);
    ShowUsage(usage);
}

std::vector<UsageRecord> frmList::ReloadUsageList() {
    Result<std::vector<UsageRecord>> usage = ReadUsage(m_app);
    if (usage) { // Refresh_Usage_List shows the failure
        ShowYears(*usage);
        m_records = usage->size();
    }
    Refresh_Usage_List();
    return usage ? std::move(*usage) : std::vector<UsageRecord>();
}

void frmList::ShowUnlisted(const char* why) {
    m_ui->lst_Main->SetEmptyText(QString::fromLatin1(why));
    ShowList({});
    ShowStatus(QString::fromLatin1(why));
}

void frmList::ShowUsage(const Result<std::vector<UsageRecord>>& read) {
    if (!read) return ShowUnlisted(UnreadUsage);
    const std::vector<UsageRecord>& usage = *read;
    const UsageLines lines = usage.empty() ? UsageLines() : ListUsage(m_app, usage);
    if (!usage.empty() && lines.Lines.empty()) return ShowUnlisted(UnlistedUsage); // it has said why
    const bool isFiltered = m_ui->cmd_Filter->text() == QLatin1String(ResetFilter);
    m_ui->lst_Main->SetEmptyText(QString::fromLatin1(isFiltered ? EmptyFilter : m_emptyUsage));
    QStringList quantities;
    quantities.reserve(static_cast<qsizetype>(lines.Records.size()));
    for (const std::size_t place : lines.Records)
        quantities << FromUtf8(QuantityInWords(usage[place]));
    ShowList(lines.Lines, quantities);
    SelectListItem(*m_ui->lst_Main);
    ShowStatus(FromUtf8(ListedText(usage.size(), std::max(m_records, usage.size()), "record")));
}

void frmList::ShowStatus(const QString& text) {
    m_ui->lbl_Status->setText(text);
    m_ui->lst_Main->Describe(text); // screen readers are told of the change
}

void frmList::ShowSavedMaterial(const std::vector<MaterialRecord>& materials, std::int16_t materialId) {
    const auto saved = std::ranges::find(materials, materialId, &MaterialRecord::MaterialId);
    if (saved == materials.end()) return; // another copy has deleted it since
    ListLines line;
    FillMaterialList(line, {*saved}, true);
    ShowStatus(FromCodePage("Saved " + line.front().Text + "; ") +
               FromUtf8(ListedText(m_records, m_records, "material")));
}

void frmList::ShowSavedUsage(const std::vector<UsageRecord>& usage, std::int16_t usageId) {
    const auto saved = std::ranges::find(usage, usageId, &UsageRecord::UsageId);
    const Result<MaterialIds> materialIds = ReadMaterialIds(m_app);
    if (saved == usage.end() || !materialIds) return; // the list has told of a failure
    QString text =
        FromUtf8(SavedUsageText(*saved, (*materialIds)[saved->MaterialId].value_or(std::string()), usage));
    if (!IsListed(usageId)) text += QStringLiteral("; hidden by the filter");
    ShowStatus(text);
}

bool frmList::IsListed(std::int16_t recordId) const {
    for (int row = 0; row < m_ui->lst_Main->count(); ++row)
        if (m_ui->lst_Main->item(row)->data(Qt::UserRole).toInt() == recordId) return true;
    return false;
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

void frmList::ShowList(const ListLines& lines, const QStringList& details) {
    // Otherwise a button that is about to be disabled would pass the focus on to the next one.
    if (focusWidget() == m_ui->cmd_Edit || focusWidget() == m_ui->cmd_Delete) m_ui->lst_Main->setFocus();
    const int row = m_ui->lst_Main->currentRow();
    ShowLines(*m_ui->lst_Main, lines, details);
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
    // An editor returns 0 if it saved. Otherwise the list stays, with its selection. What is new has the
    // highest number.
    if (!IsForMaterials()) {
        if (NewUsage(m_app, this) != 0) return;
        const std::vector<UsageRecord> usage = ReloadUsageList();
        const auto newest = std::ranges::max_element(usage, {}, &UsageRecord::UsageId);
        if (newest != usage.end()) ShowSavedUsage(usage, newest->UsageId);
    } else if (NewMaterial(m_app, this) == 0) {
        const std::vector<MaterialRecord> materials = ReloadMaterialList();
        SelectListItem(*m_ui->lst_Main);
        const auto newest = std::ranges::max_element(materials, {}, &MaterialRecord::MaterialId);
        if (newest != materials.end()) ShowSavedMaterial(materials, newest->MaterialId);
    }
}

void frmList::EditRecord() {
    if (SelectedRow(*m_ui->lst_Main) < 0) return;
    // Of usage, this may be a record that has no line of its own: see FillUsageList.
    const auto recordId =
        static_cast<std::int16_t>(m_ui->lst_Main->currentItem()->data(Qt::UserRole).toInt());
    if (!IsForMaterials()) {
        if (EditUsage(m_app, recordId, this) == 0) ShowSavedUsage(ReloadUsageList(), recordId);
    } else if (EditMaterial(m_app, recordId, this) == 0) {
        ShowSavedMaterial(ReloadMaterialList(), recordId);
    }
}

void frmList::DeleteRecord() {
    if (SelectedRow(*m_ui->lst_Main) < 0) return;
    const QListWidgetItem& line = *m_ui->lst_Main->currentItem();
    const auto recordId = static_cast<std::int16_t>(line.data(Qt::UserRole).toInt());
    const QString text = line.text();
    // The question claims too much, on purpose: the record keeps its slot.
    const std::string question =
        "Are you sure you want to delete " + text.toStdString() + "? This can not be undone.";
    if (m_app.Prompts.Show({question, PromptKind::Question, PromptButtons::YesNo}) != PromptAnswer::Yes)
        return;
    if (IsForMaterials()) {
        // A callback, since materials/ may not include usage/.
        const auto isUsed = [this](std::int16_t materialId) { return IsMaterialUsed(m_app, materialId); };
        if (DeleteMaterial(m_app, recordId, isUsed)) return; // true = not deleted
    } else if (DeleteUsage(m_app, recordId)) {
        return;
    }
    ReloadList();
    ShowStatus(QStringLiteral("Deleted ") + text + QStringLiteral("; ") + m_ui->lbl_Status->text());
}

void frmList::ImportRecords() {
    if (IsForMaterials())
        ShowMaterialImport(m_app, this);
    else
        ShowUsageImport(m_app, this);
    ReloadAfterMany();
}

void frmList::ExportRecords() {
    if (IsForMaterials())
        ShowMaterialExport(m_app, this);
    else
        ShowUsageExport(m_app, this);
}

void frmList::OpenMonthSheet() {
    if (ShowMonthSheet(m_app, this)) ReloadAfterMany();
}

void frmList::ReloadAfterMany() {
    const std::size_t before = m_records;
    ReloadList();
    if (m_records > before)
        ShowStatus(m_ui->lbl_Status->text() +
                   QStringLiteral(", %1 more than before").arg(m_records - before));
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
