#include "localsource.h"

#include <TamselPackageManager/LocalPackageSource>

#include <QFileInfo>
#include <QUrl>

namespace ts::pm {

namespace {

// Qt.resolvedUrl() and file dialogs of QML speak in URLs.
QString withoutScheme(const QString &path)
{
    return path.startsWith(QLatin1String("file:")) ? QUrl(path).toLocalFile() : path;
}

} // namespace

LocalSource::LocalSource(QObject *parent)
    : PackageSourceElement(parent)
{
}

void LocalSource::setPath(const QString &path)
{
    const QString plainPath = withoutScheme(path);
    if (directoryPath == plainPath)
        return;
    directoryPath = plainPath;
    replaceSource();
    const QPointer<LocalSource> self(this); // a listener may destroy it
    Q_EMIT pathChanged();
    if (self)
        checkAvailability();
}

void LocalSource::checkAvailability()
{
    const bool exists = !directoryPath.isEmpty() && QFileInfo(directoryPath).isDir();
    if (directoryExists == exists)
        return;
    directoryExists = exists;
    Q_EMIT existsChanged();
}

std::unique_ptr<PackageSource> LocalSource::createSource()
{
    if (directoryPath.isEmpty())
        return nullptr;
    return std::make_unique<LocalPackageSource>(directoryPath);
}

} // namespace ts::pm
