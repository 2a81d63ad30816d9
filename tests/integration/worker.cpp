#include "database/persistedlisting_p.h"
#include "server/packageledger.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"
#include "storage/installlocation.h"
#include "storage/installlocationroot_p.h"
#include "support/literals.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QtConcurrentRun>

#include <cstdio>

using namespace ts::pm;
using namespace ts::pm::test;

Q_LOGGING_CATEGORY(lcWorker, "worker", QtCriticalMsg)

namespace {

void say(const QString &line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

// All processes want the same at about the same time.
QByteArray newContent()
{
    const qint64 number = QDateTime::currentMSecsSinceEpoch() / 20;
    return QByteArray(100000, char(number)) + QByteArray::number(number);
}

QByteArray hashOf(const QByteArray &content, QCryptographicHash::Algorithm algorithm)
{
    return QCryptographicHash::hash(content, algorithm).toHex();
}

// Others may have swept the location away before it was locked, since they take it for an old one. What is
// installed is looked at where that cannot be.
bool store(const QByteArray &content, const InstallLocation &location)
{
    const QString id = QString::fromLatin1(hashOf(content, QCryptographicHash::Sha224));
    const auto files = FileStore::defaultStore();
    const QScopedPointer<FileStoreTarget> target(files->getTarget(id, QCryptographicHash::Sha224));
    target->write(content);
    const bool stored = target->commit() == 0;
    location.installFile(files->pathForId(id), id);
    return stored;
}

bool persistLedger(const QByteArray &document, const QByteArray &tag)
{
    const QDir directory(ts::Locations::dataLocation().filePath("packages/servers/one"_s));
    PackageLedger(document, tag).persist(directory, "one"_s);
    return PackageLedger(directory).data == document;
}

// What load() finds may have been replaced by another process as soon as it returns.
bool persistListing(const QByteArray &content)
{
    PersistedListing listing(lcWorker, "packages/couchdb/one"_s);
    (void)listing.load();
    listing.hash = hashOf(content, QCryptographicHash::Md5);
    const qint64 process = QCoreApplication::applicationPid();
    listing.dataFile.path = ts::Locations::dataLocation().filePath("listing-%1"_s.arg(process));
    QFile file(listing.dataFile.path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    file.close();
    listing.persist();
    return written;
}

} // namespace

// Arguments: data location, file with a ledger. Prints an install root that it holds, then does what
// applications do to a data location, one step for each line of its input. After each it prints "done", or
// the step that failed.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QFile ledger(QCoreApplication::arguments().value(2));
    if (!ts::Locations::setDataLocation(QDir(QCoreApplication::arguments().value(1)))
        || !ledger.open(QIODevice::ReadOnly))
        return 1;
    const QByteArray document = ledger.readAll();
    const auto root = InstallLocation::createRoot();
    say(root.directory(false).absolutePath());
    QtConcurrent::run([] {
        while (true)
            cleanup(QDateTime::currentDateTime().addSecs(400)); // takes every root for an old one
    });
    for (int step = 0; std::getchar() != EOF; step = (step + 1) % 3) {
        const QByteArray content = newContent();
        const bool succeeds = step == 0   ? store(content, root)
                              : step == 1 ? persistLedger(document, content.right(20))
                                          : persistListing(content);
        say(succeeds ? "done"_s : "failed: %1"_s.arg(step));
    }
}
