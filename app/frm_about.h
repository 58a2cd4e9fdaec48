#pragma once

#include "base/app_context.h"

class QWidget;

namespace mact {

/// Says which program this is, in which version and whose.
void ShowAbout(AppContext& app, QWidget* parent);
} // namespace mact
