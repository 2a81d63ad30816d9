#include "presentation/packagematcher.h"

namespace ts::pm {

PackageMatcher::PackageMatcher(QObject *parent)
    : QObject(parent)
{
}

PackageMatcher::~PackageMatcher() = default;

} // namespace ts::pm
