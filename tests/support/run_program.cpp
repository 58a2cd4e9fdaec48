#include "tests/support/run_program.h"

#include "base/text.h"

#include <QProcess>

namespace mact {

ProgramRun RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                      const std::filesystem::path& settingsFolder, std::string_view input) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", QString::fromStdString(PathText(settingsFolder)));
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
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}
} // namespace mact
