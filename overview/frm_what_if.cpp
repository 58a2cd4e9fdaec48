#include "overview/frm_what_if.h"

#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "overview/answers.h"
#include "overview/overview_csv.h"
#include "overview/state_sign.h"
#include "overview/statements.h"
#include "overview/ui_frm_what_if.h"

#include <QHeaderView>
#include <QRegularExpressionValidator>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <unordered_set>
#include <utility>

namespace mact {
namespace {

/// In the order of cbo_Kind.
constexpr std::array Kinds = {WhatIfKind::Content, WhatIfKind::Density, WhatIfKind::Filler,
                              WhatIfKind::Method,  WhatIfKind::Amount,  WhatIfKind::Replacement,
                              WhatIfKind::LeftOut};
/// Those of the average in cbo_Figure; the contents follow.
enum Figures { Emissions, Allowance, Headroom, FirstContent };

bool IsNumber(WhatIfKind kind) {
    return kind == WhatIfKind::Content || kind == WhatIfKind::Density || kind == WhatIfKind::Filler ||
           kind == WhatIfKind::Amount;
}

QString UnitOf(WhatIfKind kind) {
    if (kind == WhatIfKind::Density) return QStringLiteral("lb/gal");
    return kind == WhatIfKind::Amount ? QStringLiteral("times as much") : QStringLiteral("%");
}

void SetVisible(bool isVisible, std::initializer_list<QWidget*> controls) {
    for (QWidget* control : controls)
        control->setVisible(isVisible);
}

QString NumberCell(double number, bool isExact) {
    const std::string text = isExact ? ExactText(number) : RoundedText(number);
    return text.empty() ? QStringLiteral("?") : FromUtf8(text);
}

QString FigureCell(const Figure& figure, bool isExact) {
    return NumberCell(isExact ? figure.Exact : figure.Report, isExact);
}

/// With its sign.
QString DifferenceCell(const Figure& figure, bool isExact) {
    const QString text = FigureCell(figure, isExact);
    const bool isMore = text != u'?' && text != u'0' && !text.startsWith(u'-');
    return isMore ? u'+' + text : text;
}

QString StateCell(const Verdict& verdict, int months) {
    return FromUtf8(SignOf(verdict.Is)) + FromUtf8(StateInWords(verdict, months));
}

} // namespace

frmWhatIf::frmWhatIf(const AppContext& app, const ShopRecords& shop, const OverviewOptions& options,
                     MonthNumber monthEnd, QWidget* parent)
    : QDialog(parent), m_shop(shop, options.Start), m_start(options.Start),
      m_first(std::max(monthEnd - WindowMonths + 1, FirstMonthEnd)), m_last(monthEnd),
      m_newest(m_shop.At(monthEnd)), m_untrusted(CountUntrusted(m_shop, m_newest)),
      m_ui(std::make_unique<Ui::frmWhatIf>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    for (QLabel* value : {m_ui->lbl_Today, m_ui->lbl_BreakEven})
        MakeCopyable(*value);
    m_steps.setObjectName(QStringLiteral("tmr_Steps"));
    AcceptCodePageText(*m_ui->txt_Number);
    NumberItems(*m_ui->cbo_FromMonth);
    SelectListItem(*m_ui->cbo_FromMonth, m_first % 12 + 1);
    m_ui->txt_FromYear->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), this));
    m_ui->txt_FromYear->setText(QString::number(m_first / 12));
    m_ui->txt_FromYear->setFixedWidth(fontMetrics().averageCharWidth() * 10);
    m_ui->lbl_Statement->setText(tr("Calculated with a copy of the records: nothing is saved. %1")
                                     .arg(FromUtf8(OverviewStatements.back())));
    QTableWidget& table = *m_ui->tbl_Months;
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 5 / 4);
    table.setRowCount(m_last - m_first + 1);
    MakeRoom();
    FillMaterials();
    ConnectControls();
    ShowKind();
    EnableListButtons();
    ShowFigures();
    BeginSteps();
}

frmWhatIf::~frmWhatIf() = default;

/// So that no choice and no sentence moves what is below, or needs a higher window than the one that opened.
void frmWhatIf::MakeRoom() {
    for (QWidget* field : std::initializer_list<QWidget*>{
             m_ui->lbl_Number, m_ui->txt_Number, m_ui->lbl_Method, m_ui->cbo_Method, m_ui->lbl_Replacement,
             m_ui->cbo_Replacement, m_ui->lbl_From, m_ui->cbo_FromMonth, m_ui->txt_FromYear}) {
        QSizePolicy policy = field->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        field->setSizePolicy(policy);
    }
    MakeRoomForLines(*m_ui->lbl_Today, 2);
    MakeRoomForLines(*m_ui->lbl_Wrong, 2);
    MakeRoomForLines(*m_ui->lbl_BreakEven, 3);
}

void frmWhatIf::FillMaterials() {
    const std::vector<ShopMaterial>& materials = m_shop.Shop().Materials;
    ListLines lines;
    lines.reserve(materials.size());
    // In a damaged file several may have a number: a change is made to the first.
    std::unordered_set<std::int16_t> numbers;
    for (std::size_t place = 0; place < materials.size(); ++place)
        if (numbers.insert(materials[place].MaterialId).second)
            lines.push_back({std::string(Trim(materials[place].CustomId)), static_cast<int>(place)});
    ShowLines(*m_ui->cbo_Material, lines);
    m_ui->cbo_Replacement->setModel(m_ui->cbo_Material->model()); // 32,767 entries are enough once
    m_ui->cbo_Replacement->setCurrentIndex(-1);
    // A short list, not one as high as the screen: for that, the box would look at every entry (70 ms).
    for (QComboBox* combo : {m_ui->cbo_Material, m_ui->cbo_Replacement})
        combo->setStyleSheet(QStringLiteral("QComboBox { combobox-popup: 0; }"));
    const std::vector<UsedMaterial> used = m_shop.UsedInWindow(m_last);
    SelectListItem(*m_ui->cbo_Material, used.empty() ? 0 : static_cast<int>(used.front().Material));
    for (QWidget* control :
         std::initializer_list<QWidget*>{m_ui->cbo_Material, m_ui->cbo_Kind, m_ui->txt_Number})
        control->setEnabled(!materials.empty());
    if (materials.empty()) m_ui->cmd_Close->setFocus();
}

void frmWhatIf::ConnectControls() {
    m_steps.setInterval(0);
    connect(&m_steps, &QTimer::timeout, this, &frmWhatIf::Step);
    connect(m_ui->cbo_Material, &QComboBox::currentIndexChanged, this, [this] {
        ShowKind();
        ShowBreakEven();
    });
    connect(m_ui->cbo_Kind, &QComboBox::currentIndexChanged, this, [this] {
        m_ui->txt_Number->clear(); // it was in another unit
        ShowKind();
    });
    for (QLineEdit* edit : {m_ui->txt_Number, m_ui->txt_FromYear})
        connect(edit, &QLineEdit::textChanged, this, &frmWhatIf::CheckEntry);
    for (QComboBox* combo : {m_ui->cbo_Method, m_ui->cbo_Replacement, m_ui->cbo_FromMonth})
        connect(combo, &QComboBox::currentIndexChanged, this, &frmWhatIf::CheckEntry);
    connect(m_ui->cmd_Add, &QPushButton::clicked, this, &frmWhatIf::AddChange);
    connect(m_ui->lst_Changes, &QListWidget::itemSelectionChanged, this, &frmWhatIf::EnableListButtons);
    connect(m_ui->cmd_Remove, &QPushButton::clicked, this, &frmWhatIf::RemoveChange);
    connect(new QShortcut(Qt::Key_Delete, m_ui->lst_Changes, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &frmWhatIf::RemoveChange);
    connect(m_ui->cmd_RemoveAll, &QPushButton::clicked, this, [this] { TakeChanges({}); });
    connect(m_ui->cbo_Figure, &QComboBox::currentIndexChanged, this, &frmWhatIf::ShowMonths);
    connect(m_ui->chk_Exact, &QCheckBox::toggled, this, &frmWhatIf::ShowMonths);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
}

std::optional<std::size_t> frmWhatIf::ChosenMaterial(const QComboBox& combo) const {
    if (combo.currentIndex() < 0) return {};
    return static_cast<std::size_t>(combo.currentData().toInt());
}

void frmWhatIf::ShowKind() {
    const WhatIfKind kind = ReadEntry().Kind;
    SetVisible(IsNumber(kind), {m_ui->lbl_Number, m_ui->txt_Number, m_ui->lbl_Unit});
    SetVisible(kind == WhatIfKind::Method, {m_ui->lbl_Method, m_ui->cbo_Method});
    SetVisible(kind == WhatIfKind::Replacement, {m_ui->lbl_Replacement, m_ui->cbo_Replacement});
    SetVisible(kind == WhatIfKind::Amount, {m_ui->lbl_From, m_ui->cbo_FromMonth, m_ui->txt_FromYear});
    m_ui->lbl_Unit->setText(UnitOf(kind));
    const std::optional<std::size_t> material = ChosenMaterial(*m_ui->cbo_Material);
    ListLines methods;
    if (material)
        for (std::string& method : MethodsFor(m_shop.Shop(), *material))
            methods.push_back({std::move(method), 0});
    ShowLines(*m_ui->cbo_Method, methods);
    m_ui->lbl_Description->setText(material ? FromCodePage(m_shop.Shop().Materials[*material].Description)
                                            : QString());
    CheckEntry();
}

WhatIfEntry frmWhatIf::ReadEntry() const {
    const auto month = SelectedData(*m_ui->cbo_FromMonth);
    return {.Material = ChosenMaterial(*m_ui->cbo_Material),
            .Kind = Kinds[static_cast<std::size_t>(std::max(m_ui->cbo_Kind->currentIndex(), 0))],
            .Number = ToCodePage(m_ui->txt_Number->text()),
            .Method = SelectedText(*m_ui->cbo_Method),
            .Month = month ? std::optional<int>(*month) : std::nullopt,
            .Year = ToCodePage(m_ui->txt_FromYear->text()),
            .Replacement = ChosenMaterial(*m_ui->cbo_Replacement)};
}

void frmWhatIf::CheckEntry() {
    const WhatIfEntry entry = ReadEntry();
    const CheckedWhatIf checked = CheckWhatIf(Changed(), entry);
    const bool hasMaterials = !m_shop.Shop().Materials.empty();
    m_ui->lbl_Today->setText(FromUtf8(StartingPoint(m_shop, Changed(), entry, m_last)));
    m_ui->lbl_Wrong->setText(hasMaterials ? FromUtf8(checked.Wrong)
                                          : tr("There are no materials yet: choose Materials in the main "
                                               "window and add one."));
    // A screen reader says it with the field.
    for (QWidget* field : std::initializer_list<QWidget*>{m_ui->txt_Number, m_ui->cbo_Method,
                                                          m_ui->cbo_Replacement, m_ui->txt_FromYear})
        field->setAccessibleDescription(m_ui->lbl_Wrong->text());
    m_ui->cmd_Add->setEnabled(checked.Change.has_value());
    m_ui->cmd_Add->setDefault(checked.Change.has_value());
}

void frmWhatIf::AddChange() {
    const CheckedWhatIf checked = CheckWhatIf(Changed(), ReadEntry());
    if (!checked.Change) return;
    std::vector<WhatIfChange> changes = m_changes;
    changes.push_back(*checked.Change);
    TakeChanges(std::move(changes));
    m_ui->lst_Changes->scrollToBottom();
    QWidget* const next[] = {m_ui->txt_Number, m_ui->cbo_Method, m_ui->cbo_Replacement, m_ui->cbo_Kind};
    m_ui->txt_Number->clear();  // Enter again would add it again
    for (QWidget* field : next) // cmd_Add, disabled by now, may have the focus
        if (field->isVisibleTo(this)) {
            field->setFocus();
            break;
        }
}

void frmWhatIf::RemoveChange() {
    const int row = SelectedRow(*m_ui->lst_Changes);
    if (row < 0) return;
    std::vector<WhatIfChange> changes = m_changes;
    changes.erase(changes.begin() + row);
    TakeChanges(std::move(changes));
    QListWidget& list = *m_ui->lst_Changes;
    list.setCurrentRow(std::min(row, list.count() - 1));
    list.setFocus(); // cmd_Remove, disabled by now, may have it
}

void frmWhatIf::TakeChanges(std::vector<WhatIfChange> changes) {
    const Result<std::vector<std::string>> sentences = SentencesOf(m_shop.Shop(), changes);
    Result<ShopRecords> changed = changes.empty() ? ShopRecords{} : Applied(m_shop.Shop(), changes);
    if (!sentences || !changed) { // CheckWhatIf lets nothing through that fails
        m_ui->lbl_Wrong->setText(FromUtf8(SentenceOf(sentences ? changed.error() : sentences.error())));
        return;
    }
    m_after.reset(); // of the records before
    m_changes = std::move(changes);
    m_changed = std::move(*changed);
    QListWidget& list = *m_ui->lst_Changes;
    list.clear();
    for (const std::string& sentence : *sentences) {
        auto* item = new QListWidgetItem(FromUtf8(sentence), &list);
        item->setToolTip(ToolTipOf(item->text()));
    }
    list.setCurrentRow(-1);
    EnableListButtons();
    CheckEntry();
    BeginSteps();
}

void frmWhatIf::EnableListButtons() {
    m_ui->cmd_Remove->setEnabled(SelectedRow(*m_ui->lst_Changes) >= 0);
    m_ui->cmd_RemoveAll->setEnabled(!m_changes.empty());
}

void frmWhatIf::BeginSteps() {
    m_after.reset();
    m_months.clear();
    m_breakEvens.clear();
    ShowMonths();
    ShowBreakEven();
    m_steps.start();
}

void frmWhatIf::Step() {
    if (!m_after) {
        m_after = std::make_unique<ShopFigures>(Changed(), m_start);
        return;
    }
    const std::size_t done = m_months.size();
    const MonthNumber month = m_first + static_cast<int>(done);
    if (month <= m_last) {
        if (m_before.size() == done) m_before.push_back(m_shop.At(month));
        m_months.push_back({Compare(m_before[done], m_after->At(month)), m_before[done].Months});
        return;
    }
    m_breakEvens = BreakEvensAt(*m_after, m_last);
    m_steps.stop();
    ShowFigures();
    ShowMonths();
    ShowBreakEven();
}

/// The contents of cbo_Figure depend on what is used.
void frmWhatIf::ShowFigures() {
    std::vector<std::string> contents;
    std::unordered_set<std::string> known;
    for (const Month& month : m_months)
        for (const ContentComparison& content : month.Compared.Contents)
            if (known.insert(content.Item).second) contents.push_back(content.Item);
    QComboBox& combo = *m_ui->cbo_Figure;
    if (combo.count() > 0 && contents == m_contents) return;
    const QString chosen = combo.currentText();
    const QSignalBlocker blocker(combo);
    combo.clear();
    combo.addItems({tr("Emissions, kg"), tr("Allowance, kg"), tr("Headroom, kg")});
    for (const std::string& content : contents)
        combo.addItem(tr("Content, %: %1").arg(FromCodePage(content)));
    combo.setCurrentIndex(std::max(combo.findText(chosen), 0));
    m_contents = std::move(contents);
}

QStringList frmWhatIf::CellsOf(const Month& month) const {
    const bool isExact = m_ui->chk_Exact->isChecked();
    const int figure = m_ui->cbo_Figure->currentIndex();
    if (figure < FirstContent) {
        const Comparison* const figures[] = {&month.Compared.Emissions, &month.Compared.Allowance,
                                             &month.Compared.Headroom};
        const Comparison& compared = *figures[std::max(figure, 0)];
        return {FigureCell(compared.Before, isExact), FigureCell(compared.After, isExact),
                DifferenceCell(compared.Difference, isExact),
                StateCell(month.Compared.JudgedBefore, month.Months),
                StateCell(month.Compared.JudgedAfter, month.Months)};
    }
    const std::string& item = m_contents[static_cast<std::size_t>(figure - FirstContent)];
    const auto content = std::ranges::find(month.Compared.Contents, item, &ContentComparison::Item);
    const Verdict notUsed{.Is = State::NotUsed};
    if (content == month.Compared.Contents.end())
        return {{}, {}, {}, StateCell(notUsed, month.Months), StateCell(notUsed, month.Months)};
    const auto cell = [&](const std::optional<Figure>& number) {
        return number ? FigureCell(*number, isExact) : QString();
    };
    return {cell(content->Before), cell(content->After),
            content->Difference ? DifferenceCell(*content->Difference, isExact) : QString(),
            StateCell(content->JudgedBefore, month.Months), StateCell(content->JudgedAfter, month.Months)};
}

void frmWhatIf::ShowMonths() {
    QTableWidget& table = *m_ui->tbl_Months;
    for (int row = 0; row < table.rowCount(); ++row) {
        const auto place = static_cast<std::size_t>(row);
        QStringList cells = {FromUtf8(ShortMonthName(m_first + row))};
        if (place < m_months.size()) cells += CellsOf(m_months[place]);
        for (int column = 0; column < table.columnCount(); ++column) {
            if (!table.item(row, column)) table.setItem(row, column, new QTableWidgetItem);
            QTableWidgetItem& item = *table.item(row, column);
            item.setText(column < cells.size() ? cells[column] : QStringLiteral("\u2026"));
            if (column >= 1 && column <= 3) item.setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
    }
    if (!m_steps.isActive()) table.resizeColumnsToContents();
    ShowTrust();
}

void frmWhatIf::ShowTrust() {
    const QString month = FromUtf8(ShortMonthName(m_last));
    QString text = m_last - m_first + 1 == WindowMonths ? tr("The twelve month en&ds up to %1").arg(month)
                                                        : tr("The month en&ds up to %1").arg(month);
    const std::size_t findings = FindingsOfFigure();
    if (findings > 0) text += tr(". \"Before\" at %1 is %2.").arg(month, FromUtf8(UntrustedText(findings)));
    m_ui->lbl_Months->setText(text);
    m_ui->tbl_Months->setAccessibleDescription(text.remove(u'&'));
}

std::size_t frmWhatIf::FindingsOfFigure() const {
    const int figure = m_ui->cbo_Figure->currentIndex();
    if (figure < FirstContent) return m_untrusted.Average;
    const std::string& item = m_contents[static_cast<std::size_t>(figure - FirstContent)];
    const std::vector<ContentFigure>& contents = m_newest.Contents;
    const auto content = std::ranges::find(contents, item, &ContentFigure::Item);
    if (content == contents.end()) return 0;
    return m_untrusted.Contents[static_cast<std::size_t>(content - contents.begin())];
}

void frmWhatIf::ShowBreakEven() {
    const std::optional<std::size_t> material = ChosenMaterial(*m_ui->cbo_Material);
    QString text;
    if (material && m_after && !m_steps.isActive())
        text = FromUtf8(BreakEvenText(*m_after, m_breakEvens, *material, m_last));
    m_ui->lbl_BreakEven->setText(text);
}

void ShowWhatIf(AppContext& app, const ShopRecords& shop, const OverviewOptions& options,
                MonthNumber monthEnd, QWidget* parent) {
    frmWhatIf window(app, shop, options, monthEnd, parent);
    ShowModally(app, window);
}
} // namespace mact
