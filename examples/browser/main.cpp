#include "browseroptions.h"
#include "browsersession.h"
#include "browserwindow.h"
#include "cataloguelisting.h"
#include "interfacetexts.h"
#include "screenshotbatch.h"
#include "screenshotrunner.h"

#include <Tamsel/Locations>

#include <QDir>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThreadPool>

#include <memory>

namespace {

using browser::BrowserOptions;
using Action = BrowserOptions::Action;

// The data directory of a run that prints or draws and ends: such runs keep to themselves, so that those at
// the same time do not meet.
class SeparateData
{
public:
    bool isUsable() const { return usable; }

    // Workers let go of their files a little after they have reported their results.
    ~SeparateData() { QThreadPool::globalInstance()->waitForDone(); }

private:
    QTemporaryDir directory;
    const bool usable = directory.isValid() && ts::Locations::setDataLocation(QDir(directory.path()));
};

bool hasDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
           || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

// Pictures are drawn without the help of a graphics card, and have exactly the scale that QT_SCALE_FACTOR
// says, whatever the screen.
void prepareGui(Action action)
{
    if (action == Action::Screenshot && !hasDisplay())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (action == Action::Screenshot || qgetenv("QT_QPA_PLATFORM").startsWith("offscreen"))
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    if (action == Action::Screenshot)
        return;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

// Without a display the start of a QGuiApplication would abort the program, before it has even said what is
// wrong with its options.
bool canBrowse(const QStringList &arguments)
{
    return hasDisplay() || arguments.contains(QLatin1String("-platform"))
           || arguments.contains(QLatin1String("--platform"));
}

std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv, const QStringList &arguments)
{
    const BrowserOptions glance = BrowserOptions::glance(arguments);
    const bool browses = glance.action == Action::Browse && canBrowse(arguments);
    const bool draws = glance.action == Action::Screenshot && !glance.screenshotVariant.isEmpty();
    if (!browses && !draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    prepareGui(glance.action);
    return std::make_unique<QGuiApplication>(argc, argv);
}

int fail(const QString &message)
{
    QTextStream(stderr) << QStringLiteral("tamsel-browser: ") << message << '\n';
    return 1;
}

int browse(const BrowserOptions &options, browser::InterfaceTexts &texts)
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return fail(QStringLiteral("There is no display. See --help for what can be done without one."));
    browser::BrowserSession session(options, texts);
    const browser::BrowserWindow window(session);
    return window.window() ? QCoreApplication::exec() : 1;
}

int drawPictures(const BrowserOptions &options, browser::InterfaceTexts &texts)
{
    const SeparateData data;
    if (!data.isUsable())
        return fail(QStringLiteral("There is no place for temporary files."));
    browser::BrowserSession session(options, texts);
    const browser::BrowserWindow window(session);
    if (!window.window())
        return 1;
    return browser::ScreenshotRunner(*window.window(), session, options).run() ? 0 : 1;
}

int list(const BrowserOptions &options)
{
    const SeparateData data;
    return data.isUsable() ? browser::listCatalogue(options)
                           : fail(QStringLiteral("There is no place for temporary files."));
}

int print(const QString &text)
{
    QTextStream(stdout) << text << '\n';
    return 0;
}

// What is written to the terminal is for whoever started the program; QT_LOGGING_RULES still has its say.
void silenceProgressReports()
{
    QLoggingCategory::setFilterRules(QStringLiteral("tamsel.*.info=false"));
}

int run(const BrowserOptions &options, browser::InterfaceTexts &texts)
{
    if (!options.error.isNull())
        return fail(options.error);
    switch (options.action) {
    case Action::Help:
        return print(BrowserOptions::helpText().trimmed());
    case Action::Version:
        return print(QStringLiteral("tamsel-browser ") + QCoreApplication::applicationVersion());
    case Action::List:
        return list(options);
    case Action::Screenshot:
        return options.screenshotVariant.isEmpty() ? browser::drawAllVariants(options)
                                                   : drawPictures(options, texts);
    case Action::Browse:
        return browse(options, texts);
    }
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tamsel"));
    QCoreApplication::setApplicationName(QStringLiteral("tamsel-browser"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TAMSEL_VERSION));
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    silenceProgressReports();
    const auto application = makeApplication(argc, argv, arguments);
    const BrowserOptions options = BrowserOptions::parse(QCoreApplication::arguments());
    // The first translators, so that those of the catalogue's translation packages go before them.
    browser::InterfaceTexts texts(options.language);
    return run(options, texts);
}
