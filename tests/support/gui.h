#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <string>

namespace mact {

/// The control with that name; if there is none, the test stops with a message.
template <class T> T& Named(const QObject& window, const char* name) {
    T* control = window.findChild<T*>(QString::fromLatin1(name));
    if (!control) qFatal("%s has no such control named %s", qPrintable(window.objectName()), name);
    return *control;
}

/// Passes the next modal window to `act` once it is shown, then closes it unless `act` did.
template <class W, class Act> void InNextModal(Act act) {
    QTimer::singleShot(0, qApp, [act] {
        const QPointer<W> window = qobject_cast<W*>(QApplication::activeModalWidget());
        if (!window) qFatal("The expected window %s is not open", W::staticMetaObject.className());
        act(*window);
        if (window && window->isVisible()) window->close();
    });
}

/// What a label, button or line edit shows, as UTF-8.
template <class T> std::string TextOf(const QObject& window, const char* name) {
    return Named<T>(window, name).text().toStdString();
}
} // namespace mact
