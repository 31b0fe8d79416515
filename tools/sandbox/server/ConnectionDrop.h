#pragma once

// Ends a connection that the HTTP library owns, found by its two ports, without an answer: the
// "drop the connection" fault. The library closes the socket itself afterwards.
namespace ConnectionDrop {

// Shuts the connection between these two loopback ports down; false when none was found.
bool drop(int localPort, int remotePort);

} // namespace ConnectionDrop
