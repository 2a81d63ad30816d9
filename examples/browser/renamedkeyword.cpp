#include "renamedkeyword.h"

#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/PackageIndex>

namespace browser {

using ts::pm::KeywordNode;

namespace {

constexpr int exactMatch = 2; // of KeywordNode::match()

} // namespace

RenamedKeyword::RenamedKeyword(QObject *parent)
    : RepositoryObserver(parent)
{
}

void RenamedKeyword::keep(const QString &word)
{
    const auto keywords = ts::pm::PackageIndex::selectKeywords(index(), [&word](const KeywordNode *keyword) {
        return keyword->match(QStringRef(&word)) == exactMatch;
    });
    keywordId = keywords.isEmpty() ? QString() : (*keywords.begin())->id().toString();
}

void RenamedKeyword::handleIndexChange()
{
    const auto present = index();
    const KeywordNode *keyword = present ? present->getKeyword(QStringRef(&keywordId)) : nullptr;
    keywordId.clear();
    if (keyword && !keyword->displayString().isEmpty())
        Q_EMIT renamed(keyword->displayString().toString());
}

} // namespace browser
