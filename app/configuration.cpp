#include "app/configuration.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"

namespace mact {
namespace {

Failed Save(AppContext& app, std::string_view section, std::string_view key, std::string_view value) {
    const Done saved = app.Settings.Write(section, key, value);
    if (!saved) ShowError(app, saved.error());
    return !saved;
}

} // namespace

Configuration ReadConfiguration(AppContext& app) {
    Configuration configuration;
    configuration.BackupFolder = app.Settings.Read(Settings::Backup, Settings::Path);
    if (!IsFolderAt(PathFromUtf8(configuration.BackupFolder)))
        configuration.BackupFolder = PathText(app.ProgramFolder);
    configuration.IsBackedUpOnExit =
        ParseNumber(app.Settings.Read(Settings::Backup, Settings::AutoBackup)) == 1.0;
    configuration.Browser = app.Settings.Read(Settings::Browser, Settings::Path);
    if (!IsFileAt(PathFromUtf8(configuration.Browser))) configuration.Browser.clear();
    return configuration;
}

Failed SaveConfiguration(AppContext& app, const Configuration& configuration) {
    Failed failed = false;
    if (!configuration.BackupFolder.empty())
        failed |= Save(app, Settings::Backup, Settings::Path, configuration.BackupFolder);
    failed |= Save(app, Settings::Backup, Settings::AutoBackup, configuration.IsBackedUpOnExit ? "1" : "0");
    const std::string_view browser = Trim(configuration.Browser);
    if (browser.empty() || IsFileAt(PathFromUtf8(browser)))
        failed |= Save(app, Settings::Browser, Settings::Path, browser);
    return failed;
}

} // namespace mact
