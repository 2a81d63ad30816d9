#include "packagesourceelement.h"

namespace ts::pm {

PackageSourceElement::PackageSourceElement(QObject *parent)
    : QObject(parent)
{
}

PackageSourceElement::~PackageSourceElement()
{
    dropSource();
}

void PackageSourceElement::setRepository(PackageRepository *repository)
{
    if (attachedRepository == repository)
        return;
    dropSource();
    attachedRepository = repository;
    addSource();
}

void PackageSourceElement::checkAvailability() {}

void PackageSourceElement::sourceReplaced() {}

void PackageSourceElement::replaceSource()
{
    dropSource();
    addSource();
}

void PackageSourceElement::addSource()
{
    if (!attachedRepository)
        return;
    source = createSource();
    attachedRepository->addSource(source.get());
    sourceReplaced();
}

// The repository keeps plain pointers to its sources, so the source leaves it before it is destroyed.
void PackageSourceElement::dropSource()
{
    if (attachedRepository)
        attachedRepository->removeSource(source.get());
    source.reset();
}

} // namespace ts::pm
