#pragma once

#include "support/directorycatalogue.h"

#include <QProcess>
#include <QTemporaryDir>

namespace ts::pm::test {

/** What a run of the command has left: "0" or such, and its two outputs. */
struct Outcome
{
    int exitCode = -1;
    QString output;
    QString errors;
};

/** A publisher's desk: keys and a certificate of an issuer, a catalogue, a directory to publish into. */
class Workshop
{
public:
    /** With the keys "issuer" and the certificate "issuer.json". */
    Workshop();

    QString path(const QString &name) const { return directory.filePath(name); }
    QByteArray content(const QString &name) const;

    /** Starts the command with the workshop as its working directory. */
    void start(QProcess &process, const QString &arguments) const;

    /** Runs the command; the words of \a arguments are parted by blanks, and "SIGNED" stands for the options
     * by which the issuer signs. */
    Outcome run(const QString &arguments) const;

    DirectoryCatalogue catalogue;

private:
    QTemporaryDir directory;
};

} // namespace ts::pm::test
