#include "overview/frm_trace.h"

#include "dialogs/dialog_routines.h"
#include "overview/ui_frm_trace.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QHeaderView>

namespace mact {
namespace {

/// The children of an item are made when it is first opened: a trace can have as many as there are records.
void AddChildren(QTreeWidgetItem& item, const TraceNode& node) {
    for (const TraceNode& child : node.Children) {
        auto* added = new QTreeWidgetItem(&item, {QString::fromStdString(child.Text)});
        added->setToolTip(0, added->text(0));
        added->setData(0, Qt::UserRole, QVariant::fromValue(reinterpret_cast<quintptr>(&child)));
        if (!child.Children.empty()) added->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
}

void OpenOnce(QTreeWidgetItem& item) {
    if (item.childCount() > 0) return;
    const auto* node = reinterpret_cast<const TraceNode*>(item.data(0, Qt::UserRole).value<quintptr>());
    if (node) AddChildren(item, *node);
}

} // namespace

void ShowTrace(AppContext& app, const TraceNode& trace, QWidget* parent) {
    QDialog window(parent);
    Ui::frmTrace controls;
    controls.setupUi(&window);
    controls.tre_Parts->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    controls.tre_Parts->header()->setStretchLastSection(false);
    auto* root = new QTreeWidgetItem(controls.tre_Parts, {QString::fromStdString(trace.Text)});
    AddChildren(*root, trace);
    root->setExpanded(true);
    controls.tre_Parts->setCurrentItem(root);
    QObject::connect(controls.tre_Parts, &QTreeWidget::itemExpanded, &window,
                     [](QTreeWidgetItem* item) { OpenOnce(*item); });
    QObject::connect(controls.cmd_Copy, &QPushButton::clicked, &window, [&trace] {
        QApplication::clipboard()->setText(QString::fromStdString(TraceText(trace)));
    });
    QObject::connect(controls.cmd_Close, &QPushButton::clicked, &window, &QDialog::reject);
    ShowModally(app, window);
}
} // namespace mact
