#pragma once

#include "presentation/packagematchergroup.h"

#include <QList>
#include <QPointer>

namespace ts::pm {

// Repository thread only.
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
    bool isHeardBy(PackageMatcher *matcher) const;

    PackageMatcherGroup *const q;
    bool notifyPending = false;
    QList<QPointer<PackageMatcher>> matchers; // not owned
    QList<QPointer<PackageMatcher>> heard;    // whose updates come out here: members, and those once cleared
    PackageMatcherGroup::MatchRequirement requirement = PackageMatcherGroup::MatchAll;
};

} // namespace ts::pm
