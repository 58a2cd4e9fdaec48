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

/// The names that the dialog offers first.
QString FilterOf(FileKind kind) {
    switch (kind) {
    case FileKind::Text:
        break;
    case FileKind::Program:
        return Programs();
    case FileKind::Pdf:
        return QStringLiteral("PDF files (*.pdf);;All files (*)");
    }
    return TextFiles();
}

std::optional<std::filesystem::path> PathOf(const QString& choice) {
    if (choice.isEmpty()) return {}; // cancelled
    return ToPath(choice);
}

} // namespace

std::optional<std::filesystem::path> QtFileDialogs::ChooseFileToOpen(const std::string& title,
                                                                     FileKind kind) {
    return PathOf(QFileDialog::getOpenFileName(QApplication::activeWindow(), QString::fromStdString(title),
                                               QString(), FilterOf(kind)));
}

std::optional<std::filesystem::path> QtFileDialogs::ChooseFileToSave(const std::string& title,
                                                                     FileKind kind) {
    QFileDialog dialog(QApplication::activeWindow(), QString::fromStdString(title), QString(),
                       FilterOf(kind));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setSupportedSchemes({QStringLiteral("file")});
    // Before the dialog asks whether to replace the file, which adding it later would not.
    if (kind == FileKind::Pdf) dialog.setDefaultSuffix(QStringLiteral("pdf"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return PathOf(dialog.selectedFiles().constFirst());
}

std::optional<std::filesystem::path> QtFileDialogs::ChooseFolder(const std::string& title,
                                                                 const std::filesystem::path& start) {
    return PathOf(QFileDialog::getExistingDirectory(QApplication::activeWindow(),
                                                    QString::fromStdString(title), FromPath(start)));
}
} // namespace mact
