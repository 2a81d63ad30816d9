// Any document, up to the check of signatures: all that a ledger points at lies within the document, and one
// that is not valid holds nothing.

#include "server/packageledger.h"
#include "target.h"

#include <QLoggingCategory>

using namespace ts::pm;
using ts::fuzz::require;

namespace {

class Bounds
{
public:
    explicit Bounds(const QByteArray &document)
        : document(document)
    {
    }

    void check(const void *bytes, int size) const
    {
        const auto *begin = static_cast<const char *>(bytes);
        require(begin >= document.cbegin() && size <= document.cend() - begin, "lies within the document");
    }

    void check(const Utf8String &text) const
    {
        if (text.data)
            check(text.data, text.length);
        require(text.data || text.length == 0, "an absent text has no length");
        require(text.toString().isNull() == !text.data, "an absent text is null");
    }

    void check(const IssuerEntry &issuer) const
    {
        check(issuer.signature, 64);
        check(issuer.name);
        check(issuer.secondName);
        check(issuer.publicKey);
    }

    void check(const KeywordEntry &keyword) const
    {
        check(keyword.id);
        for (const QVector<Utf8String> &values : keyword.names)
            checkAll(values);
    }

    void check(const PackageEntry &package) const
    {
        check(package.signature, 64);
        check(package.id);
        check(package.manifest);
        for (auto file = package.files.cbegin(); file != package.files.cend(); ++file) {
            if (!file.key().isEmpty())
                check(file.key().constData(), file.key().size());
            check(*file, 28);
        }
    }

    template<typename Entry>
    void checkAll(const QVector<Entry> &entries) const
    {
        for (const Entry &entry : entries)
            check(entry);
    }

private:
    const QByteArray document;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Rejected ledgers have nothing to say here, and to say it takes longer than to find them.
    static const auto silent =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Q_UNUSED(silent)

    const PackageLedger ledger(ts::fuzz::bytes(data, size), "tag");
    if (!ledger.valid) {
        require(ledger.data.isEmpty() && ledger.etag.isEmpty() && ledger.packages.isEmpty()
                    && ledger.keywords.isEmpty() && ledger.links.isEmpty(),
                "a ledger that is not valid is empty");
        return 0;
    }
    const Bounds bounds(ledger.data);
    bounds.checkAll(ledger.languages);
    bounds.checkAll(ledger.types);
    bounds.checkAll(ledger.issuers);
    bounds.checkAll(ledger.keywords);
    bounds.checkAll(ledger.packages);
    for (const PackageEntry &package : ledger.packages) {
        require(package.typeIndex < ledger.types.size(), "a package has a type");
        require(package.issuerIndex < ledger.issuers.size(), "a package has an issuer");
        require(ledger.findPackage(QByteArray::fromRawData(package.id.data, package.id.length)),
                "an id is found");
    }
    return 0;
}
