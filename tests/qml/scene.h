#pragma once

#include "support/directorycatalogue.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>

namespace ts::pm::test {

/** An engine with one QML item in it, whose "provider" shows the catalogue of its source "local". */
class Scene
{
public:
    explicit Scene(const QByteArray &content)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick 2.15\nimport Tamsel.PackageManager 1.0\nItem {\n"
                          "property var provider: PackageProvider { LocalSource { id: local } }\n"
                              + content + "}",
                          QUrl());
        root.reset(component.create());
        if (!root)
            qFatal("%s", qPrintable(component.errorString()));
    }

    /** The value of a JavaScript expression in the scope of the item. */
    QVariant run(const QString &expression)
    {
        QQmlExpression script(qmlContext(root.data()), root.data(), expression);
        const QVariant value = script.evaluate();
        if (script.hasError())
            qFatal("%s", qPrintable(script.error().toString()));
        return value;
    }
    QString text(const QString &expression) { return run(expression).toString(); }

    void use(const DirectoryCatalogue &catalogue)
    {
        run(QStringLiteral("local.path = '%1'").arg(catalogue.path()));
    }

    QQmlEngine engine;
    QScopedPointer<QObject> root;
};

} // namespace ts::pm::test
