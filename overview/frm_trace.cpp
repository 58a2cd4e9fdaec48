#include "overview/frm_trace.h"

#include "base/messages.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "materials/frm_material.h"
#include "overview/trace_model.h"
#include "overview/trace_words.h"
#include "overview/ui_frm_trace.h"
#include "overview/untrusted_figures.h"
#include "store/additional_names.h"
#include "usage/frm_usage.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace mact {
namespace {

void Copy(const TraceNode& node) {
    QApplication::clipboard()->setText(QString::fromStdString(TraceText(node)));
}

bool HasRecord(const TraceNode& node) {
    return node.Use || node.Material;
}

/// By itself the tree would keep each leaf in mind as open, which takes seconds for 32,767 materials.
void UnfoldAll(QTreeView& tree, const QModelIndex& line) {
    if (!line.parent().isValid()) return tree.expandAll();
    tree.expand(line);
    const QAbstractItemModel& model = *line.model();
    for (int row = 0; row < model.rowCount(line); ++row)
        if (const QModelIndex child = model.index(row, 0, line); model.hasChildren(child))
            UnfoldAll(tree, child);
}

} // namespace

frmTrace::frmTrace(AppContext& app, const ShopFigures& shop, const MonthFigures& figures,
                   std::vector<FigureLine> lines, std::size_t place, QWidget* parent)
    : QDialog(parent), m_app(app), m_shop(shop), m_figures(figures), m_lines(std::move(lines)),
      m_findings(FindingsOfLines(CountUntrusted(shop, figures))), m_ui(std::make_unique<Ui::frmTrace>()),
      m_model(new TraceModel(this)) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    MakeCopyable(*m_ui->lbl_Value);
    QTreeView& tree = *m_ui->tre_Parts;
    tree.setModel(m_model);
    tree.header()->setStretchLastSection(false);
    tree.installEventFilter(this);
    ListFigures();
    m_ui->cbo_Figure->setCurrentIndex(static_cast<int>(place));
    ShowFigure();
    connect(m_ui->cbo_Figure, &QComboBox::currentIndexChanged, this, &frmTrace::ShowFigure);
    connect(&tree, &QTreeView::doubleClicked, this, &frmTrace::OpenRecordOrUnfold);
    connect(&tree, &QTreeView::collapsed, this, &frmTrace::CloseAllBelow, Qt::QueuedConnection);
    connect(tree.selectionModel(), &QItemSelectionModel::currentChanged, this, &frmTrace::EnableButtons);
    connect(m_ui->cmd_Open, &QPushButton::clicked, this, &frmTrace::OpenRecord);
    connect(m_ui->cmd_Copy, &QPushButton::clicked, this, [this] { Copy(m_model->NodeAt({})); });
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
    m_ui->cbo_Figure->setFocus();
}

frmTrace::~frmTrace() = default;

void frmTrace::ListFigures() {
    ListLines figures;
    for (const FigureLine& line : m_lines) {
        std::string text = FigureName(line, m_figures.MonthEnd);
        AppendAll(text, ": ", FigureOutcome(line, m_figures.Months));
        figures.push_back({.Text = CodePageFromUtf8(text), .ItemData = static_cast<int>(figures.size())});
    }
    ShowLines(*m_ui->cbo_Figure, figures);
}

void frmTrace::ShowFigure() {
    const int row = m_ui->cbo_Figure->currentIndex();
    if (row < 0) return;
    const BusyCursor cursor;
    const auto place = static_cast<std::size_t>(row);
    m_ui->cbo_Figure->setToolTip(ToolTipOf(m_ui->cbo_Figure->currentText()));
    m_ui->lbl_Value->setText(FromUtf8(FigureStatement(m_lines[place], m_figures.MonthEnd, m_figures.Months) +
                                      UntrustedSentence(m_findings[place])));
    m_model->Show(TraceLine(m_shop, m_figures, m_lines, place));
    QTreeView& tree = *m_ui->tre_Parts;
    const QModelIndex root = m_model->index(0, 0);
    tree.header()->resizeSection(0, m_model->WidthOfLongest(tree.fontMetrics(), tree.indentation()));
    tree.expand(root);
    tree.setCurrentIndex(root);
    EnableButtons();
}

void frmTrace::EnableButtons() {
    const bool hasRecord = HasRecord(m_model->NodeAt(m_ui->tre_Parts->currentIndex()));
    m_ui->cmd_Open->setEnabled(hasRecord);
    m_ui->cmd_Open->setDefault(hasRecord);
}

// Opening the title again would else put what is open below each line in between, one line after the other,
// which takes a second for 32,767 of them. Queued, since the tree goes on with its lines after it says this.
void frmTrace::CloseAllBelow(const QModelIndex& line) {
    if (!line.parent().isValid() && !m_ui->tre_Parts->isExpanded(line)) m_ui->tre_Parts->collapseAll();
}

void frmTrace::OpenRecordOrUnfold(const QModelIndex& line) {
    if (HasRecord(m_model->NodeAt(line)))
        OpenRecord();
    else
        m_ui->tre_Parts->setExpanded(line, !m_ui->tre_Parts->isExpanded(line));
}

void frmTrace::OpenRecord() {
    const TraceNode& node = m_model->NodeAt(m_ui->tre_Parts->currentIndex());
    const ShopRecords& records = m_shop.Shop();
    int outcome = -1;
    if (node.Use) {
        outcome = EditUsage(m_app, records.Usage[*node.Use].Record, this);
    } else if (node.Material) {
        LoadAdditionalNames(m_app); // the editor shows them
        outcome = EditMaterial(m_app, records.Materials[*node.Material].MaterialId, this);
    }
    if (outcome == 0) accept();
}

bool frmTrace::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_ui->tre_Parts || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    const QModelIndex line = m_ui->tre_Parts->currentIndex();
    if (key.matches(QKeySequence::Copy)) { // by itself the tree would copy the line alone
        Copy(m_model->NodeAt(line));
        return true;
    }
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        OpenRecordOrUnfold(line);
        return true;
    }
    if (key.key() == Qt::Key_Asterisk) {
        UnfoldAll(*m_ui->tre_Parts, line);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

bool ShowTrace(AppContext& app, const ShopFigures& shop, const MonthFigures& figures,
               const std::string& figure, const std::string& item, QWidget* parent) {
    std::vector<FigureLine> lines = LinesOf(shop, figures);
    const Result<std::size_t> place = FindFigure(lines, figures.MonthEnd, figure, item);
    if (ShowFailure(app, place)) return false;
    frmTrace window(app, shop, figures, std::move(lines), *place, parent);
    return ShowModally(app, window) == QDialog::Accepted;
}

bool ShowTraceOfRow(AppContext& app, const ShopFigures& shop, const MonthFigures& figures,
                    const OverviewRow& row, QWidget* parent) {
    const auto filled = row.Material
                            ? std::ranges::find(figures.Filled, *row.Material, &FilledFigure::Material)
                            : figures.Filled.end();
    if (filled == figures.Filled.end()) return ShowTrace(app, shop, figures, row.Figure, row.Item, parent);
    std::vector<FigureLine> lines = LinesOf(shop, figures);
    const auto first = std::ranges::find(lines, "filled", &FigureLine::Figure); // in the same order
    const auto place = (first - lines.begin()) + (filled - figures.Filled.begin());
    frmTrace window(app, shop, figures, std::move(lines), static_cast<std::size_t>(place), parent);
    return ShowModally(app, window) == QDialog::Accepted;
}
} // namespace mact
