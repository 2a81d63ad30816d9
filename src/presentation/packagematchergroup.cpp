#include "presentation/packagematchergroup.h"
#include "presentation/packagematchergroup_p.h"

#include "presentation/inturn_p.h"
#include "presentation/listelement_p.h"

#include <QVector>

#include <algorithm>

namespace ts::pm {

namespace {

using MatchFunction = std::function<bool(PackageNode *)>;

PackageMatcherGroupPrivate *groupOf(QQmlListProperty<PackageMatcher> *list)
{
    return static_cast<PackageMatcherGroupPrivate *>(list->data);
}

void _addMatcher(QQmlListProperty<PackageMatcher> *list, PackageMatcher *matcher)
{
    if (belongsIn(list, matcher))
        groupOf(list)->addMatcher(matcher);
}

int _matcherCount(QQmlListProperty<PackageMatcher> *list)
{
    return groupOf(list)->matcherCount();
}

PackageMatcher *_matcherAt(QQmlListProperty<PackageMatcher> *list, int index)
{
    return groupOf(list)->matcherAt(index);
}

void _clearMatchers(QQmlListProperty<PackageMatcher> *list)
{
    groupOf(list)->clearMatchers();
}

} // namespace

PackageMatcherGroupPrivate::PackageMatcherGroupPrivate(PackageMatcherGroup *q)
    : q(q)
{
}

void PackageMatcherGroupPrivate::addMatcher(PackageMatcher *matcher)
{
    if (!matcher || matchers.contains(matcher) || isHeardBy(matcher))
        return;
    matchers.append(matcher);
    heard.removeAll(nullptr);
    heard.append(matcher);
    QObject::connect(matcher, &PackageMatcher::updateRequested, q, &PackageMatcher::updateRequested);
    queueNotification();
}

void PackageMatcherGroupPrivate::removeMatcher(PackageMatcher *matcher)
{
    if (!matcher || !matchers.removeOne(matcher))
        return;
    heard.removeAll(matcher);
    matcher->disconnect(q);
    queueNotification();
}

int PackageMatcherGroupPrivate::matcherCount() const
{
    return matchers.size();
}

PackageMatcher *PackageMatcherGroupPrivate::matcherAt(int index) const
{
    return matchers.value(index);
}

// Leaves the connections: a matcher that was cleared goes on asking for updates through the group.
void PackageMatcherGroupPrivate::clearMatchers()
{
    if (matchers.isEmpty())
        return;
    matchers.clear();
    queueNotification();
}

void PackageMatcherGroupPrivate::queueNotification()
{
    if (notifyPending)
        return;
    notifyPending = true;
    QMetaObject::invokeMethod(q, "notifyMatcherChange", Qt::QueuedConnection);
}

// Directly or through other groups, or because it is this one.
bool PackageMatcherGroupPrivate::isHeardBy(PackageMatcher *matcher) const
{
    QVector<PackageMatcher *> reached{matcher};
    for (int i = 0; i < reached.size() && reached.at(i) != q; ++i) {
        const auto *group = qobject_cast<PackageMatcherGroup *>(reached.at(i));
        const auto inside = group ? group->d->heard : QList<QPointer<PackageMatcher>>();
        for (PackageMatcher *next : inside) {
            if (!reached.contains(next))
                reached.append(next);
        }
    }
    return reached.contains(q);
}

PackageMatcherGroup::PackageMatcherGroup(QObject *parent)
    : PackageMatcher(parent)
    , d(new PackageMatcherGroupPrivate(this))
{
}

PackageMatcherGroup::~PackageMatcherGroup() = default;

PackageMatcherGroup::MatchRequirement PackageMatcherGroup::matchRequirement() const
{
    return d->requirement;
}

void PackageMatcherGroup::setMatchRequirement(MatchRequirement requirement)
{
    if (d->requirement == requirement)
        return;
    d->requirement = requirement;
    inTurn(this, &PackageMatcherGroup::matchRequirementChanged, &PackageMatcherGroup::updateRequested);
}

QQmlListProperty<PackageMatcher> PackageMatcherGroup::matchers()
{
    return QQmlListProperty<PackageMatcher>(this, d.data(), &_addMatcher, &_matcherCount, &_matcherAt,
                                            &_clearMatchers);
}

void PackageMatcherGroup::addMatcher(PackageMatcher *matcher)
{
    d->addMatcher(matcher);
}

void PackageMatcherGroup::removeMatcher(PackageMatcher *matcher)
{
    d->removeMatcher(matcher);
}

std::function<bool(PackageNode *)> PackageMatcherGroup::matchFunction() const
{
    QVector<MatchFunction> functions;
    const bool takenByAll = d->requirement == MatchAll;
    const auto matchers = d->matchers; // members may take others out, and destroy them or the group
    for (const QPointer<PackageMatcher> &matcher : matchers) {
        if (MatchFunction function = matcher ? matcher->matchFunction() : MatchFunction())
            functions.append(function);
    }
    if (functions.isEmpty())
        return {};
    const auto takes = [](PackageNode *node) {
        return [node](const MatchFunction &function) { return function(node); };
    };
    if (takenByAll) {
        return [functions, takes](PackageNode *node) {
            return std::all_of(functions.begin(), functions.end(), takes(node));
        };
    }
    return [functions, takes](PackageNode *node) {
        return std::any_of(functions.begin(), functions.end(), takes(node));
    };
}

void PackageMatcherGroup::notifyMatcherChange()
{
    d->notifyPending = false;
    inTurn(this, &PackageMatcherGroup::matchersChanged, &PackageMatcherGroup::updateRequested);
}

} // namespace ts::pm
