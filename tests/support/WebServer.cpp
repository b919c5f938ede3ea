#include "tests/support/WebServer.h"

#include <libsoup/soup.h>

#include <exception>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace velmora::test {

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using Ref = std::unique_ptr<T, Unref>;

/// Throws if a GLib call has left an error.
void Require(GError* error, const std::string& what)
{
    if (!error) return;
    const std::string message = what + ": " + error->message;
    g_error_free(error);
    throw std::runtime_error(message);
}

/// Writes a key and a certificate that it signs itself, key.pem and cert.pem, to a folder.
void WriteCertificate(const std::filesystem::path& folder)
{
    const std::string key = folder / "key.pem";
    const std::string certificate = folder / "cert.pem";
    const char* command[] = {"openssl",  "req",
                             "-x509",    "-newkey",
                             "rsa:2048", "-nodes",
                             "-keyout",  key.c_str(),
                             "-out",     certificate.c_str(),
                             "-days",    "2",
                             "-subj",    "/CN=127.0.0.1",
                             "-addext",  "subjectAltName=IP:127.0.0.1,DNS:localhost",
                             nullptr};
    const auto flags = GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    GError* error = nullptr;
    int status = 0;
    if (g_spawn_sync(nullptr, const_cast<char**>(command), nullptr, flags, nullptr, nullptr, nullptr, nullptr, &status,
                     &error)) {
        g_spawn_check_wait_status(status, &error);
    }
    Require(error, "openssl made no certificate");
}

Ref<GTlsCertificate> MakeCertificate()
{
    GError* error = nullptr;
    char* name = g_dir_make_tmp("velmora-server-XXXXXX", &error);
    Require(error, "no folder for a certificate");
    const std::filesystem::path folder = name;
    g_free(name);
    const std::shared_ptr<void> remove(nullptr, [&](void*) { std::filesystem::remove_all(folder); });
    WriteCertificate(folder);
    Ref<GTlsCertificate> certificate(
        g_tls_certificate_new_from_files((folder / "cert.pem").c_str(), (folder / "key.pem").c_str(), &error));
    Require(error, "the certificate cannot be read");
    return certificate;
}

/// The certificate of this test program; making one takes a moment, so all servers share it.
GTlsCertificate* Certificate()
{
    static const Ref<GTlsCertificate> certificate = MakeCertificate();
    return certificate.get();
}

Request ReadRequest(SoupServerMessage* message)
{
    Request request;
    request.Method = soup_server_message_get_method(message);
    GUri* uri = soup_server_message_get_uri(message);
    request.Path = g_uri_get_path(uri);
    if (const char* query = g_uri_get_query(uri)) request.Query = query;
    const auto append = [](const char* name, const char* value, gpointer text) {
        *static_cast<std::string*>(text) += std::string(name) + ": " + value + "\r\n";
    };
    soup_message_headers_foreach(soup_server_message_get_request_headers(message), append, &request.Headers);
    GBytes* body = soup_message_body_flatten(soup_server_message_get_request_body(message));
    gsize size = 0;
    const auto* bytes = static_cast<const char*>(g_bytes_get_data(body, &size));
    if (size) request.Body.assign(bytes, size);
    g_bytes_unref(body);
    return request;
}

void SendResponse(SoupServerMessage* message, const Response& response)
{
    soup_server_message_set_status(message, static_cast<guint>(response.Status), nullptr);
    SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
    for (const auto& [name, value] : response.Headers) {
        soup_message_headers_append(headers, name.c_str(), value.c_str());
    }
    soup_server_message_set_response(message, response.ContentType.c_str(), SOUP_MEMORY_COPY, response.Body.data(),
                                     response.Body.size());
}

}  // namespace

std::string Request::Header(const std::string& name) const
{
    std::size_t line = 0;
    for (std::size_t end; (end = Headers.find("\r\n", line)) != std::string::npos; line = end + 2) {
        const std::size_t colon = Headers.find(": ", line);
        if (g_ascii_strcasecmp(Headers.substr(line, colon - line).c_str(), name.c_str()) != 0) continue;
        return Headers.substr(colon + 2, end - colon - 2);
    }
    return {};
}

/// What outlives the server: the engine below it may finish a request after the server is gone.
struct WebServer::State {
    ~State()
    {
        for (const auto& [source, message] : delayed) {
            g_source_destroy(source);
            g_source_unref(source);
        }
    }

    void Answer(SoupServerMessage* message);
    void Delay(SoupServerMessage* message, int milliseconds);

    /// The state is handed to the engine in one of these, which knows whether the server still is.
    using Link = std::weak_ptr<State>;

    Ref<SoupServer> server;
    std::string scheme = "http";
    int port = 0;
    std::map<std::string, Handle> handlers;
    std::vector<Request> requests;
    std::map<GSource*, Ref<SoupServerMessage>> delayed;
};

void WebServer::State::Answer(SoupServerMessage* message)
{
    const Request request = ReadRequest(message);
    requests.push_back(request);
    const auto found = handlers.find(request.Path);
    Response response;
    if (found == handlers.end()) {
        response = {"No such page.", "text/plain", 404, {}, 0};
    } else {
        try {
            const Handle handle = found->second;
            response = handle(request);
        } catch (const std::exception& failure) {
            response = {failure.what(), "text/plain", 500, {}, 0};
        }
    }
    SendResponse(message, response);
    if (response.DelayMs > 0) Delay(message, response.DelayMs);
}

void WebServer::State::Delay(SoupServerMessage* message, int milliseconds)
{
    using Call = std::pair<State*, GSource*>;
    soup_server_message_pause(message);
    GSource* source = g_timeout_source_new(static_cast<guint>(milliseconds));
    const auto resume = [](gpointer data) -> gboolean {
        const auto [state, due] = *static_cast<Call*>(data);
        soup_server_message_unpause(state->delayed.at(due).get());
        state->delayed.erase(due);
        g_source_unref(due);
        return G_SOURCE_REMOVE;
    };
    g_source_set_callback(source, resume, new Call(this, source),
                          [](gpointer data) { delete static_cast<Call*>(data); });
    delayed.emplace(source, SOUP_SERVER_MESSAGE(g_object_ref(message)));
    g_source_attach(source, g_main_context_get_thread_default());
}

WebServer::WebServer(Scheme scheme) : state_(std::make_shared<State>())
{
    state_->server.reset(soup_server_new("server-header", "velmora-test", nullptr));
    auto options = SOUP_SERVER_LISTEN_IPV4_ONLY;
    if (scheme == Scheme::Https) {
        state_->scheme = "https";
        soup_server_set_tls_certificate(state_->server.get(), Certificate());
        options = SoupServerListenOptions(options | SOUP_SERVER_LISTEN_HTTPS);
    }
    const auto answer = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer link) {
        if (const auto state = static_cast<State::Link*>(link)->lock()) state->Answer(message);
    };
    soup_server_add_handler(state_->server.get(), nullptr, answer, new State::Link(state_),
                            [](gpointer link) { delete static_cast<State::Link*>(link); });
    GError* error = nullptr;
    soup_server_listen_local(state_->server.get(), 0, options, &error);
    Require(error, "the test server cannot listen");
    GSList* uris = soup_server_get_uris(state_->server.get());
    state_->port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
}

WebServer::~WebServer()
{
    soup_server_remove_handler(state_->server.get(), nullptr);
    soup_server_disconnect(state_->server.get());
}

void WebServer::Page(const std::string& path, std::string html, std::string contentType)
{
    Handler(path, [response = Response{std::move(html), std::move(contentType), 200, {}, 0}](const Request&) {
        return response;
    });
}

void WebServer::Handler(const std::string& path, Handle handle) { state_->handlers[path] = std::move(handle); }

std::string WebServer::Url(const std::string& path, const std::string& host) const
{
    return state_->scheme + "://" + host + ":" + std::to_string(state_->port) + path;
}

const std::vector<Request>& WebServer::Requests() const { return state_->requests; }

std::vector<Request> WebServer::RequestsTo(const std::string& path) const
{
    std::vector<Request> found;
    for (const Request& request : state_->requests) {
        if (request.Path == path) found.push_back(request);
    }
    return found;
}

void WebServer::ForgetRequests() { state_->requests.clear(); }

}  // namespace velmora::test
