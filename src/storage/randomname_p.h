#pragma once

#include <QString>

namespace ts::pm {

/** A random name of 11 characters, safe in paths and URLs: the base64 form of 8 random bytes. Any thread. */
QString randomName();

} // namespace ts::pm
