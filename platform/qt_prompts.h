#pragma once

#include "base/services.h"

/// Message boxes over the active window.
class QtPrompts : public MessagePrompts {
public:
    PromptAnswer Show(const Prompt& prompt) override;
};
