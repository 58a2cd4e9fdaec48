#pragma once

#include "base/result.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace mact {

struct AppContext;

/// What was done to records since the program started, so that it can be taken back and done again. Each list
/// has a history of its own, which is forgotten when the program ends.

enum class HistoryKind { Materials, Usage, Companies };

/// Whose history: for materials and usage also of which company.
struct HistoryOf {
    HistoryKind Kind = HistoryKind::Materials;
    std::int16_t CompanyId = 0; ///< 0 for companies
    friend bool operator<(const HistoryOf& left, const HistoryOf& right) {
        return std::tie(left.Kind, left.CompanyId) < std::tie(right.Kind, right.CompanyId);
    }
};

/// Whether something refers to the record of this number, which then must not go; a Failure if unclear. A
/// callback, since what refers to a record lies above its store.
using RecordIsUsed = std::function<Result<bool>(std::int16_t number)>;

/// Why nothing was done.
struct HistoryRefusal {
    std::vector<std::string>
        Reasons{};          ///< a clause for each record, UTF-8, without a full stop; empty = done
    bool IsForGood = false; ///< another copy has changed a record, so that trying again will not help
};

/// Something that was done, all or nothing, as it is taken back and done again.
struct HistoryStep {
    std::string Name{};    ///< UTF-8, as in "delete PR-101 (3/2005)"
    bool HasAdded = false; ///< records were added: taken back, they are marked as deleted
    using Action = std::function<Result<HistoryRefusal>(const AppContext&, const RecordIsUsed&)>;
    Action TakeBack{};
    Action DoAgain{};
};

class History {
public:
    /// What was taken back before cannot be done again from then on.
    void Note(const HistoryOf& whose, HistoryStep step);
    /// The step that Undo takes back next, or that Redo does again; null if there is none.
    const HistoryStep* ToUndo(const HistoryOf& whose) const;
    const HistoryStep* ToRedo(const HistoryOf& whose) const;
    /// A step that is refused or fails stays where it is; one that is refused for good is forgotten, lest it
    /// stand in the way of those before it. There must be one.
    Result<HistoryRefusal> Undo(const HistoryOf& whose, const AppContext& app, const RecordIsUsed& isUsed);
    Result<HistoryRefusal> Redo(const HistoryOf& whose, const AppContext& app, const RecordIsUsed& isUsed);
    /// To be called when the files are not the same any more.
    void Clear() { m_steps.clear(); }

private:
    struct Steps {
        std::vector<HistoryStep> Done{};
        std::vector<HistoryStep> TakenBack{};
    };
    struct Move {
        std::vector<HistoryStep>& From;
        std::vector<HistoryStep>& To;
        HistoryStep::Action HistoryStep::*Action;
    };
    static Result<HistoryRefusal> Make(const Move& move, const AppContext& app, const RecordIsUsed& isUsed);

    std::map<HistoryOf, Steps> m_steps;
};
} // namespace mact
