#include "presentation/haskeyword.h"

#include "index/keywordnode.h"
#include "index/keywordreach_p.h"
#include "presentation/inturn_p.h"

namespace ts::pm {

class HasKeywordPrivate
{
public:
    QString keywordId;
};

HasKeyword::HasKeyword(QObject *parent)
    : PackageMatcher(parent)
    , d(new HasKeywordPrivate)
{
}

HasKeyword::~HasKeyword() = default;

QString HasKeyword::keywordId() const
{
    return d->keywordId;
}

void HasKeyword::setKeywordId(const QString &id)
{
    if (d->keywordId == id)
        return;
    d->keywordId = id;
    inTurn(this, &HasKeyword::keywordIdChanged, &HasKeyword::updateRequested);
}

std::function<bool(PackageNode *)> HasKeyword::matchFunction() const
{
    if (d->keywordId.isEmpty())
        return {};
    return KeywordPredicate([id = d->keywordId](const KeywordNode *keyword) { return keyword->id() == id; });
}

} // namespace ts::pm
