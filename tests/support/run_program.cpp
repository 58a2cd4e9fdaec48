#include "tests/support/run_program.h"

#include "base/text.h"

#include <QProcess>

namespace mact {
namespace {

/// What a program wrote, with its line ends as the tests have them: those of Windows are CR LF.
std::string Written(const QByteArray& bytes) {
    std::string text = bytes.toStdString();
#ifdef _WIN32
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; ++at)
        text.erase(at, 1);
#endif
    return text;
}

} // namespace

ProgramRun RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                      const std::filesystem::path& settingsFolder, std::string_view input) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("MACT_SETTINGS_FOLDER", QString::fromStdString(PathText(settingsFolder)));
    QStringList texts;
    for (const std::string& argument : arguments)
        texts << QString::fromStdString(argument);

    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QString::fromStdString(PathText(program)), texts);
    process.write(input.data(), static_cast<qint64>(input.size()));
    process.closeWriteChannel();
    constexpr int aMinute = 60'000;
    if (!process.waitForFinished(aMinute) || process.exitStatus() != QProcess::NormalExit) return {};
    return {process.exitCode(), Written(process.readAllStandardOutput()),
            Written(process.readAllStandardError())};
}
} // namespace mact
