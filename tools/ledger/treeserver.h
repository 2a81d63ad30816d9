#pragma once

#include "ledger/servertree.h"

#include <QScopedPointer>

#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace ts::ledger {

/**
 * Serves a published directory to this machine, with entity tags, as a web server would. For trying things
 * out: no encryption, no logins, nobody else can reach it.
 *
 * Threads: all calls on one; clients are answered on threads of its own, from start() to stop().
 */
class TreeServer
{
public:
    explicit TreeServer(const ServerTree &tree);
    ~TreeServer();

    /** Prints a line for each request from now on. To be called before start(). */
    void logRequests();

    /** Listens on the loopback interface, on any free port if \a port is 0. The port, or -1. */
    int start(int port);

    /** Lets requests that are under way end. */
    void stop();

private:
    void answerLedger(const httplib::Request &request, httplib::Response &response) const;
    void answerFile(const httplib::Request &request, httplib::Response &response) const;

    const ServerTree tree;
    const QScopedPointer<httplib::Server> server;
    std::thread listener;
};

} // namespace ts::ledger
