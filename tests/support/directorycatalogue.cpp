#include "directorycatalogue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace ts::pm::test {

namespace {

QJsonValue stringOf(const QString &type, const QString &text)
{
    if (type == QLatin1String("noun"))
        return QJsonObject{{QStringLiteral("sg"), text}, {QStringLiteral("pl"), QString()}};
    return text;
}

} // namespace

void DirectoryCatalogue::writeFile(const QString &name, const QByteArray &content)
{
    const QString path = directory.filePath(name);
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(path));
}

void DirectoryCatalogue::writePackage(const QString &typePath, const QString &id, const QJsonObject &manifest)
{
    const QString parent = typePath.isEmpty() ? QString() : typePath + QLatin1Char('/');
    writeFile(QStringLiteral("packages/%1%2/manifest.json").arg(parent, id),
              QJsonDocument(manifest).toJson());
}

void DirectoryCatalogue::writeKeyword(const QString &id, const QString &type, const QString &german,
                                      const QString &english)
{
    const QJsonObject strings{{QStringLiteral("de"), QJsonArray{stringOf(type, german)}},
                              {QStringLiteral("en"), QJsonArray{stringOf(type, english)}}};
    const QJsonObject keyword{{QStringLiteral("type"), type}, {QStringLiteral("strings"), strings}};
    writeFile(QStringLiteral("dictionary/%1.json").arg(id), QJsonDocument(keyword).toJson());
}

void DirectoryCatalogue::writeLink(const QString &from, const QString &type, const QString &to)
{
    const QJsonObject link{
        {QStringLiteral("from"), from}, {QStringLiteral("type"), type}, {QStringLiteral("to"), to}};
    writeFile(QStringLiteral("links/%1.json").arg(++links), QJsonDocument(link).toJson());
}

} // namespace ts::pm::test
