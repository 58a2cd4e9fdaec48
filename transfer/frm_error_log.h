#pragma once

#include "base/app_context.h"

#include <filesystem>

class QWidget;

namespace mact {

/// Shows an error log. A log that cannot be read is shown empty after its message.
void ShowErrorLog(AppContext& app, const std::filesystem::path& log, QWidget* parent);
} // namespace mact
