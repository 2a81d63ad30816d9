#include "database/rowdata_p.h"

#include "logging_p.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace ts::pm {

namespace {

constexpr qint64 largestRead = 4194304; // bytes
constexpr int indentation = 4;          // blanks for each level, as QJsonDocument writes them

bool isStructure(char c)
{
    return c == ',' || c == '[' || c == ']' || c == '{' || c == '}';
}

// About what JSON takes when it is written anew with indentation: behind each bracket and comma there may be
// a line break, and the beginning of another line.
qint64 indentedSize(const QByteArray &json)
{
    qint64 size = json.size();
    int depth = 0;
    bool inString = false;
    for (const char *at = json.cbegin(); at < json.cend(); ++at) {
        if (*at == '"')
            inString = !inString;
        else if (inString && *at == '\\')
            ++at;
        if (inString || !isStructure(*at))
            continue;
        depth += *at == ',' ? 0 : (*at == '[' || *at == '{' ? 1 : -1);
        size += 1 + indentation * depth;
    }
    return size;
}

} // namespace

QJsonDocument readDataFile(LogCategory category, const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return QJsonDocument();
    if (!file.open(QIODevice::ReadOnly)) {
        qCCritical(category) << "Failed to open data file" << path << file.errorString();
        return QJsonDocument();
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.read(largestRead), &error);
    if (error.error != QJsonParseError::NoError)
        qCCritical(category) << "Failed to parse data file" << error.errorString();
    return document;
}

QJsonArray readRowData(const QString &path)
{
    const QJsonDocument document = readDataFile(lcDocPackageSource, path);
    return document.isArray() ? document.array() : document.object().value(QLatin1String("rows")).toArray();
}

QByteArray normalisedRows(const QByteArray &response, QJsonParseError *error)
{
    const QJsonDocument document = QJsonDocument::fromJson(response, error);
    if (error->error == QJsonParseError::NoError && indentedSize(response) > largestRows)
        error->error = QJsonParseError::DocumentTooLarge;
    if (error->error != QJsonParseError::NoError)
        return QByteArray();
    return QJsonDocument(document.object().value(QLatin1String("rows")).toArray()).toJson();
}

} // namespace ts::pm
