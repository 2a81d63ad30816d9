#pragma once

#include "support/directorycatalogue.h"

#include <QProcess>
#include <QTemporaryDir>

namespace ts::pm::test {

/** What a run of the command has left. */
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
    Workshop()
    {
        const QString issue = QStringLiteral("issue --root-key " DEVELOPMENT_KEY
                                             " --name Acme --output issuer.json issuer.pem");
        if (run(QStringLiteral("keygen issuer")).exitCode != 0 || run(issue).exitCode != 0)
            qFatal("Cannot make the keys of an issuer");
    }

    QString path(const QString &name) const { return directory.filePath(name); }
    QByteArray content(const QString &name) const { return readFile(path(name)); }

    /** Starts the command with the workshop as its working directory. The words of \a arguments are parted by
     * blanks; "''" is an empty one, "SIGNED" stands for the options by which the issuer signs, "CATALOGUE"
     * for its path. */
    void start(QProcess &process, QString arguments) const
    {
        arguments.replace(QLatin1String("SIGNED"),
                          QLatin1String("--key issuer.key.pem --certificate issuer.json"));
        arguments.replace(QLatin1String("CATALOGUE"), catalogue.path());
        process.setWorkingDirectory(directory.path());
        process.start(QStringLiteral(TAMSEL_LEDGER), arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                                         .replaceInStrings(QStringLiteral("''"), QString()));
    }

    Outcome run(const QString &arguments) const
    {
        QProcess process;
        start(process, arguments);
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
            return {-1, QString(), process.errorString()};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    DirectoryCatalogue catalogue;

private:
    QTemporaryDir directory;
};

} // namespace ts::pm::test
