#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>
#include <QTranslator>

namespace browser {

/**
 * The language of the process, with the built-in texts in it. What is read or formatted from then on follows
 * it; what is there already has to be told.
 *
 * Ownership: belongs to main(), and outlives everything that shows texts.
 * Threads: the thread of the application object. Workers may translate meanwhile.
 * Errors: a language without built-in texts gets the English ones.
 */
class InterfaceTexts
{
public:
    explicit InterfaceTexts(const QString &language);

    /** The languages that have built-in texts, by their codes. */
    static QStringList languages();

    /** Takes the language of that code, or of a locale such as de_AT. Empty for that of the system. */
    void setLanguage(const QString &language);

private:
    const QLocale systemLocale;
    QTranslator english; // for what the language does not have
    QTranslator texts;
};

} // namespace browser
