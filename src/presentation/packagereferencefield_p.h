#pragma once

#include "presentation/packagereferencefield.h"

namespace ts::pm {

class PackageReference;

// Repository thread only.
class PackageReferenceFieldPrivate
{
public:
    /** Every reference is: the types are advice to the user interface, not a rule for documents. */
    bool isAccepted(PackageReference *reference) const;

    PackageReferenceField *const q;
    QStringList acceptedTypes;
};

} // namespace ts::pm
