#pragma once

#include <QJsonObject>
#include <QVariantList>

namespace browser {

/**
 * The entries of a manifest that a page can list as plain facts, as objects with "key" and "value".
 *
 * Values are texts, numbers, booleans, or lists of texts and numbers; anything else is left out, and so are
 * the keys that have a place of their own on the page. "monthFrom" and "monthTo" make one fact, "season", a
 * list of both. Keys that say what the package is about come first, then the others by name, and at the end
 * those that say where it comes from.
 */
QVariantList manifestFacts(const QJsonObject &manifest);

} // namespace browser
