#include "ledger/ledgerverification.h"

#include "ledger/packagestatement.h"
#include "ledger/shortened.h"
#include "presentation/keyword.h"
#include "repository/link.h"

#include <QSet>
#include <QtConcurrentMap>

#include <functional>

namespace ts::ledger {

using crypto::ed25519::PublicKey;

namespace {

QString placeOf(const PackageRecord &package)
{
    return QStringLiteral("package '%1'").arg(shortened(package.id));
}

QString placeOf(const IssuerRecord &issuer)
{
    return QStringLiteral("issuer '%1' '%2'").arg(shortened(issuer.name), shortened(issuer.secondName));
}

/** Looks for records that clients accept and have no use for. */
class UsefulnessCheck
{
public:
    UsefulnessCheck(const LedgerRecords &records, Problems &problems)
        : records(records)
        , problems(problems)
    {
    }

    void run()
    {
        for (const KeywordRecord &keyword : records.keywords)
            check(keyword);
        for (const PackageRecord &package : records.packages)
            check(package);
        for (int i = 0; i < records.links.size(); ++i)
            check(records.links.at(i), i);
    }

private:
    void check(const KeywordRecord &keyword)
    {
        const QString place = QStringLiteral("keyword '%1'").arg(shortened(keyword.id));
        checkId(keyword.id, place);
        if (keyword.type > pm::Keyword::Category)
            problems.addWarning(place, QStringLiteral("there is no keyword type %1").arg(keyword.type));
    }

    void check(const PackageRecord &package)
    {
        checkId(package.id, placeOf(package));
        for (const FileRecord &file : package.files) {
            if (file.path.contains('/'))
                problems.addWarning(placeOf(package),
                                    QStringLiteral("the file '%1' does not install, since it is in "
                                                   "a sub-directory")
                                        .arg(shortened(file.path)));
        }
    }

    void check(const LinkRecord &link, int index)
    {
        const QString place = QStringLiteral("link %1").arg(index);
        if (link.type > pm::Requires)
            problems.addWarning(place, QStringLiteral("there is no link type %1").arg(link.type));
        if (qint64(link.source) >= tableSize(link.startsAtPackage())
            || qint64(link.target) >= tableSize(link.endsAtPackage()))
            problems.addWarning(place, QStringLiteral("an end that is not in the ledger"));
    }

    void checkId(const QByteArray &id, const QString &place)
    {
        if (ids.contains(id))
            problems.addWarning(place, QStringLiteral("another record has the same id"));
        ids.insert(id);
    }

    int tableSize(bool ofPackages) const
    {
        return ofPackages ? records.packages.size() : records.keywords.size();
    }

    const LedgerRecords &records;
    Problems &problems;
    QSet<QByteArray> ids;
};

} // namespace

LedgerVerification LedgerVerification::of(const LedgerRecords &records, const PublicKey &root)
{
    LedgerVerification result;
    QVector<PublicKey> keys;
    for (const IssuerRecord &issuer : records.issuers) {
        keys.append(PublicKey::fromDER(issuer.publicKey));
        result.issuers.append(root.verify(issuer.signature, issuer.publicKey));
        if (!result.issuers.constLast())
            result.problems.addError(placeOf(issuer), QStringLiteral("not signed by the root key"));
        else if (!keys.constLast())
            result.problems.addError(placeOf(issuer), QStringLiteral("its key is no Ed25519 key in DER"));
    }
    const std::function<bool(const PackageRecord &)> isGood = [&records,
                                                               &keys](const PackageRecord &package) {
        const QByteArray statement = packageStatement(records.types.at(package.type), package);
        return !statement.isNull() && keys.at(package.issuer).verify(package.signature, statement);
    };
    result.packages = QtConcurrent::blockingMapped<QVector<bool>>(records.packages, isGood);
    for (int i = 0; i < records.packages.size(); ++i) {
        const PackageRecord &package = records.packages.at(i);
        if (!result.packages.at(i))
            result.problems.addError(placeOf(package), QStringLiteral("the signature of %1 does not match")
                                                           .arg(placeOf(records.issuers.at(package.issuer))));
    }
    UsefulnessCheck(records, result.problems).run();
    return result;
}

} // namespace ts::ledger
