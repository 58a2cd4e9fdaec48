#include "app/configuration.h"

#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"

namespace mact {
Configuration ReadConfiguration(AppContext& app) {
    Configuration configuration;
    const auto read = [&](std::string_view section, std::string_view key) {
        const Result<std::string> value = app.Settings.TryRead(section, key);
        if (!value) configuration.Unread = value.error();
        return value ? *value : std::string();
    };
    configuration.BackupFolder = read(Settings::Backup, Settings::Path);
    // One that cannot be seen may well be there: it is shown, so that a save does not put another in its
    // place.
    const auto isKnownToBeGone = [](const Result<bool>& isThere) { return isThere && !*isThere; };
    if (isKnownToBeGone(LookForFolder(PathFromUtf8(configuration.BackupFolder))))
        configuration.BackupFolder = PathText(app.ProgramFolder);
    // Any text for 1, such as 1.0, shows as ticked; BackUpOnExit wants exactly "1", which a save writes.
    configuration.IsBackedUpOnExit = ParseNumber(read(Settings::Backup, Settings::AutoBackup)) == 1.0;
    configuration.Browser = read(Settings::Browser, Settings::Path);
    if (isKnownToBeGone(LookForFile(PathFromUtf8(configuration.Browser)))) configuration.Browser.clear();
    configuration.UsesSystemBrowser = read(Settings::Browser, Settings::System) == "1";
    configuration.WindowColours = read(Settings::Looks, Settings::WindowColours);
    const bool isKnown =
        configuration.WindowColours == Settings::Light || configuration.WindowColours == Settings::Dark;
    if (!isKnown) configuration.WindowColours.clear();
    return configuration;
}

bool IsBrowserToBeSaved(std::string_view browser) {
    const std::string_view path = Trim(browser);
    const Result<bool> isThere = path.empty() ? true : LookForFile(PathFromUtf8(path));
    return !isThere || *isThere;
}

std::vector<Failure> SaveConfiguration(SettingsStore& settings, const Configuration& configuration) {
    std::vector<Failure> failures;
    const auto save = [&](std::string_view section, std::string_view key, std::string_view value) {
        const Done saved = settings.Write(section, key, value);
        if (!saved) failures.push_back(saved.error());
    };
    if (!configuration.BackupFolder.empty())
        save(Settings::Backup, Settings::Path, configuration.BackupFolder);
    save(Settings::Backup, Settings::AutoBackup, configuration.IsBackedUpOnExit ? "1" : "0");
    const std::string_view browser = Trim(configuration.Browser);
    const Result<bool> isThere = browser.empty() ? true : LookForFile(PathFromUtf8(browser));
    if (!isThere) failures.push_back(isThere.error());
    if (isThere && *isThere) save(Settings::Browser, Settings::Path, browser);
    const auto saveChange = [&](std::string_view section, std::string_view key, std::string_view value,
                                std::string_view before) {
        if (value != before) save(section, key, value);
    };
    const bool usedSystem = settings.Read(Settings::Browser, Settings::System) == "1";
    saveChange(Settings::Browser, Settings::System, configuration.UsesSystemBrowser ? "1" : "0",
               usedSystem ? "1" : "0");
    saveChange(Settings::Looks, Settings::WindowColours, configuration.WindowColours,
               settings.Read(Settings::Looks, Settings::WindowColours));
    return failures;
}
} // namespace mact
