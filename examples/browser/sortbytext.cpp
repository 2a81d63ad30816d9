#include "sortbytext.h"

#include <TamselPackageManager/PackageNode>

#include <QCollator>
#include <QHash>
#include <QJsonValue>
#include <QLocale>

#include <memory>

namespace browser {

using ts::pm::PackageNode;

namespace {

// A process without a language has the C locale, which puts "10" before "9".
QLocale readersLocale()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}

// The texts of the packages of one job, each read and prepared once. A list model asks for a new sort
// function for each job and calls it from that job's thread alone, so nothing here is locked.
class TextOrder
{
public:
    explicit TextOrder(const QString &field)
        : field(field)
        , collator(readersLocale())
    {
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        collator.setNumericMode(true);
    }

    bool less(const PackageNode *a, const PackageNode *b)
    {
        // Copies: the second look-up may move what the first one found.
        const std::shared_ptr<const Key> keyA = key(a);
        const std::shared_ptr<const Key> keyB = key(b);
        if (keyA->isEmpty != keyB->isEmpty)
            return keyB->isEmpty;
        return keyA->sortKey.compare(keyB->sortKey) < 0;
    }

private:
    struct Key
    {
        QCollatorSortKey sortKey;
        bool isEmpty;
    };

    std::shared_ptr<const Key> key(const PackageNode *package)
    {
        std::shared_ptr<const Key> &known = keys[package];
        if (!known) {
            const QString text = package->readManifest(field).toString();
            known = std::make_shared<const Key>(Key{collator.sortKey(text), text.isEmpty()});
        }
        return known;
    }

    const QString field;
    QCollator collator;
    QHash<const PackageNode *, std::shared_ptr<const Key>> keys;
};

} // namespace

SortByText::SortByText(QObject *parent)
    : SortByField(parent)
{
}

std::function<bool(const PackageNode *, const PackageNode *)> SortByText::sortFunction() const
{
    if (name().isEmpty())
        return {};
    const auto order = std::make_shared<TextOrder>(name());
    return [order](const PackageNode *a, const PackageNode *b) { return order->less(a, b); };
}

} // namespace browser
