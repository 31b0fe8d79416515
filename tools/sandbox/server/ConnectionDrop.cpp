#include "sandbox/server/ConnectionDrop.h"

#include <QDir>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {
int portOf(const sockaddr_storage& address) {
    return address.ss_family == AF_INET ? ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port) : -1;
}
} // namespace

namespace ConnectionDrop {

bool drop(int localPort, int remotePort) {
    // The library does not hand the socket to request handlers, so it is looked up among the
    // process's open descriptors by the ports of the request.
    const QStringList descriptors = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System);
    for (const QString& name : descriptors) {
        bool ok = false;
        const int descriptor = name.toInt(&ok);
        sockaddr_storage local{};
        sockaddr_storage remote{};
        socklen_t localLength = sizeof local;
        socklen_t remoteLength = sizeof remote;
        if (ok && getsockname(descriptor, reinterpret_cast<sockaddr*>(&local), &localLength) == 0 &&
            getpeername(descriptor, reinterpret_cast<sockaddr*>(&remote), &remoteLength) == 0 &&
            portOf(local) == localPort && portOf(remote) == remotePort) {
            return shutdown(descriptor, SHUT_RDWR) == 0;
        }
    }
    return false;
}

} // namespace ConnectionDrop
