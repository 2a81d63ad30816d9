#include "workshop.h"

#include "support/literals.h"

#include <QFile>
#include <QTest>

namespace ts::pm::test {

Workshop::Workshop()
{
    run("keygen issuer"_s);
    if (run("issue --root-key %1 --name Acme --output issuer.json issuer.pem"_s.arg(
                QStringLiteral(DEVELOPMENT_KEY)))
            .exitCode
        != 0)
        qFatal("Cannot make the keys of an issuer");
}

QByteArray Workshop::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Workshop::start(QProcess &process, const QString &arguments) const
{
    QString line = arguments;
    line.replace("SIGNED"_s, "--key issuer.key.pem --certificate issuer.json"_s);
    line.replace("CATALOGUE"_s, catalogue.path());
    process.setWorkingDirectory(directory.path());
    process.start(QStringLiteral(TAMSEL_LEDGER), line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

Outcome Workshop::run(const QString &arguments) const
{
    QProcess process;
    start(process, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, QString(), process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace ts::pm::test
