#include "ledger/jsonprinter.h"

#include "ledger/console.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace ts::ledger {

namespace {

// JSON lets stand what a terminal obeys, or shows in another order.
QString escaped(const QString &json)
{
    QString result;
    result.reserve(json.size());
    for (const QChar character : json) {
        if (character.isPrint() || character.isSurrogate() || character == QLatin1Char('\n'))
            result += character;
        else
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result;
}

bool printText(const QByteArray &json)
{
    return Console::print(escaped(QString::fromUtf8(json)));
}

// Without the brackets around it, and one level deeper: lines end only between values, never within one.
QByteArray elementText(const QJsonValue &element)
{
    QByteArray text = QJsonDocument(QJsonArray{element}).toJson();
    text = text.mid(qstrlen("[\n"), text.size() - int(qstrlen("[\n\n]\n")));
    return "    " + text.replace('\n', "\n    ");
}

bool printList(const JsonList &list, const char *separator)
{
    if (!Console::print(QStringLiteral("    \"%1\": [").arg(list.name)))
        return false;
    for (int i = 0; i < list.count; ++i) {
        if (!printText(elementText(list.element(i)) + (i + 1 < list.count ? "," : "")))
            return false;
    }
    return printText(QByteArrayLiteral("    ]") + separator);
}

} // namespace

bool JsonPrinter::print(const QJsonObject &object)
{
    return printText(QJsonDocument(object).toJson().trimmed());
}

bool JsonPrinter::print(const QVector<JsonList> &members)
{
    bool printed = Console::print(QStringLiteral("{"));
    for (int i = 0; i < members.size() && printed; ++i)
        printed = printList(members.at(i), i + 1 < members.size() ? "," : "");
    return printed && Console::print(QStringLiteral("}"));
}

} // namespace ts::ledger
