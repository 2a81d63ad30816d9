#include "presentation/packagesorter.h"

namespace ts::pm {

PackageSorter::PackageSorter(QObject *parent)
    : QObject(parent)
{
}

PackageSorter::~PackageSorter() = default;

} // namespace ts::pm
