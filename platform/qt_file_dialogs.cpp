#include "platform/qt_file_dialogs.h"

#include "dialogs/dialog_routines.h"

#include <QApplication>
#include <QFileDialog>

namespace mact {
namespace {

QString TextFiles() {
    return QStringLiteral("Text files (*.txt);;All files (*)");
}

QString Programs() {
#ifdef _WIN32
    return QStringLiteral("Programs (*.exe);;All files (*)");
#else
    return QStringLiteral("All files (*)");
#endif
}

std::optional<std::filesystem::path> PathOf(const QString& choice) {
    if (choice.isEmpty()) return {}; // cancelled
    return ToPath(choice);
}

} // namespace

std::optional<std::filesystem::path> QtFileDialogs::ChooseFileToOpen(const std::string& title,
                                                                     FileKind kind) {
    return PathOf(QFileDialog::getOpenFileName(QApplication::activeWindow(), QString::fromStdString(title),
                                               QString(),
                                               kind == FileKind::Program ? Programs() : TextFiles()));
}

std::optional<std::filesystem::path> QtFileDialogs::ChooseFileToSave(const std::string& title) {
    return PathOf(QFileDialog::getSaveFileName(QApplication::activeWindow(), QString::fromStdString(title),
                                               QString(), TextFiles()));
}

std::optional<std::filesystem::path> QtFileDialogs::ChooseFolder(const std::string& title,
                                                                 const std::filesystem::path& start) {
    return PathOf(QFileDialog::getExistingDirectory(QApplication::activeWindow(),
                                                    QString::fromStdString(title), FromPath(start)));
}
} // namespace mact
