#include "referencetype_p.h"

#include <algorithm>
#include <vector>

namespace ts::data {

namespace {

std::vector<ReferenceType> &knownTypes()
{
    static std::vector<ReferenceType> types;
    return types;
}

template<typename Condition>
const ReferenceType *findType(Condition condition)
{
    const std::vector<ReferenceType> &types = knownTypes();
    const auto found = std::find_if(types.begin(), types.end(), condition);
    return found == types.end() ? nullptr : &*found;
}

} // namespace

void registerReferenceType(const ReferenceType &type)
{
    std::vector<ReferenceType> &types = knownTypes();
    const auto isSame = [&type](const ReferenceType &known) { return known.typeId == type.typeId; };
    types.erase(std::remove_if(types.begin(), types.end(), isSame), types.end());
    types.push_back(type);
}

const ReferenceType *referenceType(int typeId)
{
    return findType([typeId](const ReferenceType &type) { return type.typeId == typeId; });
}

const ReferenceType *referenceTypeOf(const QObject *object)
{
    return findType([object](const ReferenceType &type) { return type.objectClass->cast(object); });
}

} // namespace ts::data
