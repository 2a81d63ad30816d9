#pragma once

#include <QtGlobal>

class QFile;
class QTcpSocket;

namespace ts::pm {

/**
 * Hands data to the system for sending, past the buffer of the socket, where the system allows it; elsewhere
 * through that buffer, which then holds one chunk at most.
 *
 * Both return the number of bytes that were taken: 0 if there is no room at present, a negative number if the
 * connection is broken or the file cannot be read. The socket is connected, and nothing else writes to it.
 */
qint64 sendBytes(QTcpSocket *socket, const char *bytes, qint64 size, bool moreFollows);

/** Sends up to \a size bytes of an open file from \a offset on. A file that is too short is an error. */
qint64 sendFromFile(QTcpSocket *socket, QFile *file, qint64 offset, qint64 size);

/** Whether room shows by the system's notice for the descriptor, and not by the socket's bytesWritten(). */
bool sendsPastSocketBuffer();

} // namespace ts::pm
