#include "interfacetexts.h"

#include <QCoreApplication>
#include <QDir>

namespace browser {

InterfaceTexts::InterfaceTexts(const QString &language)
{
    if (english.load(QStringLiteral(":/i18n/browser_en.qm")))
        QCoreApplication::installTranslator(&english);
    setLanguage(language);
}

QStringList InterfaceTexts::languages()
{
    QStringList codes;
    const QStringList files = QDir(QStringLiteral(":/i18n")).entryList({QStringLiteral("browser_*.qm")});
    for (const QString &file : files)
        codes.append(file.section(QLatin1Char('_'), 1).section(QLatin1Char('.'), 0, 0));
    return codes;
}

// Not loaded in place: workers may be asking the translator as long as it is installed.
void InterfaceTexts::setLanguage(const QString &language)
{
    QLocale::setDefault(language.isEmpty() ? systemLocale : QLocale(language));
    QCoreApplication::removeTranslator(&texts);
    if (texts.load(QLocale(), QStringLiteral("browser"), QStringLiteral("_"), QStringLiteral(":/i18n")))
        QCoreApplication::installTranslator(&texts);
}

} // namespace browser
