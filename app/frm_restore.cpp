#include "app/frm_restore.h"

#include "app/backup.h"
#include "app/restore.h"
#include "app/ui_frm_restore.h"
#include "base/messages.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "store/data_folder.h"

#include <QAccessible>
#include <QHeaderView>

#include <algorithm>
#include <utility>

namespace mact {
namespace {

enum Columns { Set, Date, Companies, Records, Check, State, ColumnCount };

constexpr std::size_t MostFindings = 200; // that are shown of a set
constexpr std::size_t MostSentences = 10; // in a question

QString Count(std::size_t count, const char* one, const char* more) {
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : more));
}

QString DetailsOf(const SetDescription& set) {
    QStringList lines = {FromPath(set.Folder)};
    if (!set.Faults.empty()) lines += {QString(), QStringLiteral("The set is cut or incomplete:")};
    for (const std::string& fault : set.Faults)
        lines += FromUtf8(fault);
    if (!set.Findings.empty()) lines += {QString(), QStringLiteral("What the check finds in it:")};
    for (std::size_t number = 0; number < std::min(set.Findings.size(), MostFindings); ++number)
        lines += FromUtf8(set.Findings[number]);
    if (set.Findings.size() > MostFindings)
        lines += QStringLiteral("... and %1 more").arg(set.Findings.size() - MostFindings);
    if (set.Faults.empty() && set.Findings.empty()) lines += QStringLiteral("Nothing is wrong with it.");
    return lines.join(u'\n');
}

/// The set's number, or the name of a folder that has none.
QString ShortNameOf(const std::filesystem::path& set) {
    const std::string name = PathText(set.filename());
    const bool hasNumber = name.starts_with(BackupSetPrefix);
    return FromUtf8(hasNumber ? std::string_view(name).substr(BackupSetPrefix.size()) : name);
}

/// Of a folder that the user has chosen: the set itself, or the sets in it.
Result<std::vector<FoundSet>> SetsAt(const std::filesystem::path& folder) {
    const bool isSet = PathText(folder.filename()).starts_with(BackupSetPrefix) ||
                       IsFileAt(folder / HapContentsName) || IsFileAt(folder / CompaniesName);
    if (!isSet) return FindBackupSetsIn(folder);
    return std::vector<FoundSet>{
        {folder, NewestTimeIn(folder)}
    };
}

bool Asks(AppContext& app, const std::string& first, const std::vector<std::string>& sentences,
          const std::string& question) {
    std::string text = first + "\r\n\r\n";
    for (std::size_t number = 0; number < std::min(sentences.size(), MostSentences); ++number)
        text += "- " + sentences[number] + "\r\n";
    if (sentences.size() > MostSentences)
        text += "- ... and " + std::to_string(sentences.size() - MostSentences) + " more\r\n";
    return app.Prompts.Show({text + "\r\n" + question, PromptKind::Question, PromptButtons::YesNo}) ==
           PromptAnswer::Yes;
}

} // namespace

frmRestore::frmRestore(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmRestore>()) {
    m_ui->setupUi(this);
    m_steps.setObjectName(QStringLiteral("tmr_Steps"));
    m_steps.setSingleShot(true);
    MakeRoom();
    ConnectControls();
    EnableButtons();
    m_ui->tbl_Sets->setFocus();
}

frmRestore::~frmRestore() = default;

void frmRestore::MakeRoom() {
    QTableWidget& table = *m_ui->tbl_Sets;
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    QHeaderView& header = *table.horizontalHeader();
    const std::pair<int, const char*> widest[] = {
        {Set,       "12345"                               },
        {Date,      "2005-03-31 17:05"                    },
        {Companies, "Companies, their names"              }, // if there is no room to stretch it in
        {Records,   "32767 materials, 32767 usage records"},
        {Check,     "100000 findings"                     },
        {State,     "cut or incomplete"                   },
    };
    for (const auto& [column, text] : widest)
        table.setColumnWidth(column, fontMetrics().horizontalAdvance(QLatin1String(text)) +
                                         2 * fontMetrics().averageCharWidth());
    header.setSectionResizeMode(Companies, QHeaderView::Stretch);
    header.setMinimumSectionSize(fontMetrics().averageCharWidth() * 10);
    MakeRoomForLines(*m_ui->lbl_Status, 3);
    MakeCopyable(*m_ui->lbl_Status);
}

void frmRestore::ConnectControls() {
    connect(&m_steps, &QTimer::timeout, this, &frmRestore::Step);
    connect(m_ui->tbl_Sets, &QTableWidget::itemSelectionChanged, this, &frmRestore::ShowSelected);
    connect(m_ui->chk_Confirm, &QCheckBox::toggled, this, &frmRestore::EnableButtons);
    connect(m_ui->cmd_Folder, &QPushButton::clicked, this, &frmRestore::ChooseFolder);
    connect(m_ui->cmd_Restore, &QPushButton::clicked, this, &frmRestore::Restore);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
}

void frmRestore::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    if (!std::exchange(m_isPainted, true)) QTimer::singleShot(0, this, &frmRestore::FindSets);
}

void frmRestore::FindSets() {
    const Result<std::vector<FoundSet>> sets = FindBackupSets(m_app);
    if (ShowFailure(m_app, sets)) return;
    AddSets(*sets);
    if (sets->empty())
        m_ui->lbl_Status->setText(QStringLiteral("There is no backup set in the backup folder yet. Another "
                                                 "folder shows those that are elsewhere."));
}

void frmRestore::AddSets(const std::vector<FoundSet>& sets) {
    std::vector<Row> rows;
    rows.reserve(sets.size() + m_rows.size());
    for (const FoundSet& set : sets)
        rows.push_back({set});
    for (Row& row : m_rows)
        if (std::ranges::none_of(sets, [&](const FoundSet& set) { return set.Folder == row.Found.Folder; }))
            rows.push_back(std::move(row));
    m_rows = std::move(rows);
    m_ui->tbl_Sets->clearSelection();
    m_ui->tbl_Sets->setRowCount(static_cast<int>(m_rows.size()));
    for (std::size_t number = 0; number < m_rows.size(); ++number)
        ShowRow(number);
    if (!sets.empty()) m_ui->tbl_Sets->selectRow(0);
    ShowSelected();
    m_steps.start(0);
}

void frmRestore::SelectSet(const std::filesystem::path& set) {
    const auto row = std::ranges::find(m_rows, set, [](const Row& each) { return each.Found.Folder; });
    if (row != m_rows.end()) m_ui->tbl_Sets->selectRow(static_cast<int>(row - m_rows.begin()));
}

void frmRestore::Step() {
    const auto row = std::ranges::find_if(m_rows, [](const Row& each) { return !each.Description; });
    if (row == m_rows.end()) return;
    row->Description = DescribeSet(m_app, row->Found.Folder);
    ShowRow(static_cast<std::size_t>(row - m_rows.begin()));
    if (&*row == Selected()) ShowSelected();
    m_steps.start(0);
}

void frmRestore::ShowRow(std::size_t number) {
    const Row& row = m_rows[number];
    QStringList cells = {ShortNameOf(row.Found.Folder),
                         FromUtf8(DateText(row.Found.Newest)),
                         QStringLiteral("..."),
                         QString(),
                         QString(),
                         QString()};
    if (row.Description) {
        const SetDescription& set = *row.Description;
        cells[Companies] = FromUtf8(CompaniesText(set));
        cells[Records] = Count(set.Materials, "material", "materials") + QStringLiteral(", ") +
                         Count(set.UsageRecords, "usage record", "usage records");
        cells[Check] = set.Findings.empty() ? QStringLiteral("no findings")
                                            : Count(set.Findings.size(), "finding", "findings");
        cells[State] = set.Faults.empty() ? QStringLiteral("complete") : QStringLiteral("cut or incomplete");
    }
    for (int column = 0; column < ColumnCount; ++column) {
        auto* const item = new QTableWidgetItem(cells[column]); // the table owns it
        item->setToolTip(ToolTipOf(cells[column]));
        m_ui->tbl_Sets->setItem(static_cast<int>(number), column, item);
    }
}

frmRestore::Row* frmRestore::Selected() {
    const QList<QTableWidgetSelectionRange> ranges = m_ui->tbl_Sets->selectedRanges();
    const int row = ranges.isEmpty() ? -1 : ranges.front().topRow();
    return row < 0 || row >= static_cast<int>(m_rows.size()) ? nullptr
                                                             : &m_rows[static_cast<std::size_t>(row)];
}

void frmRestore::ShowSelected() {
    const Row* const row = Selected();
    QString details;
    if (row) details = row->Description ? DetailsOf(*row->Description) : FromPath(row->Found.Folder);
    m_ui->txt_Details->setPlainText(details);
    m_ui->chk_Confirm->setChecked(false); // what was ticked was another set
    EnableButtons();
}

void frmRestore::EnableButtons() {
    const Row* const row = Selected();
    const bool isKnown = row && row->Description;
    m_ui->chk_Confirm->setEnabled(isKnown);
    const bool isRestorable = isKnown && m_ui->chk_Confirm->isChecked();
    m_ui->cmd_Restore->setEnabled(isRestorable);
    (isRestorable ? m_ui->cmd_Restore : m_ui->cmd_Close)->setDefault(true);
}

void frmRestore::ChooseFolder() {
    const auto folder =
        m_app.Dialogs.ChooseFolder("Choose a backup set, or a folder with backup sets", m_app.ProgramFolder);
    if (!folder) return;
    const Result<std::vector<FoundSet>> sets = SetsAt(*folder);
    if (ShowFailure(m_app, sets)) return;
    m_ui->lbl_Status->setText(
        sets->empty() ? QStringLiteral("There is no backup set in %1.").arg(FromPath(*folder)) : QString());
    if (!sets->empty()) AddSets(*sets);
}

void frmRestore::Restore() {
    const Row* const row = Selected();
    if (!row) return;
    const std::filesystem::path set = row->Found.Folder;
    m_steps.stop();
    std::optional<BusyCursor> busy;
    RestoreQuestions questions;
    questions.RestoresIncompleteSet = [&](const std::vector<std::string>& sentences) {
        return Asks(m_app, "The backup set is cut or incomplete:", sentences,
                    "Do you want to restore what is in it all the same?");
    };
    questions.GoesOnWithoutBackup = [&](const std::vector<std::string>& sentences) {
        busy.reset();
        return Asks(m_app, "The present data cannot be backed up:", sentences,
                    "Do you want to restore the set all the same? The present data folder is then kept under "
                    "another name.");
    };
    questions.Progress = [&](const std::string& text) {
        if (!busy) busy.emplace();
        m_ui->lbl_Status->setText(FromUtf8(text) + QStringLiteral(" ..."));
        m_ui->lbl_Status->repaint();
    };
    const std::optional<Restored> restored = RestoreSet(m_app, set, questions);
    busy.reset();
    m_ui->lbl_Status->setText(restored ? FromUtf8(RestoredText(set, *restored))
                                       : QStringLiteral("Nothing has been restored."));
    m_ui->lbl_Status->setAccessibleName(m_ui->lbl_Status->text());
    QAccessibleEvent told(m_ui->lbl_Status, QAccessible::Alert); // nothing has the focus there
    QAccessible::updateAccessibility(&told);
    LimitToTexts(*this);
    const Result<std::vector<FoundSet>> sets = FindBackupSets(m_app); // with the one just kept
    if (!ShowFailure(m_app, sets)) AddSets(*sets);
    if (restored) {
        m_ui->cmd_Close->setFocus();
        return;
    }
    SelectSet(set); // a second try must not be at another one
    m_ui->tbl_Sets->setFocus();
}

void ShowRestore(AppContext& app, QWidget* parent) {
    frmRestore window(app, parent);
    ShowModally(app, window);
}
} // namespace mact
