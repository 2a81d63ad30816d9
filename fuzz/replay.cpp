// Runs the files of a corpus through a fuzz target, without libFuzzer and with any compiler.

#include "target.h"

#include <QDir>
#include <QFile>

#include <vector>

namespace {

bool replay(const QString &path)
{
    std::fprintf(stderr, "%s\n", qPrintable(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    // In memory of exactly its size, so that a sanitizer sees a read behind the end.
    const std::vector<std::uint8_t> input(content.cbegin(), content.cend());
    return LLVMFuzzerTestOneInput(input.data(), input.size()) == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    const QDir corpus(QFile::decodeName(argv[1]));
    const QStringList names = corpus.entryList(QDir::Files, QDir::Name);
    if (names.isEmpty())
        std::fprintf(stderr, "no files in %s\n", argv[1]);
    bool good = !names.isEmpty();
    for (const QString &name : names)
        good = replay(corpus.filePath(name)) && good;
    return good ? 0 : 1;
}
