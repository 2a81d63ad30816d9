#include "storage/installlocation.h"

#include "logging_p.h"
#include "storage/installlocationroot_p.h"

#include <QFile>

#include <algorithm>

namespace ts::pm {

namespace {

bool hasDrive(const QString &path)
{
    return path.size() > 1 && path.at(1) == QLatin1Char(':') && path.at(0).isLetter()
           && path.at(0).unicode() < 0x80;
}

// Path and name come from publishers, who must not reach beyond the root with them.
bool staysBelow(const QString &path)
{
    if (path.contains(QChar::Null))
        return false;
    const QVector<QStringRef> segments = path.splitRef(QLatin1Char('/'));
    return std::none_of(segments.begin(), segments.end(),
                        [](const QStringRef &segment) { return segment == QLatin1String(".."); });
}

} // namespace

InstallLocation::InstallLocation() = default;

InstallLocation::InstallLocation(const QSharedPointer<InstallLocationRoot> &root, const QString &path)
    : root(root)
    , path(path)
{
}

InstallLocation InstallLocation::createRoot()
{
    return InstallLocation(QSharedPointer<InstallLocationRoot>::create(), QStringLiteral("."));
}

bool InstallLocation::isValid() const
{
    return !root.isNull();
}

InstallLocation InstallLocation::subLocation(const QString &subPath) const
{
    if (!root)
        return InstallLocation();
    return InstallLocation(root, QStringLiteral("%1/%2").arg(path, subPath));
}

QDir InstallLocation::directory(bool create) const
{
    if (!root)
        return QDir(QString());
    QDir directory(root->directory().absoluteFilePath(path));
    if (create && !directory.exists() && !directory.mkpath(directory.absolutePath()))
        qCCritical(lcInstallLoc) << "Failed to create package install location" << directory.absolutePath();
    return directory;
}

bool InstallLocation::isInsideRoot(const QString &name) const
{
    return staysBelow(path) && staysBelow(name) && !QDir::isAbsolutePath(name) && !hasDrive(name);
}

bool InstallLocation::installFile(const QString &source, const QString &name) const
{
    if (!root || !isInsideRoot(name))
        return false;
    const QString target = directory(true).absoluteFilePath(name);
    if (QFile::exists(target))
        return true;
    if (QFile::link(source, target))
        return true;
    if (QFile::copy(source, target))
        return true;
    return QFile::exists(target); // another installer may have made it in the meantime
}

bool InstallLocation::contains(const QString &name) const
{
    return root && !name.isEmpty() && isInsideRoot(name) && directory(false).exists(name);
}

QString InstallLocation::pathToFile(const QString &name) const
{
    if (!root || !isInsideRoot(name))
        return QString();
    const QString file = directory(false).absoluteFilePath(name);
    return QFile::exists(file) ? file : QString();
}

} // namespace ts::pm
