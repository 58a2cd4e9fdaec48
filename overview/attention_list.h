#pragma once

#include "overview/attention.h"

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace mact {

/// What needs attention, trouble first. It makes no item for a line: there can be tens of thousands.
class AttentionList : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// `notes` are UTF-8 and of no record; they stand between what is not trusted and what is worth a look.
    void Show(std::vector<Attention> findings, std::vector<std::string> notes);
    /// nullptr for a line of no finding.
    const Attention* FindingAt(int place) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<Attention> m_findings{};
    std::vector<std::string> m_notes{};
    std::size_t m_untrusted = 0; ///< so many of the findings, the first ones
};
} // namespace mact
