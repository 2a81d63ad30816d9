#pragma once

#include "index/packageindexnode.h"
#include "presentation/keyword.h"

#include <QStringRef>
#include <QVector>

namespace ts::pm {

struct KeywordInfo;

/**
 * A keyword in an index, with its strings in the active language of the index.
 *
 * Ownership: belongs to its index.
 * Threads: immutable, any thread.
 * Errors: a keyword without strings is logged in "tamsel.package.index" and shows as empty.
 */
class TAMSELPACKAGEMANAGER_EXPORT KeywordNode : public PackageIndexNode
{
public:
    /** A node for \a info, of a class that fits its type, owned by the caller; null for an invalid type. */
    [[nodiscard]] static KeywordNode *create(const KeywordInfo &info, PackageIndex *index);

    ~KeywordNode() override;

    virtual Keyword::Type type() const = 0;
    virtual bool isCategory() const;

    /** The text to show: the first string, of a noun its singular, or its plural if it has no singular. */
    virtual QStringRef displayString() const = 0;

    /**
     * The text to sort by, whatever the active language: the first German string that is not empty, of a noun
     * its singular before its plural, of a literal its one string. Empty if there is none.
     */
    virtual QStringRef sortString() const = 0;

    /** The strings that contain \a search, without regard to case. Of a noun one form of each pair. */
    virtual QVector<QStringRef> suggestions(const QStringRef &search) const = 0;

    /**
     * How well the keyword fits \a search, without regard to case: 2 if a string equals it, 1 if one contains
     * it, 0 otherwise. The first string that fits at all decides.
     */
    virtual int match(const QStringRef &search) const = 0;

    /**
     * Whether links lead here from a package of \a type. The rules are close to those of
     * PackageNode::keywords() and differ from them on purpose. A walk of more than a million links ends
     * with "no".
     */
    bool linksToPackageType(const QStringRef &type) const;

protected:
    KeywordNode(const KeywordInfo &info, PackageIndex *index);

private:
    friend class PackageIndexBuilder;
    friend class SortString;

    // The place of sortString() in the order of the locale, for keywords that are attributes of packages.
    // Found once for each keyword, since comparing by the rules of a locale is slow.
    int collationRank = -1;
};

} // namespace ts::pm
