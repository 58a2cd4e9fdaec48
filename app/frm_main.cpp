#include "app/frm_main.h"

#include "app/backup.h"
#include "app/backup_note.h"
#include "app/frm_about.h"
#include "app/frm_config.h"
#include "app/ui_frm_main.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/link_label.h"
#include "dialogs/pictures.h"
#include "dialogs/screen_fit.h"
#include "lists/frm_list.h"
#include "overview/frm_overview.h"
#include "reports/frm_reports.h"
#include "store/additional_names.h"
#include "store/frm_company.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QShortcut>

#include <chrono>
#include <utility>

namespace mact {
namespace {

constexpr QSize PictureSize{560, 190};
constexpr auto BetweenLooks = std::chrono::seconds(15); // at a backup that may be running

} // namespace

frmMain::frmMain(AppContext& app) : m_app(app), m_ui(std::make_unique<Ui::frmMain>()) {
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("EPA - MACT (HAP Content Reporting Application)"));
    m_ui->Picture1->SetPicture(MainPicture());
    m_ui->Picture1->setFixedSize(PictureSize);
    m_ui->cmd_About->hide(); // does nothing; the About button is cmd_Abount
    MakeRoomForVerdict();
    SetIcons();
    ConnectButtons();
    for (QLabel* value : std::initializer_list<QLabel*>{m_ui->lbl_Company, m_ui->lbl_Backup})
        MakeCopyable(*value);
    ShowCurrentCompany();
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    new ScreenFit(*this);
    m_nextLook.setSingleShot(true);
    connect(&m_nextLook, &QTimer::timeout, this, &frmMain::LookAtBackup);
    m_nextVerdict.setSingleShot(true);
    connect(&m_nextVerdict, &QTimer::timeout, this, &frmMain::StepVerdict);
}

frmMain::~frmMain() = default;

/// Or the controls would move when it appears.
void frmMain::MakeRoomForVerdict() {
    const QString longest =
        QStringLiteral("DEC 2005: emission average 100.04 % of the allowance; 10000 points "
                       "need attention");
    const bool needsTwoLines = fontMetrics().horizontalAdvance(longest) > PictureSize.width();
    MakeRoomForLines(*m_ui->lbl_Verdict, needsTwoLines ? 2 : 1);
}

void frmMain::SetIcons() {
    const std::pair<QPushButton*, const char*> icons[] = {
        {m_ui->cmd_Material, "materials"    },
        {m_ui->cmd_Usage,    "usage"        },
        {m_ui->cmd_Reports,  "reports"      },
        {m_ui->cmd_Company,  "companies"    },
        {m_ui->cmd_Config,   "configuration"},
        {m_ui->cmd_Backup,   "backup"       },
        {m_ui->cmd_Abount,   "about"        },
        {m_ui->cmd_Overview, "overview"     },
        {m_ui->cmd_Exit,     "exit"         },
    };
    for (const auto& [button, name] : icons)
        button->setIcon(LineIcon(QString::fromLatin1(name)));
}

void frmMain::ConnectButtons() {
    // The current company may change in the window that is opened.
    const auto opens = [this](QPushButton* button, auto open) {
        connect(button, &QPushButton::clicked, this, [this, open] {
            open();
            ShowCurrentCompany();
        });
    };
    opens(m_ui->cmd_Material, [this] {
        LoadAdditionalNames(m_app); // the editor shows them
        ShowMaterialList(m_app, this);
    });
    opens(m_ui->cmd_Usage, [this] { ShowUsageList(m_app, this); });
    opens(m_ui->cmd_Reports, [this] {
        LoadAdditionalNames(m_app);
        ShowReportsForm(m_app, this);
    });
    opens(m_ui->cmd_Company, [this] { ShowCompanies(m_app, this); });
    const auto configure = [this] {
        LoadAdditionalNames(m_app);
        ShowConfiguration(m_app, this);
    };
    opens(m_ui->cmd_Config, configure);
    opens(m_ui->cmd_Backup, [this, configure] {
        BackUpOnRequest(m_app, configure);
        m_nextLook.start(BetweenLooks);
    });
    opens(m_ui->cmd_Abount, [this] { ShowAbout(m_app, this); });
    opens(m_ui->cmd_Overview, [this] { ShowOverview(m_app, this); });
    connect(new QShortcut(Qt::Key_F8, this), &QShortcut::activated, m_ui->cmd_Overview, &QPushButton::click);
    connect(m_ui->lbl_Verdict, &LinkLabel::Followed, m_ui->cmd_Overview, &QPushButton::click);
    connect(m_ui->cmd_Exit, &QPushButton::clicked, this, &frmMain::Exit);
}

void frmMain::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) ShowCurrentCompany();
}

void frmMain::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    if (std::exchange(m_isPainted, true)) return;
    m_nextLook.start(0); // only now, so that the window appears without waiting for a backup's disk
    BeginVerdict();
}

void frmMain::BeginVerdict() {
    if (!m_isPainted || !m_verdict.Begin(m_app)) return;
    ShowVerdict(); // none, if it was of another company
    m_nextVerdict.start(0);
}

void frmMain::StepVerdict() {
    if (m_verdict.Step(m_app))
        ShowVerdict();
    else
        m_nextVerdict.start(0);
}

void frmMain::ShowVerdict() {
    m_ui->lbl_Verdict->setText(FromUtf8(m_verdict.Line()));
    m_ui->lbl_Verdict->setAccessibleName(m_ui->lbl_Verdict->text());
    m_ui->lbl_Verdict->setEnabled(!m_verdict.Line().empty());
}

void frmMain::LookAtBackup() {
    const LastBackup backup = LookAtLastBackup(m_app);
    const QString warning = QString::fromStdString(backup.Warning);
    if (warning != m_ui->lbl_Backup->text()) {
        m_ui->lbl_Backup->setText(warning);
        m_ui->lbl_Backup->setAccessibleName(warning);
        m_ui->lbl_Backup->setVisible(!warning.isEmpty());
        QAccessibleEvent appeared(m_ui->lbl_Backup, QAccessible::Alert); // nothing has the focus there
        if (!warning.isEmpty()) QAccessible::updateAccessibility(&appeared);
    }
    if (backup.IsUnderWay) m_nextLook.start(BetweenLooks);
}

void frmMain::ShowCurrentCompany() {
    const bool hasCompany = m_app.CurrentCompanyId != 0;
    const std::pair<QPushButton*, const char*> buttons[] = {
        {m_ui->cmd_Material, "The resins and gel coats of the current company"   },
        {m_ui->cmd_Usage,    "How much of each material was used, month by month"},
        {m_ui->cmd_Reports,  "The compliance reports for twelve months"          },
    };
    for (const auto& [button, toolTip] : buttons) {
        button->setEnabled(hasCompany);
        button->setToolTip(QString::fromLatin1(
            hasCompany ? toolTip : "Choose Companies first: add a company or select one."));
    }
    m_ui->lbl_Company->setText(
        hasCompany ? FromCodePage("Current company: " + m_app.CurrentCompanyName + ", " +
                                  m_app.CurrentCompanyLocation)
                   : QStringLiteral("No company selected yet \u2013 choose Companies to add or select one."));
    BeginVerdict();
}

void frmMain::Exit() {
    BackUpOnExit(m_app);
    QCoreApplication::exit(0); // not close(), which would ask the windows
}
} // namespace mact
