#include "ledger/publisher.h"

#include "ledger/filecopy.h"
#include "ledger/ledgerreader.h"
#include "ledger/progress.h"
#include "ledger/shortened.h"
#include "ledger/treelock.h"

#include <TamselUtil/FileUtils>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QtConcurrentMap>

#include <filesystem>

namespace ts::ledger {

namespace {

constexpr int lockTimeout = 30000; // milliseconds

// Whatever a link in the tree leads to is not the publisher's.
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return !QFileInfo(path).isSymLink() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writing would go where the link leads.
void removeLink(const QString &path)
{
    if (QFileInfo(path).isSymLink())
        QFile::remove(path);
}

bool isMatch(const char *pattern, const QString &name)
{
    return QRegularExpression(QLatin1String(pattern)).match(name).hasMatch();
}

// False if there is such a ledger and it cannot be read.
bool addFilesOf(const QString &ledger, QSet<QString> &ids)
{
    if (!QFileInfo::exists(ledger))
        return true;
    QString error;
    const std::optional<LedgerRecords> records = LedgerReader::read(contentOf(ledger), &error);
    if (!records)
        return false;
    for (const PackageRecord &package : records->packages) {
        for (const FileRecord &file : package.files)
            ids.insert(QString::fromLatin1(file.digest.toHex()));
    }
    return true;
}

} // namespace

Publisher::Publisher(const ServerTree &tree, const Options &options)
    : tree(tree)
    , options(options)
{
}

bool Publisher::publish(const QByteArray &ledger, const LedgerRecords &records, const Catalogue &catalogue)
{
    std::error_code failure;
    std::filesystem::create_directories(QFile::encodeName(tree.directory()).toStdString(), failure);
    if (failure)
        return fail(QStringLiteral("%1: %2").arg(tree.directory(),
                                                 QString::fromLocal8Bit(failure.message().c_str())));
    TreeLock lock(tree.lock());
    const QString error = lock.acquire(lockTimeout);
    if (!error.isNull())
        return fail(error);
    removeRemains();
    return collectTasks(records, catalogue) && writeFiles() && writeLedger(ledger)
           && (!options.prune || prune());
}

bool Publisher::fail(const QString &error)
{
    problems.append(error);
    return false;
}

// What an interrupted run has left unfinished; nobody else writes here under the lock.
void Publisher::removeRemains() const
{
    const QDir directory(tree.directory());
    const QStringList names = directory.entryList(QDir::Files);
    for (const QString &name : names) {
        if (isMatch("^([0-9a-f]{56}|index|index\\.previous)\\.[A-Za-z]{6}$", name))
            QFile::remove(directory.filePath(name));
    }
}

bool Publisher::collectTasks(const LedgerRecords &records, const Catalogue &catalogue)
{
    QHash<QByteArray, CatalogueFile> files;
    for (const CataloguePackage &package : catalogue.packages) {
        for (const CatalogueFile &file : package.files)
            files.insert(file.digest, file);
    }
    QSet<QByteArray> seen;
    for (const PackageRecord &package : records.packages) {
        for (const FileRecord &file : package.files) {
            if (seen.contains(file.digest))
                continue;
            seen.insert(file.digest);
            if (!files.contains(file.digest))
                fail(QStringLiteral("package '%1': the directory has no file with the content of '%2'")
                         .arg(shortened(package.id), shortened(file.path)));
            tasks.append({files.value(file.digest), QString(), false});
        }
    }
    return problems.isEmpty();
}

bool Publisher::isPresent(const CatalogueFile &file) const
{
    const QFileInfo present(tree.file(file.id()));
    if (present.isSymLink() || !present.isFile() || present.size() != file.size)
        return false;
    QString error;
    return !options.recheck
           || FileCopy::digest(present.filePath(), QCryptographicHash::Sha224, &error) == file.digest;
}

bool Publisher::writeFiles()
{
    qint64 total = 0;
    for (const Task &task : qAsConst(tasks))
        total += task.file.size;
    Progress progress(QStringLiteral("Publishing files"), total);
    const auto advance = [&progress](qint64 bytes) { progress.advance(bytes); };
    QtConcurrent::blockingMap(tasks, [this, &advance](Task &task) {
        if (isPresent(task.file))
            return advance(task.file.size);
        removeLink(tree.file(task.file.id()));
        task.error = FileCopy::copy(task.file.path, tree.file(task.file.id()), task.file.digest, advance);
        task.written = true;
    });
    for (const Task &task : qAsConst(tasks)) {
        if (!task.error.isNull())
            fail(task.error);
        ++(task.written ? outcome.filesWritten : outcome.filesKept);
    }
    return problems.isEmpty();
}

// The names of the files are on the disk before the ledger is, and the ledger before the lock is free.
bool Publisher::writeLedger(const QByteArray &ledger)
{
    const QByteArray present = contentOf(tree.ledger());
    if (present == ledger)
        return true;
    if (!present.isNull()) {
        removeLink(tree.previousLedger());
        const QString error = FileCopy::write(present, tree.previousLedger());
        if (!error.isNull())
            return fail(error);
    }
    if (!tasks.isEmpty() && !util::FileUtils::syncFile(tree.file(tasks.constLast().file.id())))
        return fail(QStringLiteral("%1: cannot be written to the disk").arg(tree.directory()));
    removeLink(tree.ledger());
    const QString error = FileCopy::write(ledger, tree.ledger());
    if (!error.isNull())
        return fail(error);
    if (!util::FileUtils::syncFile(tree.ledger()))
        return fail(QStringLiteral("%1: cannot be written to the disk").arg(tree.ledger()));
    outcome.ledgerWritten = true;
    return true;
}

bool Publisher::prune()
{
    QSet<QString> ids;
    if (!addFilesOf(tree.ledger(), ids) || !addFilesOf(tree.previousLedger(), ids))
        return fail(
            QStringLiteral("%1: a ledger there cannot be read, so nothing is removed").arg(tree.directory()));
    const QDir directory(tree.directory());
    const QStringList names = directory.entryList(QDir::Files);
    for (const QString &name : names) {
        if (!isMatch("^[0-9a-f]{56}$", name) || ids.contains(name))
            continue;
        if (!QFile::remove(directory.filePath(name)))
            fail(QStringLiteral("%1: cannot be removed").arg(directory.filePath(name)));
        ++outcome.filesRemoved;
    }
    return problems.isEmpty();
}

} // namespace ts::ledger
