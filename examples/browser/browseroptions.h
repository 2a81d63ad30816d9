#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVector>

namespace browser {

/** A package server, and how to be let in there. */
struct ServerOption
{
    QUrl url;
    QString token; ///< goes before user and password; empty for none
    QString user;  ///< empty for none
    QString password;
};

/** What the command line asks for. */
struct BrowserOptions
{
    enum class Action {
        Browse,     ///< open the window
        List,       ///< print the catalogue
        Screenshot, ///< write pictures of all views
        Help,
        Version,
    };

    Action action = Action::Browse;
    QStringList directories;       ///< catalogues; the sample catalogue if nothing else is named
    QVector<ServerOption> servers; ///< package servers
    QVector<QUrl> databases;       ///< of CouchDB
    QString language;              ///< name of a locale; empty for the user's last choice
    QString theme;                 ///< "light", "dark" or "system"; empty for the user's last choice
    QString screenshotDirectory;
    QString screenshotVariant; ///< set by the program itself: the pictures that this process is to write
    QSize windowSize;          ///< empty for the usual size
    QString error;             ///< why the options cannot be followed, null if they can

    /** What \a arguments ask for, which begin with the program's name. */
    static BrowserOptions parse(const QStringList &arguments);

    /**
     * As parse(), but passes over what it does not know. For use before there is an application object, whose
     * kind depends on the action, and which takes options of its own out of the arguments.
     */
    static BrowserOptions glance(const QStringList &arguments);

    /** The text for Action::Help. Needs an application object. */
    static QString helpText();
};

} // namespace browser
