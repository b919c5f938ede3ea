#include "tests/support/ProxyServer.h"

#include <gio/gio.h>

#include <mutex>
#include <stdexcept>

namespace velmora::test {

/// Shared with the threads that answer, one for each connection.
struct ProxyServer::State {
    ~State()
    {
        g_object_unref(service);
        g_object_unref(ended);
    }
    void Serve(GSocketConnection* connection);
    std::string ReadHead(GInputStream* input) const;

    GSocketService* service = g_threaded_socket_service_new(8);
    GCancellable* ended = g_cancellable_new();
    int port = 0;
    mutable std::mutex mutex;
    std::string answer;
    bool staysOpen = false;
    std::vector<std::string> requests;
};

std::string ProxyServer::State::ReadHead(GInputStream* input) const
{
    std::string head;
    char c = 0;
    while (head.find("\r\n\r\n") == std::string::npos && g_input_stream_read(input, &c, 1, ended, nullptr) == 1)
        head += c;
    return head;
}

void ProxyServer::State::Serve(GSocketConnection* connection)
{
    GInputStream* input = g_io_stream_get_input_stream(G_IO_STREAM(connection));
    const std::string head = ReadHead(input);
    if (head.empty()) return;
    std::string bytes;
    bool stays = false;
    {
        const std::lock_guard lock(mutex);
        requests.push_back(head.substr(0, head.find("\r\n")));
        bytes = answer;
        stays = staysOpen;
    }
    GOutputStream* output = g_io_stream_get_output_stream(G_IO_STREAM(connection));
    g_output_stream_write_all(output, bytes.data(), bytes.size(), nullptr, ended, nullptr);
    char rest = 0;
    if (stays) g_input_stream_read(input, &rest, 1, ended, nullptr);
    g_io_stream_close(G_IO_STREAM(connection), nullptr, nullptr);
}

ProxyServer::ProxyServer() : state_(std::make_shared<State>())
{
    using Link = std::weak_ptr<State>;
    const auto run = +[](GThreadedSocketService*, GSocketConnection* connection, GObject*, gpointer link) -> gboolean {
        if (const auto state = static_cast<Link*>(link)->lock()) state->Serve(connection);
        return TRUE;
    };
    g_signal_connect_data(
        state_->service, "run", G_CALLBACK(run), new Link(state_),
        [](gpointer link, GClosure*) { delete static_cast<Link*>(link); }, GConnectFlags(0));
    GInetAddress* loopback = g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4);
    GSocketAddress* wanted = g_inet_socket_address_new(loopback, 0);
    GSocketAddress* got = nullptr;
    g_socket_listener_add_address(G_SOCKET_LISTENER(state_->service), wanted, G_SOCKET_TYPE_STREAM,
                                  G_SOCKET_PROTOCOL_TCP, nullptr, &got, nullptr);
    g_object_unref(wanted);
    g_object_unref(loopback);
    if (!got) throw std::runtime_error("the test's proxy cannot listen");
    state_->port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(got));
    g_object_unref(got);
}

ProxyServer::~ProxyServer()
{
    g_cancellable_cancel(state_->ended);
    g_socket_service_stop(state_->service);
    g_socket_listener_close(G_SOCKET_LISTENER(state_->service));
}

int ProxyServer::Port() const { return state_->port; }

void ProxyServer::Answer(std::string bytes, bool staysOpen)
{
    const std::lock_guard lock(state_->mutex);
    state_->answer = std::move(bytes);
    state_->staysOpen = staysOpen;
}

std::vector<std::string> ProxyServer::Requests() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->requests;
}

}  // namespace velmora::test
