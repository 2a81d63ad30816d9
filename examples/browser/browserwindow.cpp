#include "browserwindow.h"

#include "browserpaths.h"
#include "browsersession.h"
#include "cataloguetypes.h"
#include "containstext.h"
#include "iconprovider.h"
#include "openedpackages.h"
#include "packagedetails.h"
#include "renamedkeyword.h"
#include "reversesorter.h"
#include "sortbytext.h"
#include "translationstate.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QUrl>
#include <qqml.h>

namespace browser {

namespace {

constexpr char module[] = "Tamsel.Browser";

template<typename Type>
void registerType(const char *name)
{
    qmlRegisterType<Type>(module, 1, 0, name);
}

QIcon applicationIcon()
{
    QSize naturalSize;
    const QImage leaf =
        IconProvider().requestImage(QStringLiteral("leaf/#1c6b47"), &naturalSize, QSize(128, 128));
    return QIcon(QPixmap::fromImage(leaf));
}

void registerTypes(BrowserSession &session)
{
    registerType<CatalogueTypes>("CatalogueTypes");
    registerType<ContainsText>("ContainsText");
    registerType<OpenedPackages>("OpenedPackages");
    registerType<PackageDetails>("PackageDetails");
    registerType<RenamedKeyword>("RenamedKeyword");
    registerType<ReverseSorter>("ReverseSorter");
    registerType<SortByText>("SortByText");
    registerType<TranslationState>("TranslationState");
    qmlRegisterSingletonInstance(module, 1, 0, "Session", &session);
}

} // namespace

BrowserWindow::BrowserWindow(BrowserSession &session)
{
    registerTypes(session);
    // The controls are drawn by the browser itself, on top of the plainest style.
    QQuickStyle::setStyle(QStringLiteral("Default"));
    engine.addImageProvider(QStringLiteral("icons"), new IconProvider);
    QObject::connect(&session, &BrowserSession::languageChanged, &engine, &QQmlEngine::retranslate);
    const QStringList paths = qmlImportPaths();
    for (const QString &path : paths)
        engine.addImportPath(path);
    QGuiApplication::setWindowIcon(applicationIcon());
    engine.load(QUrl(QStringLiteral("qrc:/qml/Main.qml")));
}

QQuickWindow *BrowserWindow::window() const
{
    return qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
}

} // namespace browser
