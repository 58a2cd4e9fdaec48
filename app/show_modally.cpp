#include "app/dialog_routines.h"

#include "base/numbers.h"
#include "base/text.h"

#include <QDialog>
#include <QScreen>

namespace {

constexpr std::string_view WindowsSection = "WINDOWS";

/// A size as it is kept: width, "x", height, as in 520x304.
std::optional<QSize> ParseSize(std::string_view text) {
    const std::vector<std::string_view> pieces = Split(text, 'x');
    if (pieces.size() != 2) return {};
    const std::optional<std::int16_t> width = ParseInt16(pieces[0]);
    const std::optional<std::int16_t> height = ParseInt16(pieces[1]);
    if (!width || !height) return {};
    return QSize(*width, *height);
}

std::string SizeText(const QSize& size) {
    return WholeNumberText(size.width()) + 'x' + WholeNumberText(size.height());
}

} // namespace

int ShowModally(AppContext& app, QDialog& window, const QString& name) {
    const std::string key = (name.isEmpty() ? window.objectName() : name).toStdString();
    const QSize shown = ParseSize(app.Settings.Read(WindowsSection, key))
                            .value_or(window.size())
                            .expandedTo(window.minimumSizeHint())
                            .boundedTo(window.screen()->availableSize());
    window.resize(shown);
    const int result = window.exec();
    // A size that cannot be kept is not worth a message.
    if (window.size() != shown)
        static_cast<void>(app.Settings.Write(WindowsSection, key, SizeText(window.size())));
    return result;
}
