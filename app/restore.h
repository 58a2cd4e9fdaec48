#pragma once

#include "base/app_context.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// Puts the files of a backup set in the place of the data folder's files.
///
/// What is there is kept as a new backup set first. The set's files are copied into a second folder beside
/// the data folder, flushed and compared, and changes in them that were cut off are taken back; then the
/// folders are swapped (data_swap.h). Until then nothing has happened. Every file of the data folder is
/// locked while it is compared with the kept set and swapped, so that nothing that another copy saves is
/// lost.

/// What the user is asked; each answers whether to go on, and gets UTF-8 sentences.
struct RestoreQuestions {
    using Question = std::function<bool(const std::vector<std::string>& sentences)>;
    Question RestoresIncompleteSet = [](const auto&) { return false; };
    /// The sentences say which of the present files could not be copied into the kept set.
    Question GoesOnWithoutBackup = [](const auto&) { return false; };
    /// Called before each file that is copied or compared; not a question.
    std::function<void(const std::string& utf8Text)> Progress = [](const auto&) {};
};

struct Restored {
    std::filesystem::path KeptSet; ///< what was there before; empty = there was no data folder
    std::optional<std::filesystem::path> ReplacedFolder; ///< the folder itself, if it holds more than the set
};

/// Shows its failures. Empty if the set has not been restored, or if the answer to a question was no; the
/// data is then as it was. Afterwards the current company is that of its number in the restored data, or
/// none.
std::optional<Restored> RestoreSet(AppContext& app, const std::filesystem::path& set,
                                   const RestoreQuestions& questions);

/// Of what was done, UTF-8, in two sentences or three.
std::string RestoredText(const std::filesystem::path& set, const Restored& restored);
} // namespace mact
