#include "base/history.h"

#include <utility>

namespace mact {

void History::Note(const HistoryOf& whose, HistoryStep step) {
    Steps& steps = m_steps[whose];
    steps.Done.push_back(std::move(step));
    steps.TakenBack.clear();
}

const HistoryStep* History::ToUndo(const HistoryOf& whose) const {
    const auto found = m_steps.find(whose);
    return found == m_steps.end() || found->second.Done.empty() ? nullptr : &found->second.Done.back();
}

const HistoryStep* History::ToRedo(const HistoryOf& whose) const {
    const auto found = m_steps.find(whose);
    return found == m_steps.end() || found->second.TakenBack.empty() ? nullptr
                                                                     : &found->second.TakenBack.back();
}

Result<HistoryRefusal> History::Undo(const HistoryOf& whose, const AppContext& app,
                                     const RecordIsUsed& isUsed) {
    Steps& steps = m_steps.at(whose);
    return Make({steps.Done, steps.TakenBack, &HistoryStep::TakeBack}, app, isUsed);
}

Result<HistoryRefusal> History::Redo(const HistoryOf& whose, const AppContext& app,
                                     const RecordIsUsed& isUsed) {
    Steps& steps = m_steps.at(whose);
    return Make({steps.TakenBack, steps.Done, &HistoryStep::DoAgain}, app, isUsed);
}

Result<HistoryRefusal> History::Make(const Move& move, const AppContext& app, const RecordIsUsed& isUsed) {
    Result<HistoryRefusal> refusal = (move.From.back().*move.Action)(app, isUsed);
    if (!refusal) return refusal;
    const bool isDone = refusal->Reasons.empty();
    if (isDone) move.To.push_back(std::move(move.From.back()));
    if (isDone || refusal->IsForGood) move.From.pop_back();
    return refusal;
}
} // namespace mact
