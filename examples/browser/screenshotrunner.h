#pragma once

#include <QDeadlineTimer>
#include <QSize>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QImage;
class QObject;
class QQuickWindow;
class QVariant;

namespace ts::pm {
class PackageReference;
class PackageRepository;
} // namespace ts::pm

namespace browser {

class BrowserSession;
struct BrowserOptions;
struct ScreenshotSubjects;

/**
 * Leads the window through all its views and saves a picture of each, in the themes that the options ask for.
 *
 * A picture is taken when the view has what it is about and all images have been read; nothing waits for a
 * fixed time. The whole run has a time limit.
 *
 * Ownership: owns neither window nor session.
 * Threads: the thread of the user interface; spins the event loop.
 * Errors: the first view that does not come about, or is blank, or cannot be saved, ends the run with a
 * message on the standard error output.
 */
class ScreenshotRunner
{
public:
    ScreenshotRunner(QQuickWindow &window, BrowserSession &session, const BrowserOptions &options);

    /** Whether all pictures have been written. */
    [[nodiscard]] bool run();

private:
    using Condition = std::function<bool()>;

    bool waitForCatalogue();
    bool drawCatalogue(const ScreenshotSubjects &subjects);
    bool drawLanguages();
    bool drawSuggestions(const ScreenshotSubjects &subjects);
    bool drawCategory(const ScreenshotSubjects &subjects);
    bool drawSortedByTitle();
    bool drawDetails(ts::pm::PackageRepository &repository, const ScreenshotSubjects &subjects);
    bool drawNarrowViews();
    bool drawNoHits(const ScreenshotSubjects &subjects);
    bool drawMessages();
    bool drawMessage(const QString &view, const QString &message);

    bool draw(const QString &view, const Condition &ready);
    bool drawInTheme(const QString &view, const QString &theme, const Condition &ready);
    bool save(const QString &view, const QImage &image);
    std::unique_ptr<QObject> readInstalledPicture(const ts::pm::PackageReference &reference);
    QImage grabWhenStill(const Condition &ready);
    bool waitFor(const Condition &condition);
    bool fail(const QString &view, const QString &reason) const;

    bool hasSize(const QSize &wanted) const;
    QVariant property(const char *name) const;
    int number(const char *name) const;
    bool flag(const char *name) const;
    bool listsAll() const;
    void call(const char *function, const QString &argument);
    void call(const char *function);
    bool hasKeyboard();
    void search(const QString &text);
    void type(const QString &text);

    QQuickWindow &window;
    BrowserSession &session;
    const QString directory;
    const QString variant; // the end of each file name
    const QStringList themes;
    const QSize size;
    QDeadlineTimer deadline;
};

} // namespace browser
