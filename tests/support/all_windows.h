#pragma once

#include "base/app_context.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace mact {

/// A window in one of its states.
struct WindowState {
    const char* Name;                               ///< the window's own name, then the state
    void (*Open)(AppContext& app, QWidget* parent); ///< returns when the window is closed
    void (*Prepare)(const QWidget& window);         ///< what the user does in it first
};

/// Every window of the program, in each of the states that look different. They need the sample shop.
const std::vector<WindowState>& AllWindows();

/// Opens the window, prepares it, passes it to `act` and closes it.
void InWindow(const WindowState& state, AppContext& app, QWidget* parent,
              const std::function<void(QWidget&)>& act);
} // namespace mact
