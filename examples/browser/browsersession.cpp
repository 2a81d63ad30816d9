#include "browsersession.h"

#include "browseroptions.h"
#include "browserpaths.h"
#include "latin1.h"

#include <QSettings>

namespace browser {

namespace {

constexpr QLatin1String themeKey = latin1("theme");
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

} // namespace

BrowserSession::BrowserSession(const BrowserOptions &options, QObject *parent)
    : QObject(parent)
    , forPictures(options.action == BrowserOptions::Action::Screenshot)
    , firstSize(options.windowSize.isEmpty() ? QSize(1120, 760) : options.windowSize)
    , shownDirectories(cataloguesFor(options))
    , chosenTheme(firstTheme(options, forPictures))
{
}

void BrowserSession::setDirectories(const QStringList &directories)
{
    if (shownDirectories == directories)
        return;
    shownDirectories = directories;
    Q_EMIT directoriesChanged();
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

} // namespace browser
