#include "index/packageindexnode.h"

#include "index/keywordnode.h"
#include "index/packagenode.h"

namespace ts::pm {

PackageIndexNode::PackageIndexNode(PackageIndex *index, Kind kind, const QStringRef &id)
    : index(index)
    , nodeId(id)
    , kind(kind)
{
}

PackageIndexNode::~PackageIndexNode() = default;

PackageNode *PackageIndexNode::toPackage()
{
    return isPackage() ? static_cast<PackageNode *>(this) : nullptr;
}

const PackageNode *PackageIndexNode::toPackage() const
{
    return isPackage() ? static_cast<const PackageNode *>(this) : nullptr;
}

KeywordNode *PackageIndexNode::toKeyword()
{
    return isKeyword() ? static_cast<KeywordNode *>(this) : nullptr;
}

const KeywordNode *PackageIndexNode::toKeyword() const
{
    return isKeyword() ? static_cast<const KeywordNode *>(this) : nullptr;
}

void PackageIndexNode::linkTo(PackageIndexNode *other, LinkType type)
{
    outgoing.append({type, other});
    other->incoming.append({type, this});
}

} // namespace ts::pm
