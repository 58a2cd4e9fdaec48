#include "overview/frm_overview_help.h"

#include "dialogs/dialog_routines.h"
#include "overview/ui_frm_overview_help.h"

#include <QFile>
#include <QKeyEvent>
#include <QScrollBar>
#include <QShortcut>

// A static library's resources are missing without this call; the macro works only at global scope.
static void LoadHelp() {
    Q_INIT_RESOURCE(overview_help);
}

namespace mact {

frmOverviewHelp::frmOverviewHelp(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmOverviewHelp>()) {
    m_ui->setupUi(this);
    ShowPage();
    m_ui->txt_Help->setFocus(); // so that the arrow keys read on
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_ui->txt_Find->setFocus();
        m_ui->txt_Find->selectAll();
    });
    connect(m_ui->txt_Find, &QLineEdit::textChanged, m_ui->lbl_NotFound, &QLabel::clear);
    connect(m_ui->cmd_Find, &QPushButton::clicked, this, &frmOverviewHelp::Find);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
}

frmOverviewHelp::~frmOverviewHelp() = default;

void frmOverviewHelp::ShowPage() {
    LoadHelp();
    QFile page(QStringLiteral(":/overview/overview_help.htm"));
    if (!page.open(QIODevice::ReadOnly)) return; // it is part of the program
    const int height = m_ui->txt_Help->verticalScrollBar()->value();
    m_ui->txt_Help->setHtml(QString::fromUtf8(page.readAll()));
    m_ui->txt_Help->verticalScrollBar()->setValue(height);
}

void frmOverviewHelp::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ShowPage();
}

void frmOverviewHelp::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && m_ui->txt_Find->hasFocus()) return Find();
    QDialog::keyPressEvent(event);
}

void frmOverviewHelp::Find() {
    const QString wanted = m_ui->txt_Find->text();
    if (wanted.isEmpty()) return m_ui->txt_Find->setFocus();
    QTextBrowser& page = *m_ui->txt_Help;
    bool isFound = page.find(wanted);
    if (!isFound) { // on from the top
        const QTextCursor here = page.textCursor();
        page.moveCursor(QTextCursor::Start);
        isFound = page.find(wanted);
        if (!isFound) page.setTextCursor(here);
    }
    m_ui->lbl_NotFound->setText(isFound ? QString() : tr("Not found."));
}

void ShowOverviewHelp(AppContext& app, QWidget* parent) {
    frmOverviewHelp window(parent);
    ShowModally(app, window);
}
} // namespace mact
