#pragma once

#include "base/services.h"

namespace mact {

/// Message boxes over the active window.
class QtPrompts : public MessagePrompts {
public:
    PromptAnswer Show(const Prompt& prompt) override;
};
} // namespace mact
