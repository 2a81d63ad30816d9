#include "stage.h"

#include <QMetaMethod>
#include <QRegularExpression>

#include <algorithm>

namespace ts::pm::test {

QString perform(const QString &play, const Verbs &verbs, const std::function<QString()> &effects)
{
    QStringList performed = QString(play).remove(QRegularExpression(R"(\[[^]]*\])"_s)).split(" "_s);
    for (QString &word : performed) {
        const QString verb = word.section(":"_s, 0, 0);
        if (!verbs.contains(verb))
            qFatal("Nobody can perform \"%s\"", qPrintable(word));
        verbs.value(verb)(word.section(":"_s, 1));
        const QString came = effects();
        if (!came.isEmpty())
            word += "[%1]"_s.arg(came);
    }
    return performed.join(" "_s);
}

Stage::Stage()
{
    source.installers = [this](const QString &id, const InstallLocation &location) {
        auto *installer = new ManualInstaller(location);
        started.append(installer);
        if (failAtOnce.contains(id))
            installer->fail();
        else if (succeedAtOnce.contains(id))
            installer->succeed();
        return installer;
    };
    repository()->addSource(&source);
}

SignalLog::SignalLog(QObject *object, const QMetaObject &base)
{
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("note()"));
    for (int i = base.methodCount(); i < object->metaObject()->methodCount(); ++i) {
        if (object->metaObject()->method(i).methodType() == QMetaMethod::Signal)
            connect(object, object->metaObject()->method(i), this, slot);
    }
}

void SignalLog::note()
{
    const QString name = QString::fromLatin1(sender()->metaObject()->method(senderSignalIndex()).name());
    lines.append(detail ? name + " "_s + detail() : name);
    if (const auto deed = deeds.take(name))
        deed();
}

ModelLog::ModelLog(QAbstractListModel *model)
    : SignalLog(model, QAbstractListModel::staticMetaObject)
    , model(model)
    , tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal)
{
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this, model] {
        if (model->rowCount() != mirror.size())
            lines.append("too early"_s);
    });
    connect(model, &QAbstractItemModel::modelReset, this, [this, model] {
        mirror = read(0, model->rowCount() - 1);
        lines.append("reset"_s);
    });
    connect(model, &QAbstractItemModel::rowsRemoved, this, [this](const QModelIndex &, int first, int last) {
        mirror = mirror.mid(0, first) + mirror.mid(last + 1);
        lines.append("remove %1-%2"_s.arg(first).arg(last));
    });
    connect(model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
        mirror = mirror.mid(0, first) + read(first, last) + mirror.mid(first);
        lines.append("insert %1-%2"_s.arg(first).arg(last));
    });
    connect(model, &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex &, int from, int, const QModelIndex &, int before) {
                const int to = before > from ? before - 1 : before;
                mirror.move(from, to);
                lines.append("move %1 to %2"_s.arg(from).arg(to));
            });
}

QString ModelLog::rows() const
{
    const QString told = mirror.join(separator);
    const QString actual = read(0, model->rowCount() - 1).join(separator);
    return actual == told ? told : "told: %1; has: %2"_s.arg(told, actual);
}

QString ModelLog::takeWithRows()
{
    const QString told = take();
    const bool isNew = rows() != std::exchange(rowsBefore, rows());
    return isNew ? told + "; "_s + (rowsBefore.isEmpty() ? "none"_s : rowsBefore) : told;
}

QStringList ModelLog::read(int first, int last) const
{
    QList<int> roles = model->roleNames().keys();
    std::sort(roles.begin(), roles.end());
    QStringList rows;
    for (int row = first; row <= last; ++row) {
        QStringList values;
        for (const int role : qAsConst(roles))
            values.append(model->index(row).data(role).toString());
        rows.append(values.join("/"_s));
    }
    return rows;
}

} // namespace ts::pm::test
