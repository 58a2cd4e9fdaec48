#pragma once

#include "transfer/transfer.h"

#include <QElapsedTimer>

#include <functional>

namespace mact {

/// Watches an import for a window: keeps the window alive, and shows how far the import is when it takes
/// longer than a blink.
class ImportProgress {
public:
    /// `show` gets the lines done and how much of the file that is, in thousandths.
    using Show = std::function<void(int lines, int thousandths)>;
    explicit ImportProgress(Show show);

    /// After each line; false once Stop was called.
    bool Watch(const TransferProgress& progress);
    void Stop() { m_isStopped = true; }

private:
    Show m_show;
    QElapsedTimer m_sinceStart;
    qint64 m_lastPause = 0; ///< ms since the start
    bool m_isStopped = false;
};
} // namespace mact
