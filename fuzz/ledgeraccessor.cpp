// The four payloads of a ledger, with ".kwd", ".pkg" and ".lnk" between them: an accessor makes records of
// whatever passes the parser, and an index is built of these.

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "repository/packagesource.h"
#include "server/packagefiles_p.h"
#include "server/packageledger.h"
#include "server/packageserveraccessor.h"
#include "target.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtEndian>

using namespace ts::pm;
using ts::fuzz::require;

namespace {

/** What the library needs of a process, with a data directory that nobody else uses. */
class Surroundings
{
public:
    Surroundings()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        require(ts::Locations::setDataLocation(QDir(data.path())), "the data directory is ours");
    }

private:
    QTemporaryDir data;
    int argc = 1;
    char name[5] = "fuzz";
    char *argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
};

class LedgerSource : public PackageSource
{
public:
    explicit LedgerSource(const QSharedPointer<PackageLedger> &ledger)
        : ledger(ledger)
    {
    }

    int priority() const override { return 0; }
    PackageAccessor *getAccessor() const override { return new PackageServerAccessor(nullptr, ledger); }

private:
    const QSharedPointer<PackageLedger> ledger;
};

QByteArray number(int value)
{
    const auto littleEndian = qToLittleEndian(quint32(value));
    return QByteArray(reinterpret_cast<const char *>(&littleEndian), 4);
}

// Payloads that mutations have made longer or shorter still make a document in which the sections touch.
QByteArray document(QByteArray input)
{
    const QByteArray tags[] = {".iss", ".kwd", ".pkg", ".lnk"};
    QByteArray header("ldgr\x01\x00", 6);
    QByteArray sections;
    for (int i = 0; i < 4; ++i) {
        const int next = i < 3 ? input.indexOf(tags[i + 1]) : -1;
        const QByteArray payload = input.left(next < 0 ? input.size() : next);
        input.remove(0, payload.size() + 4);
        header += tags[i] + number(38 + sections.size());
        sections += tags[i] + number(payload.size()) + payload;
    }
    return header + sections;
}

void readPackages(const PackageLedger &ledger, const PackageServerAccessor &accessor)
{
    for (int i = 0; i < ledger.packages.size(); ++i) {
        const PackageEntry &package = ledger.packages.at(i);
        const QVector<PackageFile> files = packageFiles(package);
        require(files.isEmpty() == package.files.isEmpty(), "files stay files");
        for (const PackageFile &file : files) {
            const unsigned char *digest = fileDigest(package, file.path);
            require(!digest || digest == file.digest, "look-up and statement agree");
        }
        accessor.packageManifest(i);
        require(accessor.packageFileUrl(i, QStringLiteral("no such file")).isEmpty()
                    || fileDigest(package, QStringLiteral("no such file")),
                "what is not there has no address");
    }
}

void readIndex(const QSharedPointer<PackageIndex> &index)
{
    const PackageList packages = PackageIndex::selectPackages(index, QString(), {}, {});
    const KeywordList keywords = PackageIndex::selectKeywords(index, {});
    require(packages.size() == index->packageCount(), "every package is listed");
    PackageIndex::selectPackages(index, QStringLiteral("guide"),
                                 [](PackageNode *package) { return !package->manifest().isEmpty(); }, {});
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Surroundings surroundings;
    const auto ledger = QSharedPointer<PackageLedger>::create(document(ts::fuzz::bytes(data, size)), "tag");
    if (!ledger->valid)
        return 0;
    readPackages(*ledger, PackageServerAccessor(nullptr, ledger));
    LedgerSource source(ledger);
    const auto index = QSharedPointer<PackageIndex>::create();
    index->addSource(&source);
    index->build();
    readIndex(index);
    QThreadPool::globalInstance()->waitForDone(); // the clean-up of install roots that each build starts
    return 0;
}
