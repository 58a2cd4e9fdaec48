#pragma once

#include "base/app_context.h"

class QWidget;

namespace mact {

/// Shows the program's name, version and maintainers.
void ShowAbout(AppContext& app, QWidget* parent);
} // namespace mact
