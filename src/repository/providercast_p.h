#pragma once

class QObject;

namespace ts::pm {

class IPackageProvider;

/**
 * The provider interface of \a object. Null without a word for null; null with a critical message in
 * "tamsel.packages" for an object that does not implement it.
 */
IPackageProvider *packageProviderCast(QObject *object);

} // namespace ts::pm
