#pragma once

#include "base/app_context.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The backup sets that can be restored, and what is in them. Nothing here changes or creates a file. A set's
/// date is the newest time of its files, which have the times of the data files they were copied from.

struct FoundSet {
    std::filesystem::path Folder;
    std::optional<std::filesystem::file_time_type> Newest{}; ///< empty = no file has a time
};

/// The sets in the configured backup folder and in the program folder, newest first. A folder that is not
/// there has none; one that cannot be read is a Failure.
Result<std::vector<FoundSet>> FindBackupSets(AppContext& app);

/// The same for one folder.
Result<std::vector<FoundSet>> FindBackupSetsIn(const std::filesystem::path& folder);

/// The set's date.
std::optional<std::filesystem::file_time_type> NewestTimeIn(const std::filesystem::path& set);

/// The folder that is meant: a path, or the name or number of one of the sets found. Empty if there is none.
Result<std::optional<std::filesystem::path>> SetMeantBy(AppContext& app, const std::string& utf8Text);

/// The files of a set that a restore takes, and why the set is cut or incomplete.
struct SetContent {
    std::vector<std::filesystem::path> Files{}; ///< names; undo files only with their data files
    std::vector<std::string> Faults{};          ///< UTF-8 sentences; empty = the set is complete
};
/// A Failure if the folder cannot be read.
Result<SetContent> ReadSetContent(AppContext& app, const std::filesystem::path& set);

struct SetDescription {
    std::filesystem::path Folder;
    std::optional<std::filesystem::file_time_type> Newest{};
    std::vector<std::string> Companies{}; ///< UTF-8 names of those that can be selected, in file order
    std::size_t Materials = 0;            ///< that are not deleted, of all companies
    std::size_t UsageRecords = 0;         ///< the same
    std::vector<std::string> Findings{};  ///< of the data check, UTF-8
    std::vector<std::string> Faults{};    ///< why it is cut or incomplete; UTF-8 sentences
};
/// Reads every record of the set. What cannot be read is among the faults.
SetDescription DescribeSet(AppContext& app, const std::filesystem::path& set);

/// By the local time, as in 2005-03-31 17:05; empty without a time.
std::string DateText(const std::optional<std::filesystem::file_time_type>& time);
/// As in Acme; Beta Boats
std::string CompaniesText(const SetDescription& set);
} // namespace mact
