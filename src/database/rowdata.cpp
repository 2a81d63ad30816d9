#include "database/rowdata_p.h"

#include "logging_p.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace ts::pm {

namespace {

constexpr qint64 largestRead = 4194304; // bytes

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
    if (error->error != QJsonParseError::NoError)
        return QByteArray();
    return QJsonDocument(document.object().value(QLatin1String("rows")).toArray()).toJson();
}

} // namespace ts::pm
