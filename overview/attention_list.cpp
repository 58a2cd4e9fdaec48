#include "overview/attention_list.h"

#include "dialogs/dialog_routines.h"
#include "overview/state_colours.h"
#include "overview/state_sign.h"

#include <QApplication>

#include <algorithm>

namespace mact {

void AttentionList::ShowFindings(std::vector<Attention> findings) {
    beginResetModel();
    m_findings = std::move(findings);
    m_untrusted =
        static_cast<std::size_t>(std::ranges::count(m_findings, AttentionKind::NotTrusted, &Attention::Kind));
    endResetModel();
}

void AttentionList::ShowNotes(std::vector<AttentionNote> notes) {
    beginResetModel();
    m_notes = std::move(notes);
    endResetModel();
}

int AttentionList::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return std::max(1, static_cast<int>(m_findings.size() + m_notes.size()));
}

const Attention* AttentionList::FindingAt(int place) const {
    const auto at = static_cast<std::size_t>(place);
    if (at < m_untrusted) return &m_findings[at];
    if (at < m_untrusted + m_notes.size() || at >= m_findings.size() + m_notes.size()) return nullptr;
    return &m_findings[at - m_notes.size()];
}

const AttentionNote* AttentionList::NoteAt(int place) const {
    const auto at = static_cast<std::size_t>(place);
    const bool isNote = at >= m_untrusted && at < m_untrusted + m_notes.size();
    return isNote ? &m_notes[at - m_untrusted] : nullptr;
}

QVariant AttentionList::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Attention* finding = FindingAt(index.row());
    const bool isNothing = m_findings.empty() && m_notes.empty();
    const bool isTrouble = finding && finding->Kind == AttentionKind::NotTrusted;
    if (role == Qt::ForegroundRole && isTrouble) return ColourOf(State::Over, false, QApplication::palette());
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    const std::string text = isNothing ? "No record needs attention."
                             : finding ? finding->Text
                                       : NoteAt(index.row())->Text;
    if (role == Qt::ToolTipRole) return ToolTipOf(QString::fromStdString(text));
    const State state = isNothing ? State::Within : isTrouble ? State::Over : State::NotUsed;
    return QString::fromStdString(std::string(SignOf(state)) + text);
}
} // namespace mact
