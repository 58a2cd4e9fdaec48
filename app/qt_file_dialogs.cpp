#include "app/qt_file_dialogs.h"

#include "app/dialog_routines.h"

#include <QApplication>
#include <QFileDialog>

namespace {

QString TextFiles() {
    return QStringLiteral("Text files (*.txt);;All files (*)");
}

std::optional<std::filesystem::path> PathOf(const QString& choice) {
    if (choice.isEmpty()) return {};
    return ToPath(choice);
}

} // namespace

std::optional<std::filesystem::path> QtFileDialogs::ChooseFileToOpen(const std::string& title) {
    return PathOf(QFileDialog::getOpenFileName(QApplication::activeWindow(), QString::fromStdString(title),
                                               QString(), TextFiles()));
}

std::optional<std::filesystem::path> QtFileDialogs::ChooseFileToSave(const std::string& title) {
    return PathOf(QFileDialog::getSaveFileName(QApplication::activeWindow(), QString::fromStdString(title),
                                               QString(), TextFiles()));
}
