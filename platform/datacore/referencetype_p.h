#pragma once

#include "referencetype.h"

namespace ts::data {

/** The type of that number, null if none is known. */
const ReferenceType *referenceType(int typeId);

/** The type that stands for the class of \a object, null if none does. */
const ReferenceType *referenceTypeOf(const QObject *object);

} // namespace ts::data
