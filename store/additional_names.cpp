#include "store/additional_names.h"

#include "base/messages.h"
#include "base/text.h"
#include "store/data_folder.h"

#include <algorithm>

namespace mact {
namespace {

bool IsLineEnd(char character) {
    return character == '\r' || character == '\n';
}

/// Takes one value off the front of `text`, up to its comma or line end.
std::string_view TakeValue(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.starts_with('"')) {
        text.remove_prefix(1);
        const std::size_t end = std::min(text.find('"'), text.size()); // without a closing quote, all
        const std::string_view value = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        text.remove_prefix(std::min(text.find_first_of(",\r\n"), text.size()));
        return value;
    }
    const std::size_t end = std::min(text.find_first_of(",\r\n"), text.size());
    const std::string_view value = text.substr(0, end);
    text.remove_prefix(end);
    return Trim(value);
}

} // namespace

// Only the last value, on purpose: of names with a comma only the end survives.
std::string_view LastCommaSeparatedValue(std::string_view text) {
    std::string_view last;
    while (!text.empty()) {
        last = TakeValue(text);
        if (text.starts_with(',')) {
            text.remove_prefix(1);
            if (text.empty()) last = {}; // a comma at the end is followed by an empty value
        } else if (!text.empty() && IsLineEnd(text.front())) {
            text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
        }
    }
    return last;
}

Done ReadAdditionalNames(AppContext& app) {
    const std::filesystem::path path = AdditionalNamesFile(app);
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) {
        app.AdditionalNames = UnusedNames;
        return ReplaceFile(app.Files, path, '"' + std::string(UnusedNames) + "\"\r\n");
    }
    Result<std::string> content = ReadWholeFile(app.Files, path);
    if (!content) return content.error();
    // Cut out where it stands: a damaged file, perhaps of 64 MB, is not to be in memory twice.
    const std::string_view last = LastCommaSeparatedValue(*content);
    if (!last.empty()) {
        const auto start = static_cast<std::size_t>(last.data() - content->data());
        content->resize(start + last.size());
        content->erase(0, start);
    } else {
        content->clear();
    }
    app.AdditionalNames = std::move(*content);
    return Success();
}

void LoadAdditionalNames(AppContext& app) {
    ShowFailure(app, ReadAdditionalNames(app));
}

Done SaveAdditionalNames(const DataFiles& data, const PollutantNames& names) {
    std::string line = names.front();
    for (std::size_t index = 1; index < names.size(); ++index)
        line += '|' + names[index];
    // Not in quotes, so a comma in a name divides the line when it is read.
    return ReplaceFile(data.Files, AdditionalNamesFile(data), line + "\r\n");
}

bool AreSix(std::string_view names) {
    return std::ranges::count(names, '|') == 5;
}

PollutantNames SplitAdditionalNames(std::string_view names) {
    PollutantNames six;
    std::ranges::copy(Split(AreSix(names) ? names : UnusedNames, '|'), six.begin());
    return six;
}

bool IsUsedName(std::string_view name) {
    return Trim(name) != "-";
}
} // namespace mact
