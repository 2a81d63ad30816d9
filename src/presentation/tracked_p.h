#pragma once

#include <QPointer>

namespace ts::pm {

/**
 * A pointer to an object that somebody else owns. Reads as null once the object is gone, yet goes on to
 * differ from null when it is compared, so that assigning null then counts as a change.
 *
 * Threads: repository thread only.
 */
template<typename Object>
class Tracked
{
public:
    Object *get() const { return guard.data(); }
    bool is(const Object *object) const { return assigned == object && guard.data() == object; }
    void set(Object *object)
    {
        assigned = object;
        guard = object;
    }

private:
    const Object *assigned = nullptr; // for comparison only
    QPointer<Object> guard;
};

} // namespace ts::pm
