#pragma once

#include "tamseldatacore_export.h"

#include <QByteArray>
#include <QObject>

namespace ts::data {

class LinkedDocument;

/**
 * What the data core needs to know about one class of objects that documents can link to.
 *
 * Made by registerReferenceType() from a class with these static operations, where Object is the class of the
 * objects:
 *
 * - int typeId(): the number in the text form of a link; for ever the same
 * - QByteArray identifier(Object *): names the object among those of its type; not empty
 * - bool canReference(LinkedDocument *, const QByteArray &id): whether the document may have such a link
 * - void attachReference(LinkedDocument *, const QByteArray &id): new data of the document hold such a link
 * - void createReference(LinkedDocument *, Object *): such a link is entered into the document
 * - void deleteReference(LinkedDocument *, Object *): such a link is taken out of the document
 * - Object *getReference(const LinkedDocument *, const QByteArray &id): the object, or null
 * - bool isLegacyReference(): links of this type are still read, but no new ones are made
 */
struct ReferenceType
{
    int typeId;
    const QMetaObject *objectClass;
    bool isLegacy;
    QByteArray (*identifier)(QObject *object);
    bool (*canReference)(LinkedDocument *document, const QByteArray &id);
    void (*attachReference)(LinkedDocument *document, const QByteArray &id);
    void (*createReference)(LinkedDocument *document, QObject *object);
    void (*deleteReference)(LinkedDocument *document, QObject *object);
    QObject *(*getReference)(const LinkedDocument *document, const QByteArray &id);
};

/** Makes \a type known to all documents. It replaces one of the same number. Process-wide, for the thread
 * that documents live on. */
TAMSELDATACORE_EXPORT void registerReferenceType(const ReferenceType &type);

/** As above, for a class \a Type with the static operations that ReferenceType lists. */
template<typename Type, typename Object>
void registerReferenceType(QByteArray (*identifier)(Object *))
{
    Q_UNUSED(identifier) // there to deduce Object
    registerReferenceType({
        Type::typeId(),
        &Object::staticMetaObject,
        Type::isLegacyReference(),
        [](QObject *object) { return Type::identifier(static_cast<Object *>(object)); },
        &Type::canReference,
        &Type::attachReference,
        [](LinkedDocument *document, QObject *object) {
            Type::createReference(document, static_cast<Object *>(object));
        },
        [](LinkedDocument *document, QObject *object) {
            Type::deleteReference(document, static_cast<Object *>(object));
        },
        [](const LinkedDocument *document, const QByteArray &id) -> QObject * {
            return Type::getReference(document, id);
        },
    });
}

template<typename Type>
void registerReferenceType()
{
    registerReferenceType<Type>(&Type::identifier);
}

} // namespace ts::data
