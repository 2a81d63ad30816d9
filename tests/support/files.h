#pragma once

#include <QCryptographicHash>
#include <QFile>

namespace ts::pm::test {

/** The content of a file; empty if it cannot be read. */
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Whether the file could be written. */
[[nodiscard]] inline bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

/** What a content is called where files are named by their content. */
inline QString idOf(const QByteArray &content,
                    QCryptographicHash::Algorithm algorithm = QCryptographicHash::Sha224)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, algorithm).toHex());
}

} // namespace ts::pm::test
