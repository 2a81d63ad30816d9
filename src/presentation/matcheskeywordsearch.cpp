#include "presentation/matcheskeywordsearch.h"

#include "index/keywordnode.h"
#include "index/keywordreach_p.h"
#include "presentation/inturn_p.h"

namespace ts::pm {

class MatchesKeywordSearchPrivate
{
public:
    QString searchString;
    MatchesKeywordSearch::MatchMode matchMode = MatchesKeywordSearch::PartialMatch;
};

MatchesKeywordSearch::MatchesKeywordSearch(QObject *parent)
    : PackageMatcher(parent)
    , d(new MatchesKeywordSearchPrivate)
{
}

MatchesKeywordSearch::~MatchesKeywordSearch() = default;

QString MatchesKeywordSearch::searchString() const
{
    return d->searchString;
}

void MatchesKeywordSearch::setSearchString(const QString &text)
{
    if (d->searchString == text)
        return;
    d->searchString = text;
    inTurn(this, &MatchesKeywordSearch::searchStringChanged, &MatchesKeywordSearch::updateRequested);
}

MatchesKeywordSearch::MatchMode MatchesKeywordSearch::matchMode() const
{
    return d->matchMode;
}

void MatchesKeywordSearch::setMatchMode(MatchMode mode)
{
    if (d->matchMode == mode)
        return;
    d->matchMode = mode;
    inTurn(this, &MatchesKeywordSearch::matchModeChanged, &MatchesKeywordSearch::updateRequested);
}

std::function<bool(PackageNode *)> MatchesKeywordSearch::matchFunction() const
{
    if (d->searchString.isEmpty())
        return {};
    const int threshold = d->matchMode == FullMatch ? 2 : 1; // of KeywordNode::match()
    return KeywordPredicate([text = d->searchString, threshold](const KeywordNode *keyword) {
        return keyword->match(QStringRef(&text)) >= threshold;
    });
}

} // namespace ts::pm
