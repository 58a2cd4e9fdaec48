#include "platform/qt_settings.h"

#include "base/link_guard.h"
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
#include <memory>

namespace mact {
namespace {

constexpr std::string_view Organization = "MACT";

QString ToQt(std::string_view utf8Text) {
    return QString::fromUtf8(utf8Text.data(), static_cast<qsizetype>(utf8Text.size()));
}

QString KeyText(std::string_view section, std::string_view key) {
    return ToQt(section) + u'/' + ToQt(key);
}

QString QtPath(const std::filesystem::path& path) {
    return ToQt(PathText(path));
}

#ifdef Q_OS_WIN

/// The registry, or the settings file. Settings that an administrator made for all users do not show through.
std::unique_ptr<QSettings> UserSettings() {
    if (const std::filesystem::path file = SettingsFile(); !file.empty())
        return std::make_unique<QSettings>(QtPath(file), QSettings::IniFormat);
    auto registry = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                                ToQt(Organization), ToQt(Settings::Application));
    registry->setFallbacksEnabled(false);
    return registry;
}

Result<QVariant> ReadValue(const QString& key) {
    return UserSettings()->value(key);
}

/// Why the value was not saved; empty if it was.
std::string Save(const QString& key, const QString& value, const std::filesystem::path&) {
    const std::unique_ptr<QSettings> settings = UserSettings();
    settings->setValue(key, value);
    settings->sync();
    return settings->status() == QSettings::NoError ? "" : "it cannot be written";
}

std::filesystem::path ShownPlace() {
    return PathFromUtf8(QDir::toNativeSeparators(UserSettings()->fileName()).toStdString());
}

#else

/// Made anew for each value: another running copy may have written. Anything but a file holds no settings,
/// and opening a pipe would never return; nor does a file that would not fit in memory.
Result<QVariant> ReadValue(const QString& key) {
    const std::filesystem::path path = SettingsFile();
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) return QVariant();
    const bool isFile = std::filesystem::is_regular_file(status);
    const std::uintmax_t length = isFile ? std::filesystem::file_size(path, error) : 0;
    if (error) return Failure{"look for the file", path, error.message()};
    if (!isFile || length > LongestSmallFile) return QVariant();
    OsFiles files;
    const Result<std::string> content = ReadWholeFile(files, path, LongestSmallFile);
    if (!content) return content.error();
    const QSettings settings(QtPath(path), QSettings::NativeFormat);
    // Qt takes a file that it fails to read for an empty one.
    const bool hasValues = content->find('=') != std::string::npos;
    if (hasValues && settings.allKeys().isEmpty())
        return Failure{"read the settings in the file", path, "it cannot be read, or is not a settings file"};
    return settings.value(key);
}

bool HoldSameValues(const QSettings& left, const QSettings& right) {
    const QStringList keys = left.allKeys();
    return keys == right.allKeys() &&
           std::ranges::all_of(keys, [&](const QString& key) { return left.value(key) == right.value(key); });
}

/// The content of a settings file with one value more, or changed. Qt works on a copy in a folder of its own,
/// since on a disk that is almost full it can leave an empty file in place of the old one.
Result<std::string> WithValue(const std::string& content, const QString& key, const QString& value) {
    const Failure notWritten{.Reason = "a temporary file cannot be written"};
    const Failure noSettings{.Reason = "it is not a settings file"};
    const QTemporaryDir folder;
    const auto pathOf = [&](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
    const auto put = [&](const char* name, const std::string& bytes) {
        OsFiles files;
        return folder.isValid() && ReplaceFile(files, PathFromUtf8(pathOf(name).toStdString()), bytes);
    };
    if (!put("settings.conf", content) || !put("same.conf", content)) return notWritten;
    QSettings settings(pathOf("settings.conf"), QSettings::NativeFormat);
    // Qt takes a file that it fails to read for an empty one.
    const QSettings same(pathOf("same.conf"), QSettings::NativeFormat);
    if (!HoldSameValues(settings, same)) return noSettings;
    settings.setValue(key, value);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return settings.status() == QSettings::FormatError ? noSettings : notWritten;
    OsFiles files;
    const auto changed = ReadWholeFile(files, PathFromUtf8(pathOf("settings.conf").toStdString()));
    if (!changed || !put("again.conf", *changed)) return notWritten;
    // What was written, not what was meant.
    const QSettings again(pathOf("again.conf"), QSettings::NativeFormat);
    if (!HoldSameValues(settings, again)) return notWritten;
    return *changed;
}

/// Why the settings file cannot be replaced; empty if it can.
std::string ReasonNotToReplace(FileAccess& files, const std::filesystem::path& path,
                               const std::filesystem::path& programFolder) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return "it is not a regular file";
    const Done checked = LinkGuard(files, programFolder, path).CheckLink(path);
    return checked ? "" : checked.error().Reason;
}

/// Why the value was not saved; empty if it was.
std::string Save(const QString& key, const QString& value, const std::filesystem::path& programFolder) {
    constexpr const char* cannotBeWritten = "it cannot be written";
    constexpr auto onlyTheUser = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    const std::filesystem::path path = SettingsFile();
    OsFiles files;
    const std::string reason = ReasonNotToReplace(files, path, programFolder);
    if (!reason.empty()) return reason;
    std::error_code ignored; // opening the file below fails too
    std::filesystem::create_directories(path.parent_path(), ignored);
    const bool isNew = !IsFileAt(path);
    const Result<std::unique_ptr<OpenedFile>> held = files.Open(path, OpenMode::Update);
    // Two copies that save at once would lose a setting of one of them.
    if (!held) return cannotBeWritten;
    const Done locked = (*held)->Lock();
    if (!locked) return locked.error().Reason;
    if (isNew) std::filesystem::permissions(path, onlyTheUser, ignored);
    const std::filesystem::file_time_type timeBefore = std::filesystem::last_write_time(path, ignored);
    const Result<std::string> before = ReadWholeFile(files, path, LongestSmallFile);
    if (!before) return cannotBeWritten;
    const Result<std::string> after = WithValue(*before, key, value);
    if (!after) return after.error().Reason;
    if (!ReplaceFile(files, path, *after)) return cannotBeWritten;
    // Qt does not read a file again whose size and time, in ms, are those that it knows.
    const auto timeAfter =
        std::max(std::filesystem::last_write_time(path, ignored), timeBefore + std::chrono::milliseconds(2));
    std::filesystem::last_write_time(path, timeAfter, ignored);
    return "";
}

std::filesystem::path ShownPlace() {
    return SettingsFile();
}

#endif

} // namespace

std::filesystem::path SettingsFile() {
    const std::string name = std::string(Settings::Application) + ".conf";
    const QString folder = qEnvironmentVariable("MACT_SETTINGS_FOLDER");
    if (!folder.isEmpty()) return PathFromUtf8(folder.toStdString()) / Organization / name;
#ifdef Q_OS_WIN
    return {};
#else
    // Qt opens what it is asked for, and would wait for ever for a pipe. So it is asked for a file that
    // nobody has, and the name in that place is exchanged.
    const QSettings none(QSettings::NativeFormat, QSettings::UserScope,
                         ToQt(Organization) + QStringLiteral(".none"));
    return PathFromUtf8(none.fileName().toStdString()).parent_path() / Organization / name;
#endif
}

Result<std::string> QtSettings::TryRead(std::string_view section, std::string_view key) {
    return ReadValue(KeyText(section, key)).transform([](const QVariant& value) {
        // Qt reads a value with an unquoted comma, from a file edited by hand, as a list.
        const bool isList = value.typeId() == QMetaType::QStringList;
        return (isList ? value.toStringList().join(u',') : value.toString()).toStdString();
    });
}

Done QtSettings::Write(std::string_view section, std::string_view key, std::string_view value) {
    const std::string reason = Save(KeyText(section, key), ToQt(value), m_programFolder);
    if (reason.empty()) return Success();
    return Failure{"save the setting " + KeyText(section, key).toStdString() + " in", ShownPlace(), reason};
}
} // namespace mact
