#include "ledger/directorylisting.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>

namespace ts::ledger {

namespace {

DirectoryEntry::Kind kindOf(const QFileInfo &entry)
{
    if (entry.isDir())
        return DirectoryEntry::Directory;
    return entry.isFile() ? DirectoryEntry::File : DirectoryEntry::Other;
}

} // namespace

DirectoryListing::DirectoryListing(const QString &root, Problems &problems)
    : root(QFileInfo(root).canonicalFilePath())
    , problems(problems)
{
}

// The names as bytes: QDir leaves out what it cannot decode, and a file would go missing without a word.
QVector<DirectoryEntry> DirectoryListing::entries(const QString &directory) const
{
    QVector<DirectoryEntry> result;
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(directory).toStdString(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const QByteArray bytes = QByteArray::fromStdString(entry->path().filename().string());
        if (bytes.startsWith('.'))
            continue;
        const QString name = QString::fromUtf8(bytes);
        const QString path = directory + QLatin1Char('/') + name;
        if (name.toUtf8() != bytes)
            problems.addError(placeOf(path), QStringLiteral("the name is no UTF-8"));
        else if (!isInside(path))
            continue;
        else if (const QFileInfo file(path); file.exists())
            result.append({name, path, kindOf(file)});
        else
            problems.addError(placeOf(path), QStringLiteral("cannot be examined"));
    }
    if (error)
        problems.addError(placeOf(directory), QString::fromLocal8Bit(error.message().c_str()));
    std::sort(result.begin(), result.end(),
              [](const DirectoryEntry &a, const DirectoryEntry &b) { return a.name < b.name; });
    return result;
}

bool DirectoryListing::isInside(const QString &path) const
{
    const QFileInfo entry(path);
    if (!entry.isSymLink())
        return true;
    const QString target = entry.canonicalFilePath();
    if (target.isEmpty())
        problems.addError(placeOf(path), QStringLiteral("the link leads nowhere"));
    else if (!target.startsWith(root + QLatin1Char('/')))
        problems.addError(placeOf(path), QStringLiteral("the link leads out of the directory"));
    else
        return true;
    return false;
}

QString DirectoryListing::placeOf(const QString &path) const
{
    return QDir(root).relativeFilePath(path);
}

} // namespace ts::ledger
