#pragma once

#include "presentation/packagematchergroup.h"

#include <QList>
#include <QPointer>

namespace ts::pm {

class PackageMatcherGroupPrivate
{
public:
    explicit PackageMatcherGroupPrivate(PackageMatcherGroup *q);

    void addMatcher(PackageMatcher *matcher);
    void removeMatcher(PackageMatcher *matcher);
    int matcherCount() const;
    PackageMatcher *matcherAt(int index) const;
    void clearMatchers();

    void queueNotification();

    PackageMatcherGroup *const q;
    bool notifyPending = false;
    QList<QPointer<PackageMatcher>> matchers; // not owned
    PackageMatcherGroup::MatchRequirement requirement = PackageMatcherGroup::MatchAll;
};

} // namespace ts::pm
