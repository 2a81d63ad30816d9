#pragma once

#include <QObject>
#include <QSize>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

namespace browser {

struct BrowserOptions;
class InterfaceTexts;

/**
 * What the user interface is told by the command line, and what it remembers for the next start. A singleton
 * for QML, under the name Session.
 *
 * Ownership: belongs to whoever runs the engine, and outlives it. Does not own the texts.
 * Threads: the thread of the user interface.
 * Errors: a settings file that cannot be read or written leaves the defaults.
 */
class BrowserSession : public QObject
{
    Q_OBJECT
    /** The directories of the catalogues shown. */
    Q_PROPERTY(QStringList directories READ directories WRITE setDirectories NOTIFY directoriesChanged)
    /** The package servers shown, each with url, token, user and password. */
    Q_PROPERTY(QVariantList servers READ servers WRITE setServers NOTIFY serversChanged)
    /** The URLs of the CouchDB databases shown. */
    Q_PROPERTY(QVariantList databases READ databases WRITE setDatabases NOTIFY databasesChanged)
    /** "light", "dark" or "system". Remembered, unless the session is one for pictures. */
    Q_PROPERTY(QString theme READ theme WRITE setTheme NOTIFY themeChanged)
    /** Code of the language, empty for that of the system. Remembered as the theme is. */
    Q_PROPERTY(QString language READ language WRITE setLanguage NOTIFY languageChanged)
    /** Size of the window at first. */
    Q_PROPERTY(QSize windowSize READ windowSize CONSTANT)
    /** Whether views may move. Pictures are taken of views that stand still. */
    Q_PROPERTY(bool animated READ isAnimated CONSTANT)

public:
    BrowserSession(const BrowserOptions &options, InterfaceTexts &texts, QObject *parent = nullptr);

    QStringList directories() const { return shownDirectories; }
    void setDirectories(const QStringList &directories);

    QVariantList servers() const { return shownServers; }
    void setServers(const QVariantList &servers);

    QVariantList databases() const { return shownDatabases; }
    void setDatabases(const QVariantList &databases);

    QString theme() const { return chosenTheme; }
    void setTheme(const QString &theme);

    QString language() const { return chosenLanguage; }
    void setLanguage(const QString &language);

    QSize windowSize() const { return firstSize; }
    bool isAnimated() const { return !forPictures; }

    /** How a view names the place \a url: without user and password. */
    Q_INVOKABLE QString displayed(const QUrl &url) const;

Q_SIGNALS:
    void directoriesChanged();
    void serversChanged();
    void databasesChanged();
    void themeChanged();
    void languageChanged();

private:
    InterfaceTexts &texts;
    const bool forPictures;
    const QSize firstSize;
    QStringList shownDirectories;
    QVariantList shownServers;
    QVariantList shownDatabases;
    QString chosenTheme;
    QString chosenLanguage;
};

} // namespace browser
