#pragma once

#include "base/result.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What the program asks of its platform, apart from files (base/files.h). All texts are UTF-8.

/// Base of the interfaces through which the program reaches its platform. Never copied.
class Service {
public:
    Service() = default;
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    virtual ~Service() = default;
};

enum class PromptKind {
    Failure,     ///< something could not be done; critical icon
    FormErrors,  ///< what is wrong with a form's entries; information icon
    Information, ///< information icon
    Exclamation, ///< exclamation icon
    Question,    ///< question icon
};
enum class PromptButtons { Ok, YesNo, YesNoCancel };
enum class PromptAnswer { Ok, Yes, No, Cancel };

/// The caption is always "MACT".
struct Prompt {
    std::string Text; ///< plain text
    PromptKind Kind = PromptKind::Information;
    PromptButtons Buttons = PromptButtons::Ok;
};

class MessagePrompts : public Service {
public:
    /// Shows the message and waits for the answer; closing the box counts as No or Cancel.
    virtual PromptAnswer Show(const Prompt& prompt) = 0;
};

/// Per-user settings by section and key, all texts, under one application name.
class SettingsStore : public Service {
public:
    /// An unset key reads as the empty text.
    virtual Result<std::string> TryRead(std::string_view section, std::string_view key) = 0;
    /// The same for what can do without: a setting that cannot be read counts as unset.
    std::string Read(std::string_view section, std::string_view key) {
        const Result<std::string> value = TryRead(section, key);
        return value ? *value : std::string();
    }
    /// On disk when it succeeds.
    virtual Done Write(std::string_view section, std::string_view key, std::string_view value) = 0;
};

/// A program to start, without waiting for it.
struct ProgramStart {
    std::filesystem::path Program;
    std::vector<std::string> Arguments;
    std::string CommandLine; ///< used on Windows instead of the two above, verbatim
    bool HasHiddenWindow = false;
    /// Used on Windows instead of all of these, if it is not empty: a command script, which is run by its
    /// name in its folder. In a path, between quotes too, %NAME% would be replaced with the variable's value.
    std::filesystem::path Script = {};
};

class ProgramStarter : public Service {
public:
    virtual Done Start(const ProgramStart& start) = 0;
    /// Shows the file in the program that the user's system has for it.
    virtual Done OpenWithSystem(const std::filesystem::path& file) = 0;
    /// The text as written in a command script; a Failure if the interpreter lacks one of its characters.
    virtual Result<std::string> ScriptText(std::string_view utf8Text) { return std::string(utf8Text); }
};

/// Which files a dialog offers.
enum class FileKind { Text, Program, Pdf };

/// The platform's standard dialogs. Each returns nothing if the user cancels.
class FileDialogs : public Service {
public:
    virtual std::optional<std::filesystem::path> ChooseFileToOpen(const std::string& title,
                                                                  FileKind kind) = 0;
    /// A PDF whose name is given without an ending gets ".pdf"; the question whether to replace a file is
    /// about that name.
    virtual std::optional<std::filesystem::path> ChooseFileToSave(const std::string& title,
                                                                  FileKind kind = FileKind::Text) = 0;
    /// An existing folder; `start` is shown first.
    virtual std::optional<std::filesystem::path> ChooseFolder(const std::string& title,
                                                              const std::filesystem::path& start) = 0;
};

/// The colours in which all windows are shown.
class WindowColours : public Service {
public:
    /// Shows the windows in the colours of the setting, from now on: "light", "dark", or what the desktop
    /// asks for.
    virtual void FollowSetting() = 0;
};

class Clock : public Service {
public:
    /// By the user's local time.
    virtual std::chrono::year_month CurrentMonth() = 0;
};
} // namespace mact
