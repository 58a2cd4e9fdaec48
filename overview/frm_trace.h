#pragma once

#include "base/app_context.h"
#include "overview/trace.h"

class QWidget;

namespace mact {

/// Shows what a figure was calculated from, as a tree that can be copied.
void ShowTrace(AppContext& app, const TraceNode& trace, QWidget* parent);
} // namespace mact
