#include "index/keywordnodes_p.h"

#include "index/packageindex.h"
#include "logging_p.h"
#include "repository/packagerecords.h"

namespace ts::pm {

namespace {

constexpr int noMatch = 0;
constexpr int partialMatch = 1;
constexpr int exactMatch = 2;

bool equals(const QStringRef &text, const QStringRef &search)
{
    return text.compare(search, Qt::CaseInsensitive) == 0;
}

bool contains(const QStringRef &text, const QStringRef &search)
{
    return text.indexOf(search, 0, Qt::CaseInsensitive) >= 0;
}

int matchText(const QStringRef &text, const QStringRef &search)
{
    if (equals(text, search))
        return exactMatch;
    return contains(text, search) ? partialMatch : noMatch;
}

// German strings order every list, whatever the active language.
bool isSortLanguage(const QString &language)
{
    return language == QLatin1String("de");
}

} // namespace

NounNode::NounNode(const KeywordInfo &info, PackageIndex *index)
    : KeywordNode(info, index)
{
    for (const LangString &string : info.strings) {
        if (string.language == index->activeLanguage())
            strings.append({index->addString(string.sg), index->addString(string.pl)});
        if (sortKey.isEmpty() && isSortLanguage(string.language))
            sortKey = index->addString(string.sg.isEmpty() ? string.pl : string.sg);
    }
    if (strings.isEmpty()) {
        qCWarning(lcPackageIndex) << "Keyword" << info.id << "has empty string list";
        strings.append({QStringRef(), QStringRef()});
    }
}

Keyword::Type NounNode::type() const
{
    return Keyword::Noun;
}

QStringRef NounNode::displayString() const
{
    const auto &forms = strings.constFirst();
    return forms.first.isEmpty() ? forms.second : forms.first;
}

QStringRef NounNode::sortString() const
{
    return sortKey;
}

QVector<QStringRef> NounNode::suggestions(const QStringRef &search) const
{
    QVector<QStringRef> found;
    for (const auto &forms : strings) {
        if (contains(forms.first, search))
            found.append(forms.first);
        else if (contains(forms.second, search))
            found.append(forms.second);
    }
    return found;
}

// The first pair that fits at all decides, even where a later one would fit exactly.
int NounNode::match(const QStringRef &search) const
{
    for (const auto &forms : strings) {
        if (equals(forms.first, search) || equals(forms.second, search))
            return exactMatch;
        if (contains(forms.first, search) || contains(forms.second, search))
            return partialMatch;
    }
    return noMatch;
}

template<Keyword::Type keywordType>
TextNode<keywordType>::TextNode(const KeywordInfo &info, PackageIndex *index)
    : KeywordNode(info, index)
{
    for (const LangString &string : info.strings) {
        if (string.language == index->activeLanguage())
            strings.append(index->addString(string.sg));
        if (sortKey.isEmpty() && isSortLanguage(string.language))
            sortKey = index->addString(string.sg);
    }
    if (strings.isEmpty()) {
        qCWarning(lcPackageIndex) << "Keyword" << info.id << "has empty string list";
        strings.append(QStringRef());
    }
}

template<Keyword::Type keywordType>
QVector<QStringRef> TextNode<keywordType>::suggestions(const QStringRef &search) const
{
    QVector<QStringRef> found;
    for (const QStringRef &string : strings) {
        if (contains(string, search))
            found.append(string);
    }
    return found;
}

// The first string that fits at all decides, even where a later one would fit exactly.
template<Keyword::Type keywordType>
int TextNode<keywordType>::match(const QStringRef &search) const
{
    for (const QStringRef &string : strings) {
        if (const int result = matchText(string, search))
            return result;
    }
    return noMatch;
}

LiteralNode::LiteralNode(const KeywordInfo &info, PackageIndex *index)
    : KeywordNode(info, index)
{
    if (info.strings.isEmpty()) {
        qCWarning(lcPackageIndex) << "Keyword" << info.id << "has empty string";
        return;
    }
    text = index->addString(info.strings.constFirst().sg);
    sortKey = index->addString(info.strings.constFirst().sg);
}

Keyword::Type LiteralNode::type() const
{
    return Keyword::Literal;
}

QStringRef LiteralNode::displayString() const
{
    return text;
}

QStringRef LiteralNode::sortString() const
{
    return sortKey;
}

QVector<QStringRef> LiteralNode::suggestions(const QStringRef &search) const
{
    return contains(text, search) ? QVector<QStringRef>{text} : QVector<QStringRef>();
}

int LiteralNode::match(const QStringRef &search) const
{
    return matchText(text, search);
}

KeywordNode *KeywordNode::create(const KeywordInfo &info, PackageIndex *index)
{
    switch (info.type) {
    case Keyword::Noun:
        return new NounNode(info, index);
    case Keyword::Name:
        return new NameNode(info, index);
    case Keyword::Adjective:
        return new AdjectiveNode(info, index);
    case Keyword::Literal:
        return new LiteralNode(info, index);
    case Keyword::Category:
        return new CategoryNode(info, index);
    case Keyword::Invalid:
        break;
    }
    return nullptr;
}

} // namespace ts::pm
