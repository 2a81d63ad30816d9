#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

#include <functional>

namespace ts::ledger {

/** A member of a JSON object: an array whose elements are made one at a time, as they are printed. */
struct JsonList
{
    QString name;
    int count = 0;
    std::function<QJsonValue(int)> element;
};

/**
 * Prints JSON as results of the command: as QJsonDocument indents it, and with every character escaped that a
 * terminal would obey or show in another order.
 *
 * Threads: any. All return false, with an error told, if the output does not take it.
 */
class JsonPrinter
{
public:
    static bool print(const QJsonObject &object);

    /** An object with these members, which have to come in the order of their names as QJsonObject has it. */
    static bool print(const QVector<JsonList> &members);
};

} // namespace ts::ledger
