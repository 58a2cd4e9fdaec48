#pragma once

#include <filesystem>
#include <string>

namespace mact {

/// What went wrong, in the pieces of one sentence for the user. All texts are UTF-8.
struct Failure {
    std::string Doing{};          ///< follows "Cannot", as in "open the file"; empty = Reason is the sentence
    std::filesystem::path Path{}; ///< what it was done to; empty = Doing names it
    std::string Reason{};         ///< in the system's words, without its full stop; empty = not known
};

/// Cannot open the file "C:\MACT\data\1_usage.talvor": No such file or directory.
std::string SentenceOf(const Failure& failure);

/// The same without capital letter and full stop, to stand as the reason of the failure that it caused.
std::string ClauseOf(const Failure& failure);

/// One failure that says both, `first` first.
Failure BothOf(const Failure& first, const Failure& second);
} // namespace mact
