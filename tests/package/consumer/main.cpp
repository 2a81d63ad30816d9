// Prints what an index holds of the local directory that is named on the command line: a line for each
// package with its type, its id and its title, and a line for each keyword.

#include <Tamsel/Locations>
#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/LocalPackageSource>
#include <TamselPackageManager/PackageIndex>
#include <TamselPackageManager/PackageNode>
#include <TamselPackageManager/PackageRepository>
#include <TamselUtil/WorkingDir>

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>
#include <QTimer>

namespace {

void print(const QSharedPointer<ts::pm::PackageIndex> &index)
{
    QTextStream out(stdout);
    for (const ts::pm::PackageNode *package :
         ts::pm::PackageIndex::selectPackages(index, QString(), {}, {})) {
        out << "package " << package->type() << ' ' << package->id() << ' '
            << package->readManifest(QStringLiteral("title")).toString() << '\n';
    }
    for (const ts::pm::KeywordNode *keyword : ts::pm::PackageIndex::selectKeywords(index, {}))
        out << "keyword " << keyword->id() << ' ' << keyword->displayString() << '\n';
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const ts::util::WorkingDir data;
    if (!data.isValid() || !ts::Locations::setDataLocation(QDir(data.path())))
        return 2;

    ts::pm::LocalPackageSource source(application.arguments().value(1));
    ts::pm::PackageRepository repository(ts::pm::PackageRepository::PersistOnRequest);
    QObject::connect(&repository, &ts::pm::PackageRepository::packageIndexChanged, &application, [&] {
        print(repository.packageIndex());
        QCoreApplication::quit();
    });
    QTimer::singleShot(30000, &application, [] { QCoreApplication::exit(3); });
    repository.addSource(&source);
    return QCoreApplication::exec();
}
