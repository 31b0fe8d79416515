#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>

namespace httplib {
class Server;
}
class SandboxService;

// The HTTP side of the sandbox, on cpp-httplib: listens on 127.0.0.1 only, turns each request into
// a ServiceRequest for the service (streaming the bodies it asks for) and writes its answer back.
class SandboxServer {
public:
    SandboxServer();
    ~SandboxServer();
    SandboxServer(const SandboxServer&) = delete;
    SandboxServer& operator=(const SandboxServer&) = delete;

    // Binds 127.0.0.1 at `port`, a free port for 0; the bound port, or -1.
    int bind(int port);
    // Serves requests until stop(); the service must outlive the call.
    void run(SandboxService& service);
    // Safe from any thread, before, during or after run(); when it returns, run() has ended or
    // will not serve.
    void stop();

private:
    enum class State { Idle, Running, Finished };

    std::unique_ptr<httplib::Server> m_server;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state = State::Idle;
    bool m_stopRequested = false;
};
