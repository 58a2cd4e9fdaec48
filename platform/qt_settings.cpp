#include "platform/qt_settings.h"

#include "base/settings.h"
#include "base/text.h"
#include "platform/os_files.h"

#include <QDir>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <algorithm>
#include <chrono>

namespace mact {
namespace {

QString ToQt(std::string_view utf8Text) {
    return QString::fromUtf8(utf8Text.data(), static_cast<qsizetype>(utf8Text.size()));
}

/// The user's own settings; those that an administrator made for all users do not show through.
class UserSettings : public QSettings {
public:
    UserSettings() : QSettings(NativeFormat, UserScope, QStringLiteral("MACT"), ToQt(Settings::Application)) {
        setFallbacksEnabled(false);
    }
};

QString KeyText(std::string_view section, std::string_view key) {
    return ToQt(section) + u'/' + ToQt(key);
}

std::filesystem::path FileOf(const QSettings& settings) {
    return PathFromUtf8(QDir::toNativeSeparators(settings.fileName()).toStdString());
}

#ifdef Q_OS_WIN

/// Why the value was not saved; empty if it was.
std::string Save(const QString& key, const QString& value) {
    UserSettings settings; // the registry
    settings.setValue(key, value);
    settings.sync();
    return settings.status() == QSettings::NoError ? "" : "it cannot be written";
}

#else

bool HoldSameValues(const QSettings& left, const QSettings& right) {
    const QStringList keys = left.allKeys();
    return keys == right.allKeys() &&
           std::ranges::all_of(keys, [&](const QString& key) { return left.value(key) == right.value(key); });
}

/// The content of a settings file with one value more, or changed; empty if Qt cannot make it. Qt works on a
/// copy in a folder of its own, since on a disk that is almost full it can leave an empty file in place of
/// the old one.
std::optional<std::string> WithValue(const std::string& content, const QString& key, const QString& value) {
    const QTemporaryDir folder;
    const auto pathOf = [&](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
    const auto put = [&](const char* name, const std::string& bytes) {
        OsFiles files;
        return folder.isValid() && ReplaceFile(files, PathFromUtf8(pathOf(name).toStdString()), bytes);
    };
    if (!put("settings.conf", content)) return {};
    QSettings settings(pathOf("settings.conf"), QSettings::NativeFormat);
    settings.setValue(key, value);
    settings.sync();
    OsFiles files;
    const auto changed = ReadWholeFile(files, PathFromUtf8(pathOf("settings.conf").toStdString()));
    if (settings.status() != QSettings::NoError || !changed || !put("again.conf", *changed)) return {};
    const QSettings again(pathOf("again.conf"),
                          QSettings::NativeFormat); // what was written, not what was meant
    return HoldSameValues(settings, again) ? std::optional(*changed) : std::nullopt;
}

/// Why the value was not saved; empty if it was.
std::string Save(const QString& key, const QString& value) {
    constexpr const char* cannotBeWritten = "it cannot be written";
    constexpr auto onlyTheUser = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    const std::filesystem::path path = FileOf(UserSettings());
    std::error_code ignored; // opening the file below fails too
    std::filesystem::create_directories(path.parent_path(), ignored);
    OsFiles files;
    const bool isNew = !IsFileAt(path);
    const Result<std::unique_ptr<OpenedFile>> held = files.Open(path, OpenMode::Update);
    // Two copies that save at once would lose a setting of one of them.
    if (!held || !(*held)->Lock()) return cannotBeWritten;
    if (isNew) std::filesystem::permissions(path, onlyTheUser, ignored);
    const std::filesystem::file_time_type timeBefore = std::filesystem::last_write_time(path, ignored);
    const Result<std::string> before = ReadWholeFile(files, path);
    if (!before) return cannotBeWritten;
    const std::optional<std::string> after = WithValue(*before, key, value);
    if (!after) return "it is not a settings file";
    if (!ReplaceFile(files, path, *after)) return cannotBeWritten;
    // Qt does not read a file again whose size and time, in ms, are those that it knows.
    const auto timeAfter =
        std::max(std::filesystem::last_write_time(path, ignored), timeBefore + std::chrono::milliseconds(2));
    std::filesystem::last_write_time(path, timeAfter, ignored);
    return "";
}

#endif

} // namespace

std::string QtSettings::Read(std::string_view section, std::string_view key) {
    const UserSettings settings; // made anew: another running copy may have written
    const QVariant value = settings.value(KeyText(section, key));
    // Qt reads a value with an unquoted comma, from a file edited by hand, as a list.
    if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(u',').toStdString();
    return value.toString().toStdString();
}

Done QtSettings::Write(std::string_view section, std::string_view key, std::string_view value) {
    const std::string reason = Save(KeyText(section, key), ToQt(value));
    if (reason.empty()) return Success();
    return Failure{"save the setting " + KeyText(section, key).toStdString() + " in", FileOf(UserSettings()),
                   reason};
}
} // namespace mact
