#include "overview/overview_options.h"

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <utility>

namespace mact {
namespace {

constexpr std::string_view StartKey = "start";
constexpr std::string_view WarnHeadroomKey = "warn_headroom";
constexpr std::string_view WarnContentKey = "warn_content";
constexpr std::string_view OptionKeyStart = "option.";
constexpr std::string_view AddressKey = "address";

constexpr std::pair<OperationOption, std::string_view> OptionTexts[] = {
    {OperationOption::Average,  "average" },
    {OperationOption::TableTwo, "table2"  },
    {OperationOption::Filled,   "filled"  },
    {OperationOption::Closed,   "closed"  },
    {OperationOption::NotUsed,  "not used"},
};

std::optional<OperationOption> OptionOfText(std::string_view text) {
    for (const auto& [option, its] : OptionTexts)
        if (its == text) return option;
    return std::nullopt;
}

std::optional<MonthNumber> MonthEndOf(std::string_view text) {
    const std::optional<MonthNumber> month = MonthOfPeriod(text);
    return month && *month >= FirstMonthEnd && *month <= LastMonthEnd ? month : std::nullopt;
}

/// Takes in a percentage. False if the text is none.
bool TakePercent(std::string_view text, double& percent) {
    const std::optional<double> number = ParseNumber(text);
    if (!number || *number < 0 || *number > 100) return false;
    percent = *number;
    return true;
}

/// What a line of the file was.
enum class Line { Understood, NotUnderstood, OfAnotherKey };

Line Judged(bool isUnderstood) {
    return isUnderstood ? Line::Understood : Line::NotUnderstood;
}

Line TakeOption(std::string_view operation, std::string_view value, OverviewOptions& options) {
    const auto* const found = std::ranges::find(Operations, operation);
    if (found == Operations.end()) return Line::OfAnotherKey;
    std::optional<OperationOption>& option =
        options.OptionOf[static_cast<std::size_t>(found - Operations.begin())];
    option = OptionOfText(value);
    return Judged(option.has_value() || value.empty());
}

Line TakeValue(std::string_view key, std::string_view value, OverviewOptions& options) {
    if (key == StartKey) {
        options.Start = MonthEndOf(value);
        return Judged(options.Start.has_value() || value.empty());
    }
    if (key == WarnHeadroomKey) return Judged(TakePercent(value, options.WarnHeadroom));
    if (key == WarnContentKey) return Judged(TakePercent(value, options.WarnContent));
    if (key == AddressKey) {
        options.Address = value;
        return Line::Understood;
    }
    if (key.starts_with(OptionKeyStart)) return TakeOption(key.substr(OptionKeyStart.size()), value, options);
    return Line::OfAnotherKey;
}

/// A damaged file may have a line of any length.
std::string Shortened(std::string_view line) {
    constexpr std::size_t most = 80;
    return line.size() <= most ? std::string(line) : std::string(line.substr(0, most)) + "...";
}

void TakeLine(std::string_view line, std::string_view file, OverviewOptions& options) {
    if (Trim(line).empty()) return;
    const std::size_t equals = line.find('=');
    const Line was = equals == std::string_view::npos
                         ? Line::OfAnotherKey
                         : TakeValue(Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)), options);
    if (was == Line::OfAnotherKey) options.OtherLines.emplace_back(line);
    if (was != Line::NotUnderstood) return;
    std::string sentence = "The line \"" + Printable(Shortened(line)) + "\" of ";
    AppendAll(sentence, file, " is not understood and counts as not set.");
    options.NotUnderstood.push_back(std::move(sentence));
}

OverviewOptions OptionsIn(std::string_view content, std::string_view file) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // as some editors put in front
    if (content.starts_with(byteOrderMark)) content.remove_prefix(byteOrderMark.size());
    OverviewOptions options;
    while (!content.empty()) {
        const std::size_t end = std::min(content.find_first_of("\r\n"), content.size());
        TakeLine(content.substr(0, end), file, options);
        content.remove_prefix(std::min(end + 1, content.size()));
    }
    return options;
}

void AddLine(std::string& content, std::string_view key, std::string_view value) {
    AppendAll(content, key, "=", value, "\r\n");
}

} // namespace

std::string_view OptionText(OperationOption option) {
    for (const auto& [its, text] : OptionTexts)
        if (its == option) return text;
    return {};
}

Result<OverviewOptions> ReadOverviewOptions(const DataFiles& data) {
    const std::filesystem::path path = OverviewOptionsFile(data);
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return OverviewOptions{};
    return ReadWholeFile(data.Files, path, LongestSmallFile).transform([&](const std::string& content) {
        return OptionsIn(content, PathText(path.filename()));
    });
}

Done SaveOverviewOptions(const DataFiles& data, const OverviewOptions& options) {
    std::string content;
    if (options.Start) AddLine(content, StartKey, MonthText(*options.Start));
    AddLine(content, WarnHeadroomKey, NumberText(options.WarnHeadroom));
    AddLine(content, WarnContentKey, NumberText(options.WarnContent));
    for (std::size_t operation = 0; operation < Operations.size(); ++operation)
        if (const auto& option = options.OptionOf[operation])
            AddLine(content, std::string(OptionKeyStart) + std::string(Operations[operation]),
                    OptionText(*option));
    const std::string_view address = Trim(options.Address);
    if (!address.empty()) AddLine(content, AddressKey, Printable(address));
    for (const std::string& line : options.OtherLines)
        AppendAll(content, line, "\r\n");
    return ReplaceFile(data.Files, OverviewOptionsFile(data), content);
}
} // namespace mact
