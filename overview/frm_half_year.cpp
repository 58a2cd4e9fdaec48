#include "overview/frm_half_year.h"

#include "base/messages.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "overview/ui_frm_half_year.h"
#include "reports/report_publishing.h"
#include "usage/usage_entry.h"

#include <QAbstractTableModel>

#include <algorithm>
#include <array>

namespace mact {
/// Leaves the texts where they are: there may be as many as materials.
class DifferenceLines : public QAbstractTableModel {
public:
    void Show(const std::vector<PackDifference>* differences) {
        beginResetModel();
        m_differences = differences;
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || !m_differences ? 0 : static_cast<int>(m_differences->size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(Heads.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
        const PackDifference& difference = (*m_differences)[static_cast<std::size_t>(index.row())];
        const std::string* const texts[] = {&difference.Figure, &difference.Kept, &difference.Today};
        const QString text = FromUtf8(*texts[index.column()]);
        return role == Qt::ToolTipRole ? ToolTipOf(text) : text;
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return QAbstractTableModel::headerData(section, orientation, role);
        return QString::fromLatin1(Heads[static_cast<std::size_t>(section)]);
    }

private:
    static constexpr std::array Heads = {"Figure", "In the pack", "Today"};

    const std::vector<PackDifference>* m_differences = nullptr;
};

frmHalfYear::frmHalfYear(AppContext& app, const ShopFigures& shop, MonthNumber monthEnd, QWidget* parent)
    : QDialog(parent), m_app(app), m_shop(shop), m_ui(std::make_unique<Ui::frmHalfYear>()),
      m_lines(std::make_unique<DifferenceLines>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    for (QLabel* value : {m_ui->lbl_Due, m_ui->lbl_Made})
        MakeCopyable(*value);
    AcceptAnyYear(*m_ui->cbo_Year);
    SelectByKeys(*m_ui->lst_Packs);
    m_ui->tbl_Differences->setModel(m_lines.get());
    m_ui->tbl_Differences->verticalHeader()->hide();
    m_ui->tbl_Differences->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    m_ui->tbl_Differences->horizontalHeader()->setResizeContentsPrecision(0); // the visible rows
    m_ui->lbl_Made->hide();
    m_comparing.setSingleShot(true);
    connect(&m_comparing, &QTimer::timeout, this, &frmHalfYear::CompareNextPack);
    connect(m_ui->cbo_Half, &QComboBox::currentIndexChanged, this, &frmHalfYear::ShowDueDate);
    connect(m_ui->cbo_Year, &QComboBox::currentTextChanged, this, &frmHalfYear::ShowDueDate);
    connect(m_ui->cmd_Make, &QPushButton::clicked, this, &frmHalfYear::MakePack);
    connect(m_ui->lst_Packs, &QListWidget::itemSelectionChanged, this, &frmHalfYear::ShowDifferences);
    connect(m_ui->cmd_Open, &QPushButton::clicked, this, &frmHalfYear::OpenPage);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
    ChooseHalf(NewestHalfYear(monthEnd));
    ListPacks();
}

frmHalfYear::~frmHalfYear() = default;

void frmHalfYear::ChooseHalf(HalfYear half) {
    const QString year = QString::number(half.Year);
    m_ui->cbo_Half->setCurrentIndex(half.Half - 1);
    m_ui->cbo_Year->setCurrentIndex(m_ui->cbo_Year->findText(year));
    m_ui->cbo_Year->setEditText(year); // also one that the list lacks
    ShowDueDate();
}

std::optional<HalfYear> frmHalfYear::ChosenHalf() const {
    const QString year = m_ui->cbo_Year->currentText();
    if (!IsUsageYear(year.toStdString())) return std::nullopt;
    return HalfYear{.Year = year.toInt(), .Half = m_ui->cbo_Half->currentIndex() + 1};
}

void frmHalfYear::ShowDueDate() {
    const std::optional<HalfYear> half = ChosenHalf();
    m_ui->cmd_Make->setEnabled(half.has_value());
    m_ui->lbl_Due->setText(
        half ? tr("Due 60 days after the half year, on %1, unless your permit sets another date.")
                   .arg(FromUtf8(DueDateText(*half)))
             : tr("Choose a year from 1900 to 9999."));
}

void frmHalfYear::MakePack() {
    const std::optional<HalfYear> half = ChosenHalf();
    if (!half) return;
    const Result<bool> isKept = IsPackKept(m_app, *half);
    if (ShowFailure(m_app, isKept)) return;
    if (*isKept && m_app.Prompts.Show({"There is a half-year pack for " + HalfYearText(*half) +
                                           " already. Replace it with one from today's records?",
                                       PromptKind::Question, PromptButtons::YesNo}) != PromptAnswer::Yes)
        return;
    const Result<PackFiles> made = [&] {
        const BusyCursor cursor;
        return WritePack(m_app, *half, *isKept);
    }();
    if (ShowFailure(m_app, made)) return;
    ShowMade(*half, *made);
    ListPacks();
    SelectPack(*half);
}

void frmHalfYear::ShowMade(HalfYear half, const PackFiles& made) {
    m_ui->lbl_Made->setText(tr("The pack for %1 has been saved as\n%2\n%3")
                                .arg(FromUtf8(HalfYearText(half)), FromPath(made.Page), FromPath(made.Csv)));
    m_ui->lbl_Made->setToolTip(ToolTipOf(m_ui->lbl_Made->text()));
    m_ui->lbl_Made->show();
    LimitToTexts(*this);
}

void frmHalfYear::ListPacks() {
    m_lines->Show(nullptr); // they are the packs'
    m_packs.clear();
    m_comparedCount = 0;
    m_ui->lst_Packs->clear();
    const Result<std::vector<HalfYear>> kept = KeptPacks(m_app);
    if (kept)
        for (const HalfYear& half : *kept)
            m_packs.insert(m_packs.begin(), {.Half = half});
    for (const Pack& pack : m_packs)
        m_ui->lst_Packs->addItem(LineOf(pack));
    if (m_packs.empty()) {
        m_ui->lst_Packs->addItem(kept ? tr("No pack is kept yet.") : FromUtf8(SentenceOf(kept.error())));
        m_ui->lst_Packs->item(0)->setFlags(Qt::ItemIsEnabled);
    }
    ShowDifferences();
    if (!m_packs.empty()) m_comparing.start();
}

void frmHalfYear::SelectPack(HalfYear half) {
    const auto pack = std::ranges::find(m_packs, half, &Pack::Half);
    if (pack != m_packs.end()) m_ui->lst_Packs->setCurrentRow(static_cast<int>(pack - m_packs.begin()));
}

void frmHalfYear::CompareNextPack() {
    Pack& pack = m_packs[m_comparedCount];
    pack.Compared = ComparePack(m_app, m_shop, pack.Half);
    QListWidgetItem& item = *m_ui->lst_Packs->item(static_cast<int>(m_comparedCount));
    item.setText(LineOf(pack));
    item.setToolTip(ToolTipOf(item.text()));
    if (SelectedPack() == &pack) ShowDifferences();
    if (++m_comparedCount < m_packs.size()) m_comparing.start();
}

QString frmHalfYear::LineOf(const Pack& pack) {
    const QString half = FromUtf8(HalfYearText(pack.Half));
    if (!pack.Compared) return tr("%1. Being compared...").arg(half);
    if (!*pack.Compared) return tr("%1. %2").arg(half, FromUtf8(SentenceOf(pack.Compared->error())));
    const std::size_t count = (*pack.Compared)->size();
    if (count == 0) return tr("%1. Its figures still come out the same.").arg(half);
    if (count == 1) return tr("%1. 1 figure differs.").arg(half);
    return tr("%1. %2 figures differ.").arg(half).arg(count);
}

const frmHalfYear::Pack* frmHalfYear::SelectedPack() const {
    const int row = SelectedRow(*m_ui->lst_Packs);
    return row >= 0 && static_cast<std::size_t>(row) < m_packs.size()
               ? &m_packs[static_cast<std::size_t>(row)]
               : nullptr;
}

void frmHalfYear::ShowDifferences() {
    const Pack* pack = SelectedPack();
    m_ui->cmd_Open->setEnabled(pack);
    const bool isCompared = pack && pack->Compared && *pack->Compared;
    m_lines->Show(isCompared ? &**pack->Compared : nullptr);
    QTableView& table = *m_ui->tbl_Differences;
    table.horizontalHeader()->setStretchLastSection(false); // or the last column would have what room is left
    table.resizeColumnsToContents();
    const int most = fontMetrics().averageCharWidth() * 60; // longer names are cut off
    for (int column = 0; column < m_lines->columnCount(); ++column)
        table.setColumnWidth(column, std::min(table.columnWidth(column), most));
    table.horizontalHeader()->setStretchLastSection(table.horizontalHeader()->length() <
                                                    table.viewport()->width());
}

void frmHalfYear::OpenPage() {
    const Pack* pack = SelectedPack();
    if (!pack) return;
    const std::filesystem::path page = PackFilesOf(m_app, pack->Half).Page;
    const Result<bool> isThere = LookForFile(page);
    if (ShowFailure(m_app, isThere)) return;
    if (*isThere)
        OpenReport(m_app, page);
    else
        ShowError(m_app, {"open the page", page, "there is no such file"});
}

void ShowHalfYearPacks(AppContext& app, const ShopFigures& shop, MonthNumber monthEnd, QWidget* parent) {
    frmHalfYear window(app, shop, monthEnd, parent);
    ShowModally(app, window);
}
} // namespace mact
