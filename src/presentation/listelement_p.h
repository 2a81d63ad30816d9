#pragma once

#include <QQmlInfo>
#include <QQmlListProperty>

namespace ts::pm {

/**
 * Whether \a element may be appended to \a list: QML's push() passes objects of any class as one of \a Type.
 * Warns of one that is none; null may be appended.
 */
template<typename Type>
bool belongsIn(const QQmlListProperty<Type> *list, QObject *element)
{
    if (!element || qobject_cast<Type *>(element))
        return true;
    qmlWarning(list->object) << element->metaObject()->className() << " is no "
                             << Type::staticMetaObject.className();
    return false;
}

} // namespace ts::pm
