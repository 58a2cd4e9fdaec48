#include "overview/frm_overview_options.h"

#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/screen_fit.h"
#include "overview/ui_frm_overview_options.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace mact {
namespace {

/// The choices for an operation, as the boxes list them.
constexpr std::array<std::optional<OperationOption>, 6> Choices = {
    std::nullopt,
    OperationOption::Average,
    OperationOption::TableTwo,
    OperationOption::Filled,
    OperationOption::Closed,
    OperationOption::NotUsed,
};

void ShowYear(QComboBox& box, const QString& year) {
    box.setCurrentIndex(box.findText(year));
    box.setEditText(year); // also one that the list lacks
}

} // namespace

frmOverviewOptions::frmOverviewOptions(AppContext& app, OverviewOptions options, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmOverviewOptions>()),
      m_options(std::move(options)) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    MakeCopyable(*m_ui->lbl_NotUnderstood);
    AcceptAnyYear(*m_ui->cbo_StartYear);
    for (QComboBox* box : OptionBoxes())
        for (const auto& choice : Choices)
            box->addItem(FromUtf8(ChoiceText(choice)));
    // Without a month there is no year to choose.
    connect(m_ui->cbo_StartMonth, &QComboBox::currentIndexChanged, this,
            [this](int row) { m_ui->cbo_StartYear->setEnabled(row > 0); });
    connect(m_ui->cmd_Save, &QPushButton::clicked, this, &frmOverviewOptions::SaveForm);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);
    FillForm();
    ShowNotUnderstood();
}

frmOverviewOptions::~frmOverviewOptions() = default;

std::array<QComboBox*, Operations.size()> frmOverviewOptions::OptionBoxes() const {
    return {m_ui->cbo_ProductionResin, m_ui->cbo_PigmentedGelCoat, m_ui->cbo_ClearGelCoat,
            m_ui->cbo_ToolingResin, m_ui->cbo_ToolingGelCoat};
}

void frmOverviewOptions::FillForm() {
    const OverviewOptionsEntry entry = EntryOf(m_options);
    m_ui->cbo_StartMonth->setCurrentIndex(entry.StartMonth.value_or(0)); // the first line is no month
    m_ui->cbo_StartYear->setEnabled(entry.StartMonth.has_value());
    ShowYear(*m_ui->cbo_StartYear, FromUtf8(entry.StartYear));
    m_ui->txt_WarnHeadroom->setText(FromUtf8(entry.WarnHeadroom));
    m_ui->txt_WarnContent->setText(FromUtf8(entry.WarnContent));
    const auto boxes = OptionBoxes();
    for (std::size_t operation = 0; operation < boxes.size(); ++operation) {
        const auto* const choice = std::ranges::find(Choices, entry.OptionOf[operation]);
        boxes[operation]->setCurrentIndex(static_cast<int>(choice - Choices.begin()));
    }
    m_ui->txt_Address->setText(FromUtf8(entry.Address));
    m_addressAtFirst = m_ui->txt_Address->text();
}

void frmOverviewOptions::ShowNotUnderstood() {
    constexpr std::size_t mostShown = 5;
    const std::vector<std::string>& sentences = m_options.NotUnderstood;
    m_ui->lbl_NotUnderstood->setHidden(sentences.empty());
    if (sentences.empty()) return;
    QStringList lines;
    for (std::size_t number = 0; number < std::min(sentences.size(), mostShown); ++number)
        lines << FromUtf8(sentences[number]);
    if (sentences.size() > mostShown)
        lines << tr("Lines not understood besides these: %1.").arg(sentences.size() - mostShown);
    lines << tr("Saving writes the file without what is not understood.");
    m_ui->lbl_NotUnderstood->setText(lines.join(QLatin1Char('\n')));
}

void frmOverviewOptions::SizeToTexts() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // what has changed inside
    const QWidget& form = *m_ui->wid_Form;
    QScrollArea& scroll = *m_ui->scroll_Form;
    const QMargins margins = layout()->contentsMargins();
    const QSize around(margins.left() + margins.right(),
                       margins.top() + m_ui->lbl_Company->sizeHint().height() + 2 * layout()->spacing() +
                           m_ui->layout_Buttons->sizeHint().height() + margins.bottom());
    const QSize room = RoomFor(*this) - around;
    const int leastWidth = form.minimumSizeHint().width();
    scroll.setMinimumWidth(
        std::min(leastWidth + scroll.verticalScrollBar()->sizeHint().width(), room.width()));
    const int formWidth = std::max(width() - around.width(), scroll.minimumWidth());
    const QSize whole = QSize(formWidth, form.layout()->totalHeightForWidth(formWidth)) + around;
    const QSize before = size();
    resize(before.expandedTo(whole).boundedTo(RoomFor(*this)));
    move(pos() - QPoint(width() - before.width(), height() - before.height()) / 2); // the middle stays
}

void frmOverviewOptions::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    SizeToTexts(); // frames know only now what room their titles take
}

OverviewOptionsEntry frmOverviewOptions::ReadForm() const {
    OverviewOptionsEntry entry{.WarnHeadroom = m_ui->txt_WarnHeadroom->text().toStdString(),
                               .WarnContent = m_ui->txt_WarnContent->text().toStdString()};
    if (const int month = m_ui->cbo_StartMonth->currentIndex(); month > 0) {
        entry.StartMonth = static_cast<std::int16_t>(month);
        entry.StartYear = m_ui->cbo_StartYear->currentText().toStdString();
    }
    const auto boxes = OptionBoxes();
    for (std::size_t operation = 0; operation < boxes.size(); ++operation)
        entry.OptionOf[operation] = Choices[static_cast<std::size_t>(boxes[operation]->currentIndex())];
    // One that nobody changed keeps its bytes, whatever the box makes of them.
    const QString address = m_ui->txt_Address->text();
    entry.Address = address == m_addressAtFirst ? m_options.Address : address.toStdString();
    return entry;
}

bool frmOverviewOptions::Validate_Form() {
    const OverviewOptionsEntry entry = ReadForm();
    const FormErrors errors = CheckOverviewOptions(entry);
    if (errors.IsEmpty()) return true;
    ShowFormErrors(m_app, errors.Text());
    FocusFirstError(entry);
    return false;
}

// In the order of CheckOverviewOptions.
void frmOverviewOptions::FocusFirstError(const OverviewOptionsEntry& entry) {
    if (!HasWholeStart(entry))
        m_ui->cbo_StartYear->setFocus();
    else if (!IsPercent(entry.WarnHeadroom))
        m_ui->txt_WarnHeadroom->setFocus();
    else if (!IsPercent(entry.WarnContent))
        m_ui->txt_WarnContent->setFocus();
    else
        m_ui->txt_Address->setFocus();
}

void frmOverviewOptions::SaveForm() {
    if (!Validate_Form()) return;
    // After a failure the window stays, with what was typed.
    if (!ShowFailure(m_app, SaveOverviewOptions(m_app, OptionsOf(ReadForm(), m_options)))) accept();
}

bool EditOverviewOptions(AppContext& app, QWidget* parent) {
    // What cannot be read is not edited: saving would replace it.
    const Result<OverviewOptions> options = ReadOverviewOptions(app);
    if (ShowFailure(app, options)) return false;
    frmOverviewOptions window(app, *options, parent);
    return ShowModally(app, window) == QDialog::Accepted;
}
} // namespace mact
