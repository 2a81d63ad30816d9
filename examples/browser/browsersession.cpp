#include "browsersession.h"

#include "browseroptions.h"
#include "browserpaths.h"
#include "interfacetexts.h"
#include "latin1.h"

#include <QSettings>

namespace browser {

namespace {

constexpr QLatin1String themeKey = latin1("theme");
constexpr QLatin1String languageKey = latin1("language");
constexpr QLatin1String systemTheme = latin1("system");

QString rememberedTheme()
{
    const QString theme = QSettings().value(themeKey).toString();
    return theme == QLatin1String("light") || theme == QLatin1String("dark") ? theme : QString(systemTheme);
}

QString firstTheme(const BrowserOptions &options, bool forPictures)
{
    if (!options.theme.isEmpty())
        return options.theme;
    return forPictures ? QStringLiteral("light") : rememberedTheme();
}

QString firstLanguage(const BrowserOptions &options, bool forPictures)
{
    const bool isRemembered = options.language.isEmpty() && !forPictures;
    return isRemembered ? QSettings().value(languageKey).toString() : options.language;
}

QVariantList serversOf(const BrowserOptions &options)
{
    QVariantList servers;
    for (const ServerOption &server : options.servers) {
        servers.append(QVariantMap{{QStringLiteral("url"), server.url},
                                   {QStringLiteral("token"), server.token},
                                   {QStringLiteral("user"), server.user},
                                   {QStringLiteral("password"), server.password}});
    }
    return servers;
}

} // namespace

BrowserSession::BrowserSession(const BrowserOptions &options, InterfaceTexts &texts, QObject *parent)
    : QObject(parent)
    , texts(texts)
    , forPictures(options.action == BrowserOptions::Action::Screenshot)
    , firstSize(options.windowSize.isEmpty() ? QSize(1120, 760) : options.windowSize)
    , shownDirectories(cataloguesFor(options))
    , shownServers(serversOf(options))
    , shownDatabases(options.databases.begin(), options.databases.end())
    , chosenTheme(firstTheme(options, forPictures))
    , chosenLanguage(firstLanguage(options, forPictures))
{
    if (chosenLanguage != options.language)
        texts.setLanguage(chosenLanguage);
}

void BrowserSession::setDirectories(const QStringList &directories)
{
    if (shownDirectories == directories)
        return;
    shownDirectories = directories;
    Q_EMIT directoriesChanged();
}

void BrowserSession::setServers(const QVariantList &servers)
{
    if (shownServers == servers)
        return;
    shownServers = servers;
    Q_EMIT serversChanged();
}

void BrowserSession::setDatabases(const QVariantList &databases)
{
    if (shownDatabases == databases)
        return;
    shownDatabases = databases;
    Q_EMIT databasesChanged();
}

QString BrowserSession::displayed(const QUrl &url) const
{
    return browser::displayed(url);
}

void BrowserSession::setTheme(const QString &theme)
{
    if (chosenTheme == theme)
        return;
    chosenTheme = theme;
    if (!forPictures)
        QSettings().setValue(themeKey, theme);
    Q_EMIT themeChanged();
}

void BrowserSession::setLanguage(const QString &language)
{
    if (chosenLanguage == language)
        return;
    chosenLanguage = language;
    if (!forPictures)
        QSettings().setValue(languageKey, language);
    texts.setLanguage(language);
    Q_EMIT languageChanged();
}

} // namespace browser
