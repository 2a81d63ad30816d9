#pragma once

#include <QQmlApplicationEngine>
#include <QStringList>

class QQuickWindow;

namespace browser {

class BrowserSession;

/**
 * The window of the browser: the QML engine with everything that the user interface needs.
 *
 * Ownership: owns engine and window, not the session, which has to live longer. One in a process.
 * Threads: the thread of the application object.
 * Errors: without the QML module, or with a fault in it, window() is null; the engine has said why.
 */
class BrowserWindow
{
public:
    explicit BrowserWindow(BrowserSession &session);

    QQuickWindow *window() const;

private:
    QQmlApplicationEngine engine;
};

} // namespace browser
