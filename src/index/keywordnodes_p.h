#pragma once

#include "index/keywordnode.h"

#include <QPair>

namespace ts::pm {

/** A keyword with singular and plural forms. */
class NounNode final : public KeywordNode
{
public:
    NounNode(const KeywordInfo &info, PackageIndex *index);

    Keyword::Type type() const override;
    QStringRef displayString() const override;
    QStringRef sortString() const override;
    QVector<QStringRef> suggestions(const QStringRef &search) const override;
    int match(const QStringRef &search) const override;

private:
    QStringRef sortKey;
    QVector<QPair<QStringRef, QStringRef>> strings; // singular and plural, never empty
};

/** A keyword whose strings have one form. */
template<Keyword::Type keywordType>
class TextNode final : public KeywordNode
{
public:
    TextNode(const KeywordInfo &info, PackageIndex *index);

    Keyword::Type type() const override { return keywordType; }
    bool isCategory() const override { return keywordType == Keyword::Category; }
    QStringRef displayString() const override { return strings.constFirst(); }
    QStringRef sortString() const override { return sortKey; }
    QVector<QStringRef> suggestions(const QStringRef &search) const override;
    int match(const QStringRef &search) const override;

private:
    QStringRef sortKey;
    QVector<QStringRef> strings; // never empty
};

using NameNode = TextNode<Keyword::Name>;
using AdjectiveNode = TextNode<Keyword::Adjective>;
using CategoryNode = TextNode<Keyword::Category>;

/** A keyword with one string for all languages. */
class LiteralNode final : public KeywordNode
{
public:
    LiteralNode(const KeywordInfo &info, PackageIndex *index);

    Keyword::Type type() const override;
    QStringRef displayString() const override;
    QStringRef sortString() const override;
    QVector<QStringRef> suggestions(const QStringRef &search) const override;
    int match(const QStringRef &search) const override;

private:
    QStringRef sortKey;
    QStringRef text;
};

} // namespace ts::pm
