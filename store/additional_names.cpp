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

constexpr std::string_view LineEnd = "\r\n";

/// Not in quotes, so a comma in a name divides the line when it is read.
std::string FileOf(const PollutantNames& names) {
    std::string file = names.front();
    for (std::size_t index = 1; index < names.size(); ++index)
        AppendAll(file, "|", names[index]);
    file += LineEnd;
    return file;
}

bool AreSameNames(std::string_view line, const PollutantNames& names) {
    return AreSix(line) && std::ranges::equal(Split(line, '|'), names, {}, Trim,
                                              [](const std::string& name) { return Trim(name); });
}

std::size_t CountNames(std::string_view line) {
    return line.empty() ? 0 : Split(line, '|').size();
}

/// Short enough for six of them to be read at a glance.
std::string Shown(std::string_view name) {
    constexpr std::size_t longest = 40;
    const std::size_t end = name.find(LineEnd); // is within a value whose quote is never closed
    std::string shown = Utf8FromCodePage(name.substr(0, std::min(end, longest)));
    if (end > longest && name.size() > longest) shown += "...";
    if (end != std::string_view::npos) shown += "<line break>";
    return shown;
}

std::string InQuotes(std::string_view line) {
    std::string text;
    for (const std::string_view name : Split(line, '|'))
        AppendAll(text, text.empty() ? "\"" : ", \"", Shown(Trim(name)), "\"");
    return text;
}

void AddCause(std::string& causes, std::string_view cause) {
    AppendAll(causes, causes.empty() ? "" : " and ", cause);
}

/// Whether a quote begins a value: the first one, or one after a comma.
bool HasLeadingQuote(std::string_view line) {
    for (std::size_t quote = line.find('"'); quote != std::string_view::npos;
         quote = line.find('"', quote + 1)) {
        const std::string_view before = TrimEnd(line.substr(0, quote));
        if (before.empty() || before.ends_with(',')) return true;
    }
    return false;
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
    return ReplaceFile(data.Files, AdditionalNamesFile(data), FileOf(names));
}

std::string WhatIsReadBack(const PollutantNames& names) {
    const std::string file = FileOf(names);
    const std::string_view line = LastCommaSeparatedValue(file);
    if (AreSameNames(line, names)) return {};
    std::string text = AreSix(line) ? "These names will be read back as " + InQuotes(line) + '.'
                                    : "None of these names will be read back: the file would hold " +
                                          Counted(CountNames(line), "name") + ", and six are needed.";
    const std::string_view all = std::string_view(file).substr(0, file.size() - LineEnd.size());
    std::string causes;
    if (all.find(',') != std::string_view::npos) AddCause(causes, "commas");
    if (std::ranges::any_of(names, [](const auto& name) { return name.find('|') != std::string::npos; }))
        AddCause(causes, "\"|\"");
    if (HasLeadingQuote(all)) AddCause(causes, "a quotation mark in front");
    return text + " Avoid " + causes + '.'; // one of them there is: nothing else changes a line
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
