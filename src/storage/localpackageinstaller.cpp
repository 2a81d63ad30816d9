#include "storage/localpackageinstaller.h"

#include "storage/installlocation_p.h"

#include <QDir>
#include <QDirIterator>

namespace ts::pm {

namespace {

constexpr int fileError = 1;

QList<InstallError> installFiles(const QDir &directory, const InstallLocation &location)
{
    QList<InstallError> errors;
    InstallDirectory target(location);
    QDirIterator files(directory);
    while (files.hasNext()) {
        const QString path = files.next();
        const QString name = files.fileName();
        if (name == QLatin1String("manifest.json"))
            continue;
        if (!target.installFile(path, name))
            errors.append({fileError, QStringLiteral("Failed to install file %1").arg(path)});
    }
    return errors;
}

} // namespace

LocalPackageInstaller::LocalPackageInstaller(const QDir &directory, const InstallLocation &location)
    : PackageInstaller(location)
{
    QDir files = directory;
    files.setFilter(QDir::Files);
    startWorker([files, location] { return installFiles(files, location); });
}

LocalPackageInstaller::~LocalPackageInstaller() = default;

} // namespace ts::pm
