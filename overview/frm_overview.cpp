#include "overview/frm_overview.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "overview/answers.h"
#include "overview/file_damage.h"
#include "overview/frm_overview_help.h"
#include "overview/frm_what_if.h"
#include "overview/kept_pack.h"
#include "overview/outlook.h"
#include "overview/overview_csv.h"
#include "overview/state_colours.h"
#include "overview/state_sign.h"
#include "overview/statements.h"
#include "overview/ui_frm_overview.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <utility>

namespace mact {
namespace {

constexpr int MostMonthsShown = 3 * WindowMonths;

QString StatementLines() {
    QStringList lines;
    for (const std::string_view statement : OverviewStatements)
        lines << QStringLiteral("%1. %2").arg(lines.size() + 1).arg(FromUtf8(statement));
    return lines.join(QLatin1Char('\n'));
}

/// Calls `act` for Enter and for a double click on a line. QAbstractItemView::activated would be a single
/// click on some desktops.
class LineOpener : public QObject {
public:
    LineOpener(QAbstractItemView& view, std::function<void()> act)
        : QObject(&view), m_view(view), m_act(std::move(act)) {
        connect(&view, &QAbstractItemView::doubleClicked, this, m_act);
        view.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (!isEnter || !m_view.currentIndex().isValid()) return QObject::eventFilter(watched, event);
        m_act();
        return true;
    }

private:
    QAbstractItemView& m_view;
    std::function<void()> m_act;
};

std::string OutlookText(MonthNumber over) {
    return "If use goes on as the mean of the last three months, material by material, the average is over "
           "in " +
           LongMonthName(over) + " (looked ahead " + WholeNumberText(MonthsLookedAhead) + " months).";
}

QString KilogramsOf(const AverageFigures& average) {
    const auto line = [](const char* name, const Figure& figure) {
        return QString::fromLatin1(name) + FromUtf8(ReportText(RoundTo(figure.Report, 2))) +
               QStringLiteral(" kg; not rounded: ") + FromUtf8(ExactText(figure.Exact)) +
               QStringLiteral(" kg");
    };
    return line("Emissions ", average.Emissions) + QLatin1Char('\n') + line("Allowance ", average.Allowance);
}

MonthNumber CurrentMonth(AppContext& app) {
    const std::chrono::year_month today = app.Calendar.CurrentMonth();
    return MonthNumberOf(int{today.year()}, static_cast<int>(unsigned{today.month()}));
}

} // namespace

frmOverview::frmOverview(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmOverview>()) {
    m_ui->setupUi(this);
    NumberItems(*m_ui->cbo_Month);
    AcceptAnyYear(*m_ui->cbo_Year);
    m_ui->lbl_Company->setText(FromCodePage(m_app.CurrentCompanyName + ", " + m_app.CurrentCompanyLocation));
    for (QLabel* value : std::initializer_list<QLabel*>{
             m_ui->lbl_Company, m_ui->lbl_Newest, m_ui->lbl_Answer1, m_ui->lbl_Answer2, m_ui->lbl_Answer3})
        MakeCopyable(*value);
    m_ui->tbl_Rows->setModel(&m_table);
    m_ui->tbl_Rows->setItemDelegateForColumn(OverviewTable::Bar, &m_bar);
    m_ui->tbl_Rows->sortByColumn(OverviewTable::Is, Qt::AscendingOrder);
    m_ui->tbl_Rows->horizontalHeader()->setResizeContentsPrecision(50); // rows that are looked at
    m_ui->tbl_Rows->horizontalHeader()->setStretchLastSection(true);
    m_ui->tbl_Rows->verticalHeader()->hide();
    m_ui->tbl_Rows->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    m_ui->lst_Attention->setModel(&m_attention);
    m_ui->split_Figures->setStretchFactor(0, 2);
    m_ui->split_Figures->setStretchFactor(1, 3);
    m_ui->split_Lower->setStretchFactor(0, 1);
    m_ui->split_Lower->setStretchFactor(1, 1);
    for (QLabel* question : {m_ui->lbl_Question1, m_ui->lbl_Question2, m_ui->lbl_Question3}) {
        QFont bold = question->font();
        bold.setBold(true);
        question->setFont(bold);
    }
    m_ui->txt_Statements->setPlainText(StatementLines());
    m_ui->txt_Statements->setFixedHeight(9 * fontMetrics().lineSpacing());
    OfferSorting();
    m_ui->split_Figures->setMinimumHeight(14 * fontMetrics().lineSpacing());
    FoldStatements(true);
    ConnectControls();
    m_nextLook.setSingleShot(true);
    connect(&m_nextLook, &QTimer::timeout, this, &frmOverview::LookFurther);
    m_ui->cbo_Month->setFocus();
    Load();
}

frmOverview::~frmOverview() = default;

void frmOverview::ConnectControls() {
    connect(m_ui->cmd_Previous, &QToolButton::clicked, this, [this] { StepMonths(-1); });
    connect(m_ui->cmd_Next, &QToolButton::clicked, this, [this] { StepMonths(1); });
    connect(new QShortcut(Qt::Key_PageUp, this), &QShortcut::activated, this, [this] { StepMonths(-1); });
    connect(new QShortcut(Qt::Key_PageDown, this), &QShortcut::activated, this, [this] { StepMonths(1); });
    connect(m_ui->cbo_Month, &QComboBox::currentIndexChanged, this, &frmOverview::ChooseMonth);
    connect(m_ui->cbo_Year, &QComboBox::currentTextChanged, this, &frmOverview::ChooseMonth);
    // A year that was not typed to its end would stand above the figures of another one.
    connect(m_ui->cbo_Year->lineEdit(), &QLineEdit::editingFinished, this,
            [this] { m_ui->cbo_Year->setEditText(QString::number(m_month / 12)); });
    connect(m_ui->cbo_Span, &QComboBox::currentIndexChanged, this, &frmOverview::ShowChart);
    connect(m_ui->tbl_Rows->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmOverview::ShowChart);
    connect(m_ui->cmd_Emissions, &QPushButton::clicked, m_ui->tbl_Rows, &QTableView::clearSelection);
    new LineOpener(*m_ui->tbl_Rows, [this] {
        m_ui->tbl_Rows->selectRow(m_ui->tbl_Rows->currentIndex().row()); // it may merely have the focus
        Why();
    });
    new LineOpener(*m_ui->lst_Attention, [this] { OpenAttention(); });
    connect(m_ui->cmd_Statements, &QToolButton::toggled, this,
            [this](bool isOpen) { FoldStatements(!isOpen); });
    connect(m_ui->cmd_Why, &QPushButton::clicked, this, &frmOverview::Why);
    connect(m_ui->cmd_WhatIf, &QPushButton::clicked, this,
            [this] { ShowWhatIf(m_app, m_records, m_options, m_month, this); });
    connect(m_ui->cmd_Print, &QPushButton::clicked, this, &frmOverview::Print);
    connect(m_ui->cmd_Pdf, &QPushButton::clicked, this, &frmOverview::SavePdf);
    connect(m_ui->cmd_Help, &QPushButton::clicked, this, [this] { ShowOverviewHelp(m_app, this); });
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, m_ui->cmd_Help,
            &QPushButton::click);
    connect(m_ui->cmd_Reports, &QPushButton::clicked, this, &frmOverview::MakeReports);
    connect(m_ui->cmd_HalfYear, &QPushButton::clicked, this, &frmOverview::ShowPacks);
    connect(m_ui->cmd_Options, &QPushButton::clicked, this, &frmOverview::ChangeOptions);
    connect(m_ui->cmd_Copy, &QPushButton::clicked, this, &frmOverview::CopyTable);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
}

/// The menu key offers the columns, so that the table can be sorted without a mouse.
void frmOverview::OfferSorting() {
    m_ui->tbl_Rows->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (int column = 0; column < OverviewTable::ColumnCount; ++column) {
        if (column == OverviewTable::Bar) continue; // as by headroom
        auto* action = new QAction(
            tr("Sort by %1").arg(m_table.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()),
            this);
        m_ui->tbl_Rows->addAction(action);
        connect(action, &QAction::triggered, this,
                [this, column] { m_ui->tbl_Rows->sortByColumn(column, Qt::AscendingOrder); });
    }
}

void frmOverview::Load() {
    const BusyCursor cursor;
    Result<OverviewOptions> options = ReadOverviewOptions(m_app);
    Result<ShopRecords> records = ReadShopRecords(m_app);
    // A failure takes the place of the newest month; no message box is shown.
    std::string failure;
    if (!options) failure = SentenceOf(options.error());
    if (!records) failure = SentenceOf(records.error());
    const bool wereRead = std::exchange(m_areRead, bool(records));
    m_options = options ? std::move(*options) : OverviewOptions{};
    m_records = records ? std::move(*records) : ShopRecords{};
    m_figures.clear();
    m_shop = std::make_unique<ShopFigures>(m_records, m_options.Start);
    m_ui->lbl_Newest->setText(FromUtf8(failure.empty() ? NewestUseText(*m_shop) : failure));
    m_notes.clear();
    if (!failure.empty()) AddNote(failure); // or the list would say that nothing needs attention
    if (const auto over = MonthOverIfUseGoesOn(*m_shop)) AddNote(OutlookText(*over));
    for (const std::string& sentence : m_options.NotUnderstood)
        AddNote(sentence, AttentionNote::Place::Options);
    if (m_month == 0 || (m_areRead && !wereRead))
        m_month = std::clamp(m_shop->NewestUse().value_or(CurrentMonth(m_app)), FirstMonthEnd, LastMonthEnd);
    ShowMonth(m_month);
    FindKeptPacks();
}

void frmOverview::FindKeptPacks() {
    m_nextLook.stop(); // there may be none left for it
    const Result<std::vector<HalfYear>> packs = KeptPacks(m_app);
    m_packs = packs ? *packs : std::vector<HalfYear>{};
    m_samePacks = 0;
    m_otherPacks = 0;
    m_ui->lbl_Packs->clear();
    std::ranges::reverse(m_packs);
    if (!packs) AddNote(SentenceOf(packs.error()), AttentionNote::Place::Packs);
    if (!packs) ShowAttention(m_ui->lst_Attention->currentIndex().row());
    m_isDamageKnown = false;
    m_nextLook.start(0);
}

void frmOverview::AddFileDamage() {
    m_isDamageKnown = true;
    const Result<std::vector<std::string>> lines = FindFileDamage(m_app);
    if (!lines) return; // the records could not be read either
    for (const std::string& line : *lines)
        AddNote(line);
    if (!lines->empty()) ShowAttention(m_ui->lst_Attention->currentIndex().row());
}

void frmOverview::LookFurther() {
    if (!m_isDamageKnown)
        AddFileDamage();
    else
        CompareNextPack();
    if (!m_packs.empty()) m_nextLook.start(0);
}

void frmOverview::CompareNextPack() {
    const HalfYear half = m_packs.back();
    m_packs.pop_back();
    const auto differences = ComparePack(m_app, *m_shop, half);
    const bool isSame = differences && differences->empty();
    ++(isSame ? m_samePacks : m_otherPacks);
    if (!differences)
        AddNote(SentenceOf(differences.error()), AttentionNote::Place::Packs);
    else if (!isSame)
        AddNote("The half-year pack for " + HalfYearText(half) + " no longer comes out the same: " +
                    WholeNumberText(static_cast<std::int64_t>(differences->size())) +
                    (differences->size() == 1 ? " figure differs." : " figures differ."),
                AttentionNote::Place::Packs);
    if (!isSame) ShowAttention(m_ui->lst_Attention->currentIndex().row());
    if (!m_packs.empty()) return;
    m_ui->lbl_Packs->setText(
        m_otherPacks == 0 ? tr("Half-year packs kept: %1; their figures are still the same").arg(m_samePacks)
                          : tr("Half-year packs kept: %1; figures have changed in %2")
                                .arg(m_samePacks + m_otherPacks)
                                .arg(m_otherPacks));
}

void frmOverview::AddNote(std::string text, AttentionNote::Place opens) {
    m_notes.push_back({.Text = std::move(text), .Opens = opens});
}

const MonthFigures& frmOverview::FiguresOf(MonthNumber month) {
    auto known = m_figures.find(month);
    if (known == m_figures.end()) known = m_figures.emplace(month, m_shop->At(month)).first;
    return known->second;
}

std::vector<const MonthFigures*> frmOverview::FiguresUntil(MonthNumber month, int months) {
    std::vector<const MonthFigures*> figures;
    for (MonthNumber each = std::max(month - months + 1, FirstMonthEnd); each <= month; ++each)
        figures.push_back(&FiguresOf(each));
    return figures;
}

void frmOverview::ShowMonth(MonthNumber month) {
    m_month = month;
    m_isShowing = true;
    SelectListItem(*m_ui->cbo_Month, month % 12 + 1);
    m_ui->cbo_Year->setEditText(QString::number(month / 12));
    m_isShowing = false;
    m_ui->cmd_Previous->setEnabled(month > FirstMonthEnd);
    m_ui->cmd_Next->setEnabled(month < LastMonthEnd);
    const int row = m_ui->lst_Attention->currentIndex().row();
    m_attention.ShowFindings(FindAttention(*m_shop, month, m_app.CurrentCompanyId));
    m_untrusted = CountUntrusted(*m_shop, FiguresOf(month), m_attention.Findings());
    m_troubles = FirstTroubles(*m_shop, FiguresUntil(month, MostMonthsShown));
    std::erase_if(m_figures, [&](const auto& known) { // the months near by are likely to be next
        return known.first <= month - MostMonthsShown - WindowMonths || known.first > month + WindowMonths;
    });
    ShowAnswers();
    ShowRows();
    ShowChart();
    ShowAttention(row);
    FitToForm();
}

void frmOverview::StepMonths(int months) {
    ShowMonth(std::clamp(m_month + months, FirstMonthEnd, LastMonthEnd));
}

void frmOverview::ChooseMonth() {
    if (m_isShowing) return;
    const std::optional<std::int16_t> month = SelectedData(*m_ui->cbo_Month);
    const int year = m_ui->cbo_Year->currentText().toInt();
    if (!month || year < 1900 || year > 9999) return; // still being typed
    ShowMonth(MonthNumberOf(year, *month));
}

void frmOverview::ShowAnswers() {
    struct Card {
        QFrame* Frame;
        QLabel* Question;
        QLabel* Text;
        QLabel* Meaning;
    };
    const std::array<Card, 3> cards = {
        {{m_ui->Frame_Answer1, m_ui->lbl_Question1, m_ui->lbl_Answer1, m_ui->lbl_Meaning1},
         {m_ui->Frame_Answer2, m_ui->lbl_Question2, m_ui->lbl_Answer2, m_ui->lbl_Meaning2},
         {m_ui->Frame_Answer3, m_ui->lbl_Question3, m_ui->lbl_Answer3, m_ui->lbl_Meaning3}}
    };
    const std::vector<Answer> answers = AnswersOf(*m_shop, FiguresOf(m_month), m_untrusted, m_options);
    for (std::size_t index = 0; index < cards.size(); ++index) {
        Answer answer = answers[index];
        const Card& card = cards[index];
        if (!m_areRead) {
            answer.Is = State::None;
            answer.Text = "No answer: the records cannot be read.";
        }
        QString text = FromUtf8(answer.Text);
        if (const auto first = FirstTroubleOfAverage(); first && index == cards.size() - 1) {
            text += (IsTrouble(answer.Is) ? tr(" Trouble since %1.") : tr(" First trouble in %1."))
                        .arg(FromUtf8(ShortMonthName(*first)));
        }
        card.Question->setText(FromUtf8(answer.Question));
        card.Text->setText(FromUtf8(SignOf(answer.Is)) + text);
        card.Meaning->setText(FromUtf8(answer.Meaning + " See the " + answer.Report + '.'));
        card.Frame->setAccessibleName(card.Question->text());
        card.Frame->setAccessibleDescription(text);
        if (index == cards.size() - 1) card.Frame->setToolTip(KilogramsOf(FiguresOf(m_month).Average));
        QPalette colours = card.Question->palette();
        colours.setColor(QPalette::WindowText, ColourOf(answer.Is, answer.IsNarrow, palette()));
        card.Text->setPalette(colours);
    }
}

std::optional<MonthNumber> frmOverview::FirstTroubleOfAverage() const {
    const auto first = std::ranges::find(m_troubles, "emissions", &FirstTrouble::Figure);
    return first == m_troubles.end() ? std::nullopt : std::optional(first->Month);
}

void frmOverview::ShowRows() {
    const std::optional<OverviewRow> selected = SelectedRow();
    const MonthFigures& figures = FiguresOf(m_month);
    m_isShowing = true;
    m_table.Show(RowsOf(*m_shop, figures, m_untrusted, m_troubles, m_options), figures.Months);
    if (selected) SelectRow(*selected);
    m_isShowing = false;
    FitColumns();
}

/// As wide as their texts, but none so wide that it pushes the others out of sight.
void frmOverview::FitColumns() {
    m_ui->tbl_Rows->resizeColumnsToContents();
    const int widest = fontMetrics().averageCharWidth() * 36;
    for (int column = 0; column < OverviewTable::ColumnCount; ++column)
        if (m_ui->tbl_Rows->columnWidth(column) > widest) m_ui->tbl_Rows->setColumnWidth(column, widest);
}

void frmOverview::SelectRow(const OverviewRow& row) {
    for (int place = 0; place < m_table.rowCount(); ++place) {
        const OverviewRow& each = m_table.RowAt(place);
        if (each.Figure != row.Figure || each.Item != row.Item || each.Material != row.Material) continue;
        m_ui->tbl_Rows->selectRow(place);
        return;
    }
}

std::optional<OverviewRow> frmOverview::SelectedRow() const {
    const QModelIndexList selected = m_ui->tbl_Rows->selectionModel()->selectedRows();
    if (selected.isEmpty()) return std::nullopt;
    return m_table.RowAt(selected.front().row());
}

void frmOverview::ShowChart() {
    if (m_isShowing) return;
    const std::optional<OverviewRow> row = SelectedRow();
    const int months = (m_ui->cbo_Span->currentIndex() + 1) * WindowMonths;
    std::vector<ChartPoint> points;
    for (const MonthFigures* figures : FiguresUntil(m_month, months)) {
        const std::optional<ChartValue> at = row ? ValueAt(*row, *figures) : ValueOf(figures->Average);
        ChartPoint point{.Month = FromUtf8(ShortMonthName(figures->MonthEnd))};
        if (at && std::isfinite(at->Percent)) {
            point.Value = at->Percent;
            point.Text = FromUtf8(PercentText(at->Percent)) + QStringLiteral(", ") +
                         FromUtf8(StateInWords(at->Judged, figures->Months)).toLower();
            point.IsOver = IsTrouble(at->Judged.Is);
        }
        points.push_back(std::move(point));
    }
    m_ui->cmd_Emissions->setEnabled(row.has_value());
    m_ui->cht_Months->Show(row ? tr("%1 in percent of its limit").arg(FromCodePage(row->Item))
                               : tr("Emissions in percent of the allowance"),
                           std::move(points));
}

void frmOverview::ShowAttention(int row) {
    m_attention.ShowNotes(m_notes);
    if (row >= 0) // the line that the user was on stays the current one
        m_ui->lst_Attention->setCurrentIndex(m_attention.index(std::min(row, m_attention.rowCount() - 1)));
}

void frmOverview::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    FitToForm(); // a splitter knows its least size only now
}

/// The form is scrolled only up and down, and only if the screen is too small for it.
void frmOverview::FitToForm() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // what has changed inside
    QScrollArea& scroll = *m_ui->scroll_Form;
    const int bar = scroll.verticalScrollBar()->sizeHint().width();
    const int room = screen()->availableSize().width() - 3 * bar;
    scroll.setMinimumWidth(std::min(m_ui->layout_Form->totalMinimumSize().width() + bar, room));
    // The lists give way to the texts, so the form must be told the least height that all of them need.
    const QSize whole = scroll.maximumViewportSize();
    int height = m_ui->layout_Form->totalMinimumHeightForWidth(whole.width());
    // A bar takes room from the texts, which then may need another line.
    if (height > whole.height()) height = m_ui->layout_Form->totalMinimumHeightForWidth(whole.width() - bar);
    m_ui->wid_Form->setMinimumHeight(height);
}

void frmOverview::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    FitToForm();
}

void frmOverview::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_shop) ShowAnswers();
}

void frmOverview::FoldStatements(bool isFolded) {
    m_ui->txt_Statements->setHidden(isFolded);
    m_ui->cmd_Statements->setArrowType(isFolded ? Qt::RightArrow : Qt::DownArrow);
    FitToForm();
    if (!isFolded) m_ui->scroll_Form->ensureWidgetVisible(m_ui->txt_Statements);
}

void ShowOverview(AppContext& app, QWidget* parent) {
    if (app.CurrentCompanyId == 0) {
        ShowInformation(app, "Choose Companies first: add a company or select one.");
        return;
    }
    frmOverview window(app, parent);
    ShowModally(app, window);
}
} // namespace mact
