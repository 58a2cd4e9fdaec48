#include "lists/frm_month_sheet.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "lists/ui_frm_month_sheet.h"
#include "materials/units.h"
#include "overview/overview_csv.h"
#include "usage/usage_texts.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QShortcut>
#include <QSignalBlocker>

#include <algorithm>

namespace mact {
namespace {

constexpr int MostUnmatchedLines = 500;           ///< that are named: nobody reads more
constexpr std::size_t MostUnmatchedLetters = 200; ///< of a line: a text of megabytes takes seconds to show

QString Shortened(const std::string& codePageText) {
    const QString text = FromCodePage(codePageText.substr(0, MostUnmatchedLetters));
    return codePageText.size() > MostUnmatchedLetters ? text + QChar(0x2026) : text;
}

} // namespace

frmMonthSheet::frmMonthSheet(AppContext& app, SheetRecords records, QWidget* parent)
    : QDialog(parent), m_app(app), m_records(std::make_unique<SheetRecords>(std::move(records))),
      m_table(MonthSheet(*m_records, FirstSheetMonth(*m_records, app.Calendar.CurrentMonth()))),
      m_ui(std::make_unique<Ui::frmMonthSheet>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    for (QLabel* value : {m_ui->lbl_Sums, m_ui->lbl_Outlook, m_ui->lbl_Saved})
        MakeCopyable(*value);
    NumberItems(*m_ui->cbo_Month);
    AcceptAnyYear(*m_ui->cbo_Year);
    m_changed.setObjectName(QStringLiteral("tmr_Changed"));
    m_changed.setSingleShot(true);
    m_changed.setInterval(0);
    m_nextOutlook.setObjectName(QStringLiteral("tmr_Outlook"));
    m_nextOutlook.setSingleShot(true);
    m_nextOutlook.setInterval(0);
    MakeRoomForLines(*m_ui->lbl_Outlook, 2); // or the table would move when it answers
    PrepareTable();
    ShowMonth();
    ShowUnmatched({});
    ConnectControls();
    CompleteIds();
    ShowSums();
    BeginOutlook();
    FocusFirstCell();
}

frmMonthSheet::~frmMonthSheet() = default;

void frmMonthSheet::PrepareTable() {
    SheetView& view = *m_ui->tbl_Rows;
    view.ShowTable(m_table);
    view.verticalHeader()->hide();
    view.verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    QHeaderView& header = *view.horizontalHeader();
    header.setHighlightSections(false);
    const int letter = fontMetrics().averageCharWidth();
    const std::pair<int, int> letters[] = {
        {MonthSheetTable::MaterialId,  16},
        {MonthSheetTable::Description, 30},
        {MonthSheetTable::Quantity,    13},
        {MonthSheetTable::Unit,        8 },
        {MonthSheetTable::MonthBefore, 20},
        {MonthSheetTable::Pounds,      13},
        {MonthSheetTable::Recorded,    12},
    };
    for (const auto& [column, width] : letters)
        header.resizeSection(column, std::max(letter * width, header.sectionSizeHint(column)));
    header.setStretchLastSection(true);
    MakeRoomForLines(*m_ui->lbl_Wrong, 2);
    m_ui->txt_Unmatched->setFixedHeight(5 * fontMetrics().lineSpacing());
}

void frmMonthSheet::ConnectControls() {
    connect(m_ui->cbo_Month, &QComboBox::currentIndexChanged, this, &frmMonthSheet::ChooseMonth);
    connect(m_ui->cbo_Year, &QComboBox::currentTextChanged, this, &frmMonthSheet::ChooseMonth);
    // A year that was not typed to its end would stand above the rows of another one.
    connect(m_ui->cbo_Year->lineEdit(), &QLineEdit::editingFinished, this, &frmMonthSheet::ShowMonth);
    connect(&m_table, &MonthSheetTable::SheetChanged, this, &frmMonthSheet::NoteChange);
    connect(&m_changed, &QTimer::timeout, this, [this] {
        ShowSums();
        ShowOutlook();
        ShowWrong();
    });
    connect(&m_nextOutlook, &QTimer::timeout, this, &frmMonthSheet::StepOutlook);
    connect(m_ui->tbl_Rows->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &frmMonthSheet::ShowWrong);
    connect(m_ui->tbl_Rows, &SheetView::PasteAsked, this, &frmMonthSheet::PasteCells);
    connect(m_ui->cmd_CopyLast, &QPushButton::clicked, this, &frmMonthSheet::CopyLastMonth);
    connect(m_ui->cmd_Paste, &QPushButton::clicked, this, &frmMonthSheet::PasteCells);
    connect(m_ui->cmd_Save, &QPushButton::clicked, this, &frmMonthSheet::Save);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_D), this), &QShortcut::activated, this,
            &frmMonthSheet::CopyLastMonth);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this), &QShortcut::activated, this,
            &frmMonthSheet::Save);
}

void frmMonthSheet::CompleteIds() {
    QStringList ids;
    ids.reserve(static_cast<qsizetype>(m_records->Materials().size()));
    for (const SheetMaterial& material : m_records->Materials())
        ids << FromCodePage(material.CustomId);
    ids.sort(Qt::CaseInsensitive);
    m_ui->tbl_Rows->Complete(ids);
}

QString frmMonthSheet::MonthInWords() const {
    return FromUtf8(PeriodText(Sheet().Month()));
}

void frmMonthSheet::ShowMonth() {
    const QSignalBlocker month(*m_ui->cbo_Month);
    const QSignalBlocker year(*m_ui->cbo_Year);
    SelectListItem(*m_ui->cbo_Month, static_cast<unsigned>(Sheet().Month().month()));
    const QString shown = QString::number(static_cast<int>(Sheet().Month().year()));
    m_ui->cbo_Year->setCurrentIndex(m_ui->cbo_Year->findText(shown)); // the arrow keys go on from there
    m_ui->cbo_Year->setEditText(shown);
}

void frmMonthSheet::ChooseMonth() {
    const std::string year = ToCodePage(m_ui->cbo_Year->currentText());
    const std::optional<std::int16_t> month = SelectedData(*m_ui->cbo_Month);
    if (!month || !IsUsageYear(year)) return;
    const std::chrono::year_month chosen{std::chrono::year{ParseInt16(year).value_or(0)},
                                         std::chrono::month{static_cast<unsigned>(*month)}};
    if (chosen == Sheet().Month()) return;
    m_ui->tbl_Rows->TakeTyped();
    const std::string question = "What was typed for " + PeriodText(Sheet().Month()) +
                                 " has not been saved and would be lost. Do you want to go to " +
                                 PeriodText(chosen) + "?";
    if (m_table.IsAnyTyped() &&
        m_app.Prompts.Show({question, PromptKind::Question, PromptButtons::YesNo}) != PromptAnswer::Yes) {
        ShowMonth();
        return;
    }
    ShowSheet(chosen);
}

void frmMonthSheet::ShowSheet(std::chrono::year_month month) {
    m_table.Show(MonthSheet(*m_records, month));
    m_ui->lbl_Saved->clear();
    ShowUnmatched({});
    ShowMonth();
    FocusFirstCell();
}

/// The focus itself stays with the month while that is chosen.
void frmMonthSheet::FocusFirstCell() {
    const bool isEmpty = Sheet().Rows().empty();
    m_ui->tbl_Rows->GoTo(0, isEmpty ? MonthSheetTable::MaterialId : MonthSheetTable::Quantity);
    if (!isVisible()) m_ui->tbl_Rows->setFocus();
}

void frmMonthSheet::CopyLastMonth() {
    m_ui->tbl_Rows->TakeTyped();
    m_table.CopyLastMonth(m_ui->tbl_Rows->Chosen());
    m_ui->tbl_Rows->setFocus();
}

void frmMonthSheet::PasteCells() {
    m_ui->tbl_Rows->TakeTyped();
    const std::string text = ToCodePage(QGuiApplication::clipboard()->text());
    const int row = m_ui->tbl_Rows->currentIndex().row();
    const std::vector<PastedLine> lines = SplitPastedText(text);
    const bool isOneCell = lines.size() == 1 && lines.front().Cells.size() == 1;
    if (isOneCell && m_table.IsIdRow(row)) { // a Material ID, as if it were typed
        ShowUnmatched({});
        m_table.setData(m_table.index(row, MonthSheetTable::MaterialId),
                        FromCodePage(lines.front().Cells[0]));
    } else {
        ShowUnmatched(m_table.PasteAt(text, row).Unmatched);
    }
    m_ui->tbl_Rows->setFocus();
}

void frmMonthSheet::ShowUnmatched(const std::vector<UnmatchedLine>& lines) {
    QStringList texts;
    for (const UnmatchedLine& line : lines) {
        if (texts.size() == MostUnmatchedLines) break;
        texts << tr("Line %1: %2: %3")
                     .arg(line.Number)
                     .arg(Shortened(line.Text).replace(u'\t', QLatin1String(" | ")), FromUtf8(line.Reason));
    }
    if (lines.size() > MostUnmatchedLines) texts << tr("and %1 more").arg(lines.size() - MostUnmatchedLines);
    m_ui->txt_Unmatched->setPlainText(texts.join(u'\n'));
    m_ui->lbl_Unmatched->setVisible(!lines.empty());
    m_ui->txt_Unmatched->setVisible(!lines.empty());
    if (isVisible()) LimitToTexts(*this);
}

void frmMonthSheet::NoteChange() {
    m_ui->lbl_Saved->clear();
    m_changed.start();
}

void frmMonthSheet::ShowSums() {
    const double pounds = Sheet().Pounds();
    const QString lbs = FromUtf8(RoundedText(pounds));
    const QString kg = FromUtf8(RoundedText(Kilograms(pounds)));
    m_ui->lbl_Sums->setText(lbs.isEmpty() || kg.isEmpty()
                                ? tr("%1 in all: no sum, as a number is too large").arg(MonthInWords())
                                : tr("%1 in all: %2 lbs, %3 kg").arg(MonthInWords(), lbs, kg));
}

void frmMonthSheet::BeginOutlook() {
    m_outlook = std::make_unique<SheetOutlook>();
    m_nextOutlook.start();
}

void frmMonthSheet::StepOutlook() {
    const Result<bool> isReady = m_outlook->Step(m_app);
    if (!isReady)
        TellOutlook(FromUtf8(SentenceOf(isReady.error())), false);
    else if (*isReady)
        ShowOutlook();
    else
        m_nextOutlook.start();
}

/// What the overview would say with the rows that could be saved.
void frmMonthSheet::ShowOutlook() {
    if (!m_outlook->IsReady()) return;
    const SheetAnswer answer = m_outlook->AnswerFor(Sheet().Month(), Sheet().Changes().Changes);
    QStringList lines{FromUtf8(answer.Line)};
    for (const std::string& worse : answer.Worse)
        lines << FromUtf8(worse);
    TellOutlook(lines.join(u'\n'), !answer.Worse.empty());
}

void frmMonthSheet::TellOutlook(const QString& text, bool isWorse) {
    if (m_ui->lbl_Outlook->text() == text) return;
    QFont font = this->font();
    font.setBold(isWorse);
    m_ui->lbl_Outlook->setFont(font);
    m_ui->lbl_Outlook->setText(text);
    m_ui->lbl_Outlook->setAccessibleName(text);
    if (isVisible()) LimitToTexts(*this);
}

void frmMonthSheet::ShowWrong() {
    m_ui->lbl_Wrong->setText(m_table.RemarkOf(m_ui->tbl_Rows->currentIndex().row()));
    m_ui->tbl_Rows->setAccessibleDescription(m_ui->lbl_Wrong->text());
}

bool frmMonthSheet::Save() {
    m_ui->tbl_Rows->TakeTyped();
    if (!FindNoFaults()) return false;
    if (m_table.IsAnyTyped()) return SaveChanges();
    m_ui->lbl_Saved->setText(tr("There is nothing to save: no row says anything new."));
    return true;
}

bool frmMonthSheet::FindNoFaults() {
    const MonthSheetTable::Faults faults = m_table.FindFaults();
    if (faults.Count == 0) return true;
    m_ui->tbl_Rows->GoTo(faults.First, faults.Column);
    m_ui->tbl_Rows->setFocus();
    m_ui->lbl_Saved->setText(faults.Count == 1
                                 ? tr("Nothing was saved: something is wrong in a row.")
                                 : tr("Nothing was saved: something is wrong in %1 rows.").arg(faults.Count));
    ShowWrong();
    return false;
}

bool frmMonthSheet::SaveChanges() {
    const SheetChanges changes = Sheet().Changes();
    UsageOutcome outcome;
    if (SaveUsageTogether(m_app, changes.Changes, outcome)) {
        ShowRefused(changes, outcome.Refused);
        return false;
    }
    m_hasSaved = true;
    Remember(changes);
    ReadAgain(false);
    m_ui->lbl_Saved->setText(
        tr("Saved %1 of %2.").arg(FromUtf8(Counted(changes.Changes.size(), "record")), MonthInWords()));
    return true;
}

void frmMonthSheet::ShowRefused(const SheetChanges& changes, const std::vector<RefusedChange>& refused) {
    std::vector<std::pair<std::int16_t, std::string>> reasons; // by material: the rows may move
    reasons.reserve(refused.size());
    for (const RefusedChange& one : refused)
        reasons.emplace_back(changes.Changes[one.Change].Record.MaterialId, one.Reason);
    // With what is stored now beside what was typed, saving again is a decision.
    if (!refused.empty()) ReadAgain(true);
    for (const auto& [material, reason] : reasons) {
        const std::optional<std::size_t> row = Sheet().RowOf(material);
        if (row) m_table.Refuse(*row, reason);
    }
    const std::optional<std::size_t> first =
        reasons.empty() ? std::nullopt : Sheet().RowOf(reasons.front().first);
    if (first) m_ui->tbl_Rows->GoTo(static_cast<int>(*first), MonthSheetTable::Quantity);
    m_ui->tbl_Rows->setFocus();
    m_ui->lbl_Saved->setText(tr("Nothing was saved."));
    ShowWrong();
}

void frmMonthSheet::Remember(const SheetChanges& changes) {
    // Only what is new, as in the editor: the month of an edited record may be long past.
    for (const UsageChange& change : changes.Changes)
        if (change.Record.UsageId == 0)
            m_app.LastUsage = {.Month =
                                   static_cast<std::int16_t>(static_cast<unsigned>(Sheet().Month().month())),
                               .Year = WholeNumberText(static_cast<int>(Sheet().Month().year())),
                               .Unit = change.Record.Unit};
}

void frmMonthSheet::ReadAgain(bool keepsTyped) {
    Result<SheetRecords> read = SheetRecords::Read(m_app);
    if (ShowFailure(m_app, read)) {
        if (!keepsTyped) QDialog::reject(); // the rows would say what is no longer so
        return;
    }
    auto records = std::make_unique<SheetRecords>(std::move(*read));
    MonthSheet sheet(*records, Sheet().Month());
    if (keepsTyped) TakeOver(sheet);
    const QModelIndex current = m_ui->tbl_Rows->currentIndex();
    const std::optional<std::int16_t> material = m_table.MaterialAt(current.row());
    const int column = current.column();
    m_table.Show(std::move(sheet));
    m_records = std::move(records); // only now: the sheet before used the old ones
    CompleteIds();
    BeginOutlook();
    const std::optional<std::size_t> row = material ? Sheet().RowOf(*material) : std::nullopt;
    m_ui->tbl_Rows->GoTo(row ? static_cast<int>(*row) : m_table.rowCount() - 1,
                         row ? column : int{MonthSheetTable::MaterialId});
    m_ui->tbl_Rows->setFocus();
}

void frmMonthSheet::TakeOver(MonthSheet& sheet) {
    std::vector<UnmatchedLine> gone;
    for (std::size_t place = 0; place < Sheet().Rows().size(); ++place) {
        if (!Sheet().IsEntered(place)) continue;
        const SheetRow& typed = Sheet().Rows()[place];
        std::optional<std::size_t> row = sheet.RowOf(typed.Material.MaterialId);
        if (!row) row = sheet.AddRow(typed.Material.CustomId);
        if (row) {
            sheet.EnterQuantity(*row, typed.Quantity);
            sheet.SelectUnit(*row, typed.Unit);
        } else {
            gone.push_back({.Number = static_cast<int>(place) + 1,
                            .Text = typed.Material.CustomId + '\t' + typed.Quantity,
                            .Reason = "There is no material with this Material ID."});
        }
    }
    ShowUnmatched(gone);
}

void frmMonthSheet::reject() {
    m_ui->tbl_Rows->TakeTyped();
    if (m_table.IsAnyTyped()) {
        const std::string question = "Do you want to save what was typed for " + PeriodText(Sheet().Month()) +
                                     "? No closes the sheet without saving.";
        const PromptAnswer answer =
            m_app.Prompts.Show({question, PromptKind::Question, PromptButtons::YesNoCancel});
        if (answer == PromptAnswer::Cancel) return;
        if (answer == PromptAnswer::Yes && !Save()) return;
    }
    QDialog::reject();
}

bool ShowMonthSheet(AppContext& app, QWidget* parent) {
    Result<SheetRecords> records = SheetRecords::Read(app);
    if (ShowFailure(app, records)) return false;
    if (records->Materials().empty()) {
        ShowFormErrors(app, UsageTexts::NeedsMaterials);
        return false;
    }
    frmMonthSheet window(app, std::move(*records), parent);
    ShowModally(app, window);
    return window.HasSaved();
}
} // namespace mact
