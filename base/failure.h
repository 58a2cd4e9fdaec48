#pragma once

#include <filesystem>
#include <string>

namespace mact {

/// What went wrong, as the pieces of one sentence for the user. All texts are UTF-8.
struct Failure {
    std::string Doing{};          ///< follows "Cannot", as in "open the file"; empty = Reason is the sentence
    std::filesystem::path Path{}; ///< the file or folder concerned; empty = Doing names it
    std::string Reason{};         ///< the system's wording, without its full stop; empty = unknown
};

/// Cannot open the file "C:\MACT\data\1_usage.talvor": No such file or directory.
std::string SentenceOf(const Failure& failure);

/// The same, uncapitalised and without a full stop, to be the reason of a failure that this one caused.
std::string ClauseOf(const Failure& failure);

/// One failure that says both, `first` first.
Failure BothOf(const Failure& first, const Failure& second);
} // namespace mact
