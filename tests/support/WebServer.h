// A web server for tests, on this machine alone. It answers as a proxy, too, for its own pages. It runs in
// the main context of the thread that made it and answers while that context runs; nothing here waits.
// Every request is kept, in the order in which the requests came.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmora::test {

struct Request {
    std::string Method;
    std::string Path;   ///< As sent, escapes included, without the query.
    std::string Query;  ///< As sent, without the "?"; empty if there is none.
    std::string ContentType;
    std::string Body;     ///< The bytes of the body.
    bool IsPage = false;  ///< Asked for as a page, not by a script or as a part of a page.
    bool IsFile = false;  ///< Answered with a file of the server's folder.
};

struct Response {
    std::string Body = {};
    std::string ContentType = "text/html; charset=utf-8";
    int Status = 200;
    std::vector<std::pair<std::string, std::string>> Headers = {};
    bool Hangs = false;  ///< The answer goes out with Release, or never; of a raw one, its end.
    bool IsRaw = false;  ///< The body is all that goes out, head included.
};

class WebServer {
public:
    enum class Scheme { Http, Https };

    /// Listens on a free port. With Https the certificate is self-signed, so that nobody trusts it.
    /// Throws std::runtime_error if it cannot be had. A second server is a second origin.
    explicit WebServer(Scheme scheme = Scheme::Http);
    /// Requests under way are answered with 404 or not at all.
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    /// What a path answers, to every method, in place of before. Without it a path gives 404.
    void Answer(const std::string& path, Response response);
    void Page(const std::string& path, std::string html, std::string contentType = "text/html; charset=utf-8");
    /// Gives the files of a folder under their paths, to whoever gets them as they are. All else that has no
    /// answer of its own has arrived, on whatever host: a page or an empty object says so.
    void Serve(const std::filesystem::path& folder);
    /// Lets the answers go out that hang.
    void Release();

    int Port() const;
    /// The whole address of a path. "localhost" as the host gives the same page on another site.
    std::string Url(const std::string& path, const std::string& host = "127.0.0.1") const;

    const std::vector<Request>& Requests() const;
    /// The bodies of the requests to a path.
    std::vector<std::string> Bodies(const std::string& path) const;
    void ForgetRequests();

private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace velmora::test
