#pragma once

#include "transfer/transfer.h"

#include <QElapsedTimer>

#include <functional>

namespace mact {

/// Watches an import for a window: keeps the window responsive, and shows the progress of an import that
/// takes longer than a blink.
class ImportProgress {
public:
    /// Gets the number of lines done and the part of the file they make up, in thousandths.
    using Show = std::function<void(int lines, int thousandths)>;
    explicit ImportProgress(Show show);

    /// To be called after each line; false once Stop has been called.
    bool Watch(const TransferProgress& progress);
    void Stop() { m_isStopped = true; }

private:
    Show m_show;
    QElapsedTimer m_sinceStart;
    qint64 m_lastPause = 0; ///< ms since the start
    bool m_isStopped = false;
};
} // namespace mact
