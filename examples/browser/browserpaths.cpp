#include "browserpaths.h"

#include "browseroptions.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace browser {

namespace {

QString besideExecutable(const QString &relativePath)
{
    return QDir::cleanPath(QDir(QCoreApplication::applicationDirPath()).filePath(relativePath));
}

QString sampleCatalogue()
{
    const QString built = besideExecutable(QStringLiteral(TAMSEL_BUILT_CATALOGUE));
    return QFileInfo(built).isDir() ? built : besideExecutable(QStringLiteral(TAMSEL_INSTALLED_CATALOGUE));
}

} // namespace

QStringList cataloguesFor(const BrowserOptions &options)
{
    if (options.directories.isEmpty() && options.servers.isEmpty() && options.databases.isEmpty())
        return {sampleCatalogue()};
    QStringList directories;
    for (const QString &directory : options.directories)
        directories.append(QDir::cleanPath(QFileInfo(directory).absoluteFilePath()));
    directories.removeDuplicates();
    return directories;
}

QStringList qmlImportPaths()
{
    return {besideExecutable(QStringLiteral(TAMSEL_INSTALLED_QML)),
            besideExecutable(QStringLiteral(TAMSEL_BUILT_QML))};
}

QString displayed(const QUrl &url)
{
    return url.toDisplayString(QUrl::RemoveUserInfo);
}

} // namespace browser
