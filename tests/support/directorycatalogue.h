#pragma once

#include "files.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace ts::pm::test {

/** A catalogue directory on disk, written file by file. */
class DirectoryCatalogue
{
public:
    QString path() const { return directory.path(); }

    /** Writes \a content to \a name below the directory, and makes the directories that it needs. */
    void writeFile(const QString &name, const QByteArray &content)
    {
        const QString file = directory.filePath(name);
        if (!QDir().mkpath(QFileInfo(file).path()) || !test::writeFile(file, content))
            qFatal("Cannot write %s", qPrintable(file));
    }

    void writePackage(const QString &typePath, const QString &id, const QJsonObject &manifest = {})
    {
        writeFile(QStringLiteral("packages/%1/%2/manifest.json").arg(typePath, id),
                  QJsonDocument(manifest).toJson());
    }

    /** One string for each language. */
    void writeKeyword(const QString &id, const QString &type, const QString &german, const QString &english)
    {
        const auto stringOf = [isNoun = type == QLatin1String("noun")](const QString &text) {
            const QJsonObject noun{{QStringLiteral("sg"), text}, {QStringLiteral("pl"), QString()}};
            return QJsonArray{isNoun ? QJsonValue(noun) : QJsonValue(text)};
        };
        const QJsonObject strings{{QStringLiteral("de"), stringOf(german)},
                                  {QStringLiteral("en"), stringOf(english)}};
        const QJsonObject keyword{{QStringLiteral("type"), type}, {QStringLiteral("strings"), strings}};
        writeFile(QStringLiteral("dictionary/%1.json").arg(id), QJsonDocument(keyword).toJson());
    }

    void writeLink(const QString &from, const QString &type, const QString &to)
    {
        const QJsonObject link{
            {QStringLiteral("from"), from}, {QStringLiteral("type"), type}, {QStringLiteral("to"), to}};
        writeFile(QStringLiteral("links/%1.json").arg(++links), QJsonDocument(link).toJson());
    }

private:
    QTemporaryDir directory;
    int links = 0;
};

} // namespace ts::pm::test
