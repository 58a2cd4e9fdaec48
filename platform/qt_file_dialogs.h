#pragma once

#include "base/services.h"

namespace mact {

/// The platform's file dialogs over the active window.
class QtFileDialogs : public FileDialogs {
public:
    std::optional<std::filesystem::path> ChooseFileToOpen(const std::string& title, FileKind kind) override;
    std::optional<std::filesystem::path> ChooseFileToSave(const std::string& title, FileKind kind) override;
    std::optional<std::filesystem::path> ChooseFolder(const std::string& title,
                                                      const std::filesystem::path& start) override;
};
} // namespace mact
