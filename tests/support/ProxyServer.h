// A proxy server for tests, on raw sockets: it answers every request with the same bytes and goes
// nowhere, so that a page of a host that does not exist can only have come from it. It also stands in
// for a web server that breaks off or never comes to its end.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace velmora::test {

class ProxyServer {
public:
    /// Listens on a free port of this machine. Throws std::runtime_error if there is none.
    ProxyServer();
    ~ProxyServer();
    ProxyServer(const ProxyServer&) = delete;
    ProxyServer& operator=(const ProxyServer&) = delete;

    int Port() const;
    /// What requests are answered with from now on: head and body, to the byte. Then the connection is
    /// closed; with `staysOpen` it is left to the other end.
    void Answer(std::string bytes, bool staysOpen = false);
    /// The first lines of all requests so far, "GET http://host/ HTTP/1.1".
    std::vector<std::string> Requests() const;

private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace velmora::test
