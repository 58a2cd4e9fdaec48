#pragma once

#include "overview/attention.h"

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace mact {

/// What needs attention and is of no record.
struct AttentionNote {
    enum class Place { Nowhere, Options, Packs }; ///< where it can be seen to
    std::string Text{};                           ///< UTF-8
    Place Opens = Place::Nowhere;
};

/// What needs attention: what is not trusted, then the notes, then what is worth a look. It makes no item for
/// a line: there can be tens of thousands.
class AttentionList : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// `findings` as FindAttention has sorted them.
    void ShowFindings(std::vector<Attention> findings);
    void ShowNotes(std::vector<AttentionNote> notes);
    const std::vector<Attention>& Findings() const { return m_findings; }
    const std::vector<AttentionNote>& Notes() const { return m_notes; }
    /// nullptr for a line that is none.
    const Attention* FindingAt(int place) const;
    const AttentionNote* NoteAt(int place) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<Attention> m_findings{};
    std::vector<AttentionNote> m_notes{};
    std::size_t m_untrusted = 0; ///< so many of the findings, the first ones
};
} // namespace mact
