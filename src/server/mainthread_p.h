#pragma once

#include <QUrl>

#include <functional>

namespace ts::pm {

/**
 * What \a question says on the main thread; called there at once, and waited for on every other thread.
 *
 * An empty URL if the application quits meanwhile: its thread waits for the jobs of the pool then, and would
 * never answer.
 */
QUrl askMainThread(const std::function<QUrl()> &question);

} // namespace ts::pm
