#include "screenshotrunner.h"

#include "browseroptions.h"
#include "browsersession.h"
#include "screenshotsubjects.h"

#include <TamselPackageManager/IPackageProvider>
#include <TamselPackageManager/PackageReference>
#include <TamselPackageManager/PackageRepository>

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QKeyEvent>
#include <QLocale>
#include <QMetaObject>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QQuickWindow>
#include <QSet>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>

namespace browser {

namespace {

constexpr std::chrono::minutes timeLimit{3};
constexpr int checkInterval = 10;    // milliseconds between two looks at a condition
constexpr int fewestColours = 16;    // of a picture that shows something
constexpr int sampleDistance = 3;    // pixels
constexpr int imageStillLoading = 2; // Image.Loading
const QSize narrowSize(640, 480);

bool isLoading(const QQuickItem &item)
{
    if (!item.isVisible())
        return false;
    if (item.inherits("QQuickImage") && item.property("status").toInt() == imageStillLoading)
        return true;
    const QList<QQuickItem *> children = item.childItems();
    return std::any_of(children.begin(), children.end(),
                       [](const QQuickItem *child) { return isLoading(*child); });
}

bool showsSomething(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += sampleDistance) {
        for (int x = 0; x < image.width(); x += sampleDistance) {
            colours.insert(image.pixel(x, y));
            if (colours.size() >= fewestColours)
                return true;
        }
    }
    return false;
}

// The offscreen platform does not hand out what a window shows. Drawing the window then serves to draw its
// contents into an image.
QImage grabContents(QQuickWindow &window)
{
    const QSharedPointer<QQuickItemGrabResult> contents =
        window.contentItem()->grabToImage(window.size() * window.effectiveDevicePixelRatio());
    window.grabWindow();
    QImage image(contents->image().size(), QImage::Format_RGB32);
    image.fill(window.color());
    QPainter(&image).drawImage(image.rect(), contents->image());
    return image;
}

QImage grab(QQuickWindow &window)
{
    QImage image = window.grabWindow();
    return image.isNull() ? grabContents(window) : image;
}

QStringList themesFor(const BrowserOptions &options)
{
    return options.theme.isEmpty() ? QStringList{QStringLiteral("light"), QStringLiteral("dark")}
                                   : QStringList{options.theme};
}

} // namespace

ScreenshotRunner::ScreenshotRunner(QQuickWindow &window, BrowserSession &session,
                                   const BrowserOptions &options)
    : window(window)
    , session(session)
    , directory(options.screenshotDirectory)
    , variant(QStringLiteral("%1-%2").arg(QLocale().name().section(QLatin1Char('_'), 0, 0),
                                          options.screenshotVariant))
    , themes(themesFor(options))
    , size(session.windowSize())
    , deadline(timeLimit)
{
}

bool ScreenshotRunner::run()
{
    window.requestActivate();
    window.resize(size); // a platform may have shown it in another one
    if (!waitForCatalogue())
        return fail(QStringLiteral("catalogue"), QStringLiteral("the catalogue cannot be read in time"));
    const auto *provider = qobject_cast<ts::pm::IPackageProvider *>(property("provider").value<QObject *>());
    if (!provider)
        return fail(QStringLiteral("catalogue"), QStringLiteral("there is no package provider"));
    ts::pm::PackageRepository &repository = *provider->packageRepository();
    const ScreenshotSubjects subjects = ScreenshotSubjects::find(repository);
    return drawCatalogue(subjects) && drawLanguages() && drawSuggestions(subjects) && drawCategory(subjects)
           && drawSortedByTitle() && drawDetails(repository, subjects) && drawNarrowViews()
           && drawNoHits(subjects) && drawMessages();
}

bool ScreenshotRunner::waitForCatalogue()
{
    const auto hasAnswers = [this] {
        return !flag("connecting") && (session.databases().isEmpty() || number("packageCount") > 0);
    };
    if (!waitFor(hasAnswers))
        return false;
    // What the last server to answer has brought is in the catalogue after an update that is due now.
    QCoreApplication::processEvents();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    return waitFor([this] { return flag("settled") && hasSize(size); });
}

bool ScreenshotRunner::drawCatalogue(const ScreenshotSubjects &subjects)
{
    if (subjects.packageId.isEmpty())
        return fail(QStringLiteral("catalogue"), QStringLiteral("there are no packages"));
    return draw(QStringLiteral("catalogue"), [this] { return listsAll(); });
}

bool ScreenshotRunner::drawLanguages()
{
    call("showLanguages");
    const bool drawn =
        draw(QStringLiteral("languages"), [this] { return flag("languagesShown") && listsAll(); });
    call("hideLanguages");
    return drawn;
}

bool ScreenshotRunner::drawSuggestions(const ScreenshotSubjects &subjects)
{
    if (subjects.typed.isEmpty())
        return true; // a catalogue without keywords has none to suggest
    const int all = number("packageCount");
    search(subjects.typed);
    return draw(QStringLiteral("suggestions"), [this, all] {
        return hasKeyboard() && flag("suggesting") && number("hits") > 0 && number("hits") < all;
    });
}

bool ScreenshotRunner::drawCategory(const ScreenshotSubjects &subjects)
{
    call("clearFilters");
    if (subjects.categoryId.isEmpty())
        return true;
    const int all = number("packageCount");
    call("chooseCategory", subjects.categoryId);
    return draw(QStringLiteral("category"),
                [this, all] { return !flag("suggesting") && number("hits") > 0 && number("hits") < all; });
}

bool ScreenshotRunner::drawSortedByTitle()
{
    call("clearFilters");
    call("chooseOrder", QStringLiteral("title"));
    const bool drawn = draw(QStringLiteral("sorted-by-title"), [this] { return listsAll(); });
    call("chooseOrder", QStringLiteral("catalogue"));
    return drawn;
}

// Installing from a directory takes a moment only. Its end is told through the event loop; so the view of its
// course is drawn without going back there.
bool ScreenshotRunner::drawDetails(ts::pm::PackageRepository &repository, const ScreenshotSubjects &subjects)
{
    const QString installing = QStringLiteral("detail-installing");
    if (!waitFor([this] { return flag("settled"); }))
        return fail(installing, QStringLiteral("the list is not ready in time"));
    const ts::pm::PackageReference &reference = *repository.packageReference(subjects.packageId);
    const std::unique_ptr<QObject> picture = readInstalledPicture(reference);
    call("openPackage", subjects.packageId);
    for (const QString &theme : themes) {
        session.setTheme(theme);
        if (number("openStatus") != ts::pm::PackageReference::Installing)
            return fail(installing, QStringLiteral("the package is not being installed"));
        if (!save(installing, grab(window)))
            return false;
    }
    return draw(QStringLiteral("detail-installed"),
                [this] { return number("openStatus") == ts::pm::PackageReference::Installed; });
}

// As long as the result exists, another image of that size has the picture at once.
std::unique_ptr<QObject> ScreenshotRunner::readInstalledPicture(const ts::pm::PackageReference &reference)
{
    QThreadPool::globalInstance()->waitForDone(); // now the file is where the page will look for it
    QQmlComponent component(qmlEngine(&window));
    component.setData("import QtQuick 2.15\nImage {}", QUrl());
    std::unique_ptr<QObject> image(component.create());
    image->setProperty("sourceSize", property("largePictureSize"));
    image->setProperty("source",
                       reference.fileUrl(reference.manifestField(QStringLiteral("picture")).toString()));
    return image;
}

bool ScreenshotRunner::drawNarrowViews()
{
    window.resize(narrowSize);
    const auto isNarrow = [this] { return hasSize(narrowSize); };
    if (!draw(QStringLiteral("narrow-detail"), isNarrow))
        return false;
    call("goBack");
    if (!draw(QStringLiteral("narrow-catalogue"), isNarrow))
        return false;
    call("showFilters");
    const bool drawn = draw(QStringLiteral("narrow-filters"), [this] { return flag("filtersShown"); });
    call("hideFilters");
    window.resize(size);
    return drawn;
}

bool ScreenshotRunner::drawNoHits(const ScreenshotSubjects &subjects)
{
    search(subjects.unknown);
    const bool drawn = draw(QStringLiteral("no-hits"), [this] {
        return hasSize(size) && property("message").toString() == QLatin1String("no-hits");
    });
    call("clearFilters");
    return drawn;
}

bool ScreenshotRunner::drawMessages()
{
    session.setServers({QVariantMap{{QStringLiteral("url"), QUrl(QStringLiteral("http://127.0.0.1:1/"))}}});
    const auto allListed = [this] { return flag("warning") && listsAll(); };
    const bool onlyServers = session.directories().isEmpty() && session.databases().isEmpty();
    if (!onlyServers && !draw(QStringLiteral("server-away"), allListed))
        return false;
    session.setDirectories({});
    session.setDatabases({});
    if (!drawMessage(QStringLiteral("only-server-away"), QStringLiteral("unreachable")))
        return false;
    session.setServers({});
    const QTemporaryDir empty;
    session.setDirectories({empty.filePath(QStringLiteral("no-such-catalogue"))});
    if (!drawMessage(QStringLiteral("missing-directory"), QStringLiteral("missing")))
        return false;
    session.setDirectories({empty.path()});
    return drawMessage(QStringLiteral("empty-directory"), QStringLiteral("empty"));
}

bool ScreenshotRunner::drawMessage(const QString &view, const QString &message)
{
    return draw(view, [&] { return property("message").toString() == message; });
}

bool ScreenshotRunner::draw(const QString &view, const Condition &ready)
{
    return std::all_of(themes.begin(), themes.end(),
                       [&](const QString &theme) { return drawInTheme(view, theme, ready); });
}

bool ScreenshotRunner::drawInTheme(const QString &view, const QString &theme, const Condition &ready)
{
    session.setTheme(theme);
    return save(view, grabWhenStill(ready));
}

bool ScreenshotRunner::save(const QString &view, const QImage &image)
{
    if (image.isNull())
        return fail(view, QStringLiteral("the view did not come about in time"));
    if (!showsSomething(image))
        return fail(view, QStringLiteral("the picture is blank"));
    const QString name = QStringLiteral("%1-%2-%3.png").arg(view, session.theme(), variant);
    if (!image.save(QDir(directory).filePath(name)))
        return fail(view, QStringLiteral("the picture cannot be saved"));
    return true;
}

// Drawing lays the views out, which can make new items with images of their own to read; so a picture only
// counts if nothing was left to read before and after it was taken. Null if that does not happen in time.
QImage ScreenshotRunner::grabWhenStill(const Condition &ready)
{
    const Condition still = [&] { return flag("settled") && ready() && !isLoading(*window.contentItem()); };
    while (waitFor(still)) {
        QImage image = grab(window);
        if (still())
            return image;
    }
    return QImage();
}

bool ScreenshotRunner::waitFor(const Condition &condition)
{
    QTimer look; // makes the event loop return when nothing else does
    look.start(checkInterval);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // Otherwise left to the event loop that called this, which does not get its turn.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

bool ScreenshotRunner::fail(const QString &view, const QString &reason) const
{
    QTextStream(stderr) << QStringLiteral("tamsel-browser: %1 (%2): %3\n").arg(view, variant, reason);
    return false;
}

// The window itself says so before its contents have followed.
bool ScreenshotRunner::hasSize(const QSize &wanted) const
{
    return window.contentItem()->size().toSize() == wanted;
}

QVariant ScreenshotRunner::property(const char *name) const
{
    return window.property(name);
}

int ScreenshotRunner::number(const char *name) const
{
    return property(name).toInt();
}

bool ScreenshotRunner::flag(const char *name) const
{
    return property(name).toBool();
}

// The list follows a little later when a source has brought packages.
bool ScreenshotRunner::listsAll() const
{
    return number("hits") == number("packageCount");
}

void ScreenshotRunner::call(const char *function, const QString &argument)
{
    QMetaObject::invokeMethod(&window, function, Q_ARG(QVariant, argument));
}

void ScreenshotRunner::call(const char *function)
{
    QMetaObject::invokeMethod(&window, function);
}

// Those who draw other variants at the same time take it away.
bool ScreenshotRunner::hasKeyboard()
{
    if (!window.isActive())
        window.requestActivate();
    return window.isActive();
}

void ScreenshotRunner::search(const QString &text)
{
    waitFor([this] { return hasKeyboard(); });
    call("search");
    type(text);
}

// As from a keyboard, so that the picture shows what a user gets to see.
void ScreenshotRunner::type(const QString &text)
{
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(character));
        QCoreApplication::sendEvent(&window, &press);
        QCoreApplication::sendEvent(&window, &release);
    }
}

} // namespace browser
