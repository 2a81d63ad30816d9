#include "presentation/keyword.h"

#include "index/keywordnode.h"
#include "index/packageindex.h"
#include "presentation/inturn_p.h"
#include "presentation/providerhandle_p.h"

#include <QHash>

namespace ts::pm {

class KeywordPrivate
{
public:
    Keyword *const q;
    QString keywordId;
    ProviderHandle provider;
    QSharedPointer<PackageIndex> index; // keeps the node alive
    KeywordNode *node = nullptr;
};

Keyword::Keyword(QObject *parent)
    : QObject(parent)
    , d(new KeywordPrivate{this, {}, {}, {}})
{
}

Keyword::~Keyword() = default;

Keyword::Type Keyword::typeFromString(const QString &name)
{
    static const QHash<QString, Type> types{
        {QStringLiteral("noun"), Noun},           {QStringLiteral("name"), Name},
        {QStringLiteral("adjective"), Adjective}, {QStringLiteral("literal"), Literal},
        {QStringLiteral("category"), Category},
    };
    return types.value(name, Invalid);
}

Keyword::Type Keyword::type() const
{
    return d->node ? d->node->type() : Invalid;
}

QString Keyword::displayString() const
{
    return d->node ? d->node->displayString().toString() : QString();
}

QObject *Keyword::packageProvider() const
{
    return d->provider.object();
}

// Does not tell that the provider has changed: only what the keyword shows is news.
void Keyword::setPackageProvider(QObject *provider)
{
    if (d->provider.is(provider))
        return;
    if (!d->provider.assign(provider, this, &Keyword::update, ProviderHandle::DropUnusable))
        return;
    update();
}

QString Keyword::keywordId() const
{
    return d->keywordId;
}

void Keyword::setKeywordId(const QString &id)
{
    if (d->keywordId == id)
        return;
    d->keywordId = id;
    inTurn(this, &Keyword::keywordIdChanged, &Keyword::update);
}

void Keyword::update()
{
    QSharedPointer<PackageIndex> index = d->provider.packageIndex();
    KeywordNode *node = nullptr;
    if (index && !d->keywordId.isEmpty())
        node = index->getKeyword(QStringRef(&d->keywordId));
    if (!node)
        index.reset();
    if (index == d->index && node == d->node)
        return;
    d->index = index;
    d->node = node;
    Q_EMIT keywordChanged();
}

} // namespace ts::pm
