#pragma once

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

} // namespace ts::pm::test
