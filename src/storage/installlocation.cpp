#include "storage/installlocation.h"
#include "storage/installlocation_p.h"

#include "logging_p.h"
#include "storage/installlocationroot_p.h"

#include <QFile>
#include <QStringBuilder>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace ts::pm {

namespace {

// Resource paths begin with a colon.
bool isAbsolute(const QString &path)
{
    return path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1Char(':'));
}

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
    if (!path.contains(QLatin1String("..")))
        return true;
    const QVector<QStringRef> segments = path.splitRef(QLatin1Char('/'));
    return std::none_of(segments.begin(), segments.end(),
                        [](const QStringRef &segment) { return segment == QLatin1String(".."); });
}

#ifdef Q_OS_UNIX

constexpr int workingDirectory = AT_FDCWD;

// One system call, which fails and changes nothing if there is something at the target already. Sources that
// are no plain paths of this system, such as Qt resources, are left to Qt. Relative targets lie below the
// directory.
bool linkPlainFile(const QString &source, int directory, const QString &target)
{
    return source.startsWith(QLatin1Char('/')) && !source.contains(QChar::Null)
           && symlinkat(QFile::encodeName(source).constData(), directory,
                        QFile::encodeName(target).constData())
                  == 0;
}

int openDirectory(const QDir &directory)
{
    return open(QFile::encodeName(directory.absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

void closeDirectory(int descriptor)
{
    close(descriptor);
}

#else

constexpr int workingDirectory = -1;

bool linkPlainFile(const QString &, int, const QString &)
{
    return false;
}

int openDirectory(const QDir &)
{
    return -1;
}

void closeDirectory(int) {}

#endif

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
    const QString place = directory.absolutePath();
    if (create && !directory.exists() && !(isInsideRoot(QString()) && directory.mkpath(place)))
        qCCritical(lcInstallLoc) << "Failed to create package install location" << place;
    return directory;
}

QString InstallLocation::filePath(const QString &name) const
{
    return root->directory().absolutePath() % QLatin1Char('/') % path % QLatin1Char('/') % name;
}

bool InstallLocation::isInsideRoot(const QString &name) const
{
    return staysBelow(path) && staysBelow(name) && !isAbsolute(path) && !isAbsolute(name) && !hasDrive(name);
}

bool InstallLocation::installFile(const QString &source, const QString &name) const
{
    if (!root || !isInsideRoot(name))
        return false;
    // Nearly all files are new ones in a directory that exists: these need no look at the disk before.
    const QString target = filePath(name);
    if (linkPlainFile(source, workingDirectory, target))
        return true;
    directory(true);
    return QFile::exists(target) || QFile::link(source, target) || QFile::copy(source, target)
           || QFile::exists(target); // another installer may have made it in the meantime
}

bool InstallLocation::contains(const QString &name) const
{
    return !name.isEmpty() && !pathToFile(name).isEmpty();
}

QString InstallLocation::pathToFile(const QString &name) const
{
    if (!root || !isInsideRoot(name))
        return QString();
    QString file = directory(false).absolutePath();
    if (!name.isEmpty())
        file += QLatin1Char('/') + name; // QDir would take "etc:x" for a file on the search path "etc"
    return QFile::exists(file) ? file : QString();
}

InstallDirectory::InstallDirectory(const InstallLocation &location)
    : location(location)
{
}

InstallDirectory::~InstallDirectory()
{
    if (descriptor >= 0)
        closeDirectory(descriptor);
}

bool InstallDirectory::installFile(const QString &source, const QString &name)
{
    if (descriptor >= 0 && location.isInsideRoot(name) && linkPlainFile(source, descriptor, name))
        return true;
    const bool installed = location.installFile(source, name);
    if (installed && descriptor < 0)
        descriptor = openDirectory(location.directory(false));
    return installed;
}

} // namespace ts::pm
