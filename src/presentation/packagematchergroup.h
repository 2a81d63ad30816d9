#pragma once

#include "presentation/packagematcher.h"

#include <QQmlListProperty>
#include <QScopedPointer>

namespace ts::pm {

class PackageMatcherGroupPrivate;

/**
 * Joins matchers. Members that restrict nothing are left out, whatever the requirement; a group without a
 * restricting member restricts nothing. Groups nest, but not in a circle.
 *
 * Ownership: members are not owned.
 * Threads: repository thread only.
 * Signals: any number of changes of membership in one pass of the event loop give one matchersChanged() and
 * one updateRequested(). updateRequested() of a member comes out as the group's own; that holds also for a
 * member that was taken out by clearing the list, but not for one that removeMatcher() took out.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageMatcherGroup : public PackageMatcher
{
    Q_OBJECT
    Q_CLASSINFO("DefaultProperty", "matchers")
    /** MatchAll at first. Bindings do not follow it, by choice: only what the group matches is news. */
    Q_PROPERTY(ts::pm::PackageMatcherGroup::MatchRequirement // clazy:exclude=qproperty-without-notify
                   matchRequirement READ matchRequirement WRITE setMatchRequirement)
    /** The members. None at first. */
    Q_PROPERTY(QQmlListProperty<ts::pm::PackageMatcher> matchers READ matchers NOTIFY matchersChanged)

public:
    /** QML can set any number: one without a name counts as MatchAny. */
    enum MatchRequirement : int {
        MatchAll = 0, ///< every member has to take the package
        MatchAny = 1, ///< one member has to take the package
    };
    Q_ENUM(MatchRequirement)

    explicit PackageMatcherGroup(QObject *parent = nullptr);
    ~PackageMatcherGroup() override;

    MatchRequirement matchRequirement() const;
    void setMatchRequirement(MatchRequirement requirement);

    QQmlListProperty<PackageMatcher> matchers();

    /**
     * Adds \a matcher at the end; one that is a member already changes nothing. Neither does one that would
     * close a circle: the group itself, or a group that passes on its updates, directly or through others.
     */
    Q_INVOKABLE void addMatcher(ts::pm::PackageMatcher *matcher);

    /** Takes \a matcher out; one that is no member changes nothing. */
    Q_INVOKABLE void removeMatcher(ts::pm::PackageMatcher *matcher);

    std::function<bool(PackageNode *)> matchFunction() const override;

Q_SIGNALS:
    void matchRequirementChanged();
    void matchersChanged();

private Q_SLOTS:
    void notifyMatcherChange();

private:
    friend class PackageMatcherGroupPrivate;
    QScopedPointer<PackageMatcherGroupPrivate> d;
};

} // namespace ts::pm
