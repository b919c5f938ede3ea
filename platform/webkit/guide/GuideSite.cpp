#include "platform/webkit/guide/GuideSite.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>

#include "guide_pages.h"
#include "guide_parts.h"
#include "platform/glib/Handle.h"

namespace velmora {

namespace {

// More than the practice forms can send, and little enough to read and show at once.
constexpr std::size_t kMostBytes = 64 * 1024;
constexpr std::ptrdiff_t kMostPairs = 200;

std::string Escaped(std::string_view text)
{
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '&': html += "&amp;"; break;
        case '<': html += "&lt;"; break;
        case '>': html += "&gt;"; break;
        case '"': html += "&quot;"; break;
        default: html += c;
        }
    }
    return html;
}

std::string Replaced(std::string text, std::string_view marker, const std::string& by)
{
    for (std::size_t place = text.find(marker); place != std::string::npos;
         place = text.find(marker, place + by.size())) {
        text.replace(place, marker.size(), by);
    }
    return text;
}

/// The text of an escaped name or value of a form; what is not UTF-8 is shown as far as it is.
std::string Decoded(std::string_view escaped)
{
    std::string bytes;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] == '%' && i + 2 < escaped.size() && g_ascii_isxdigit(escaped[i + 1]) &&
            g_ascii_isxdigit(escaped[i + 2])) {
            bytes +=
                static_cast<char>(g_ascii_xdigit_value(escaped[i + 1]) * 16 + g_ascii_xdigit_value(escaped[i + 2]));
            i += 2;
        } else {
            bytes += escaped[i] == '+' ? ' ' : escaped[i];
        }
    }
    return OwnedText(g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size())));
}

/// A table row for each name=value pair.
std::string AnswerRows(std::string_view sent)
{
    std::string rows;
    while (!sent.empty()) {
        const std::size_t end = sent.find('&');
        const std::string_view pair = sent.substr(0, end);
        sent.remove_prefix(end == std::string_view::npos ? sent.size() : end + 1);
        const std::size_t equals = pair.find('=');
        if (equals == std::string_view::npos) continue;
        rows += "<tr><th scope=\"row\">" + Escaped(Decoded(pair.substr(0, equals))) + "</th><td>" +
                Escaped(Decoded(pair.substr(equals + 1))) + "</td></tr>\n";
    }
    return rows;
}

constexpr char kHtml[] = "text/html; charset=utf-8";

struct Page {
    std::string text;
    const char* type = kHtml;
    guint status = 200;
};

/// The page with the links to all others; on its own link it says so. Inside frames there are none.
std::string WithNavigation(std::string_view page, const std::string& path)
{
    const bool isInFrame = path.starts_with("/frame-");
    const std::string link = "href=\"" + (path == "/index" ? "velmora://guide/" : path.substr(1)) + "\"";
    const std::string links(isInFrame ? "" : guide_parts::Find("nav.html"));
    return Replaced(std::string(page), "<!--NAVIGATION-->", Replaced(links, link, link + " aria-current=\"page\""));
}

Page AnswerPage(const std::string& path, const std::string& method, std::string_view sent)
{
    if (sent.size() > kMostBytes || std::count(sent.begin(), sent.end(), '&') >= kMostPairs)
        return {.text = WithNavigation(guide_parts::Find("toolong.html"), path), .status = 413};
    std::string page = WithNavigation(guide_parts::Find("answer.html"), path);
    page = Replaced(std::move(page), "<!--METHOD-->", Escaped(method));
    return {.text = Replaced(std::move(page), "<!--ANSWER-->", AnswerRows(sent))};
}

/// The path within the site; nothing for an address of another host, which is no page of the site.
std::optional<std::string> PathIn(std::string_view address)
{
    constexpr std::string_view kSite = "velmora://guide";
    if (!address.starts_with(kSite)) return std::nullopt;
    const std::string_view rest = address.substr(kSite.size());
    const std::string path(rest.substr(0, rest.find_first_of("?#")));
    if (!path.empty() && path[0] != '/') return std::nullopt;
    return path.size() <= 1 ? "/index" : path;
}

Page PageOf(const std::string& address, const std::string& method, const std::string& sent)
{
    const std::string path = PathIn(address).value_or("");
    if (path == "/style.css")
        return {.text = std::string(guide_parts::Find("style.css")), .type = "text/css; charset=utf-8"};
    // Each practice form goes to a file of its own: forms of several pages that go to one are not told apart.
    if (path.ends_with("answer") || path == "/result") return AnswerPage(path, method, sent);
    const std::string_view page = path.empty() ? "" : guide_pages::Find(path.substr(1) + ".html");
    if (!page.empty()) return {.text = WithNavigation(page, path)};
    return {.text = FailurePage(address, "There is no such page in the guide."), .status = 404};
}

void Finish(WebKitURISchemeRequest* request, const std::string& sent)
{
    const char* method = webkit_uri_scheme_request_get_http_method(request);
    const Page page = PageOf(webkit_uri_scheme_request_get_uri(request), method ? method : "GET", sent);
    const auto size = static_cast<gssize>(page.text.size());
    const auto stream =
        Owned(g_memory_input_stream_new_from_data(g_memdup2(page.text.data(), page.text.size()), size, g_free));
    const auto response = Owned(webkit_uri_scheme_response_new(stream.get(), size));
    webkit_uri_scheme_response_set_content_type(response.get(), page.type);
    webkit_uri_scheme_response_set_status(response.get(), page.status, nullptr);
    webkit_uri_scheme_request_finish_with_response(request, response.get());
}

/// A form's body on its way from the engine. One byte more than the guide reads tells that it is too
/// long; whatever comes after that is left unread.
struct Body {
    std::shared_ptr<WebKitURISchemeRequest> request;
    std::array<char, kMostBytes + 1> bytes;
};

void OnRead(GObject* stream, GAsyncResult* result, gpointer data)
{
    const std::unique_ptr<Body> body(static_cast<Body*>(data));
    gsize count = 0;
    g_input_stream_read_all_finish(G_INPUT_STREAM(stream), result, &count, nullptr);
    Finish(body->request.get(), std::string(body->bytes.data(), count));
}

void Serve(WebKitURISchemeRequest* request, gpointer)
{
    if (const auto stream = Owned(webkit_uri_scheme_request_get_http_body(request))) {
        auto* body = new Body{Held(request), {}};
        g_input_stream_read_all_async(stream.get(), body->bytes.data(), body->bytes.size(), G_PRIORITY_DEFAULT, nullptr,
                                      OnRead, body);
        return;
    }
    const std::string address = webkit_uri_scheme_request_get_uri(request);
    const std::size_t mark = address.find('?');
    if (mark == std::string::npos) return Finish(request, {});
    Finish(request, address.substr(mark + 1, address.find('#', mark) - mark - 1));
}

}  // namespace

void ServeGuide(WebKitWebContext* context)
{
    webkit_web_context_register_uri_scheme(context, "velmora", Serve, nullptr, nullptr);
    // The pages of other sites may neither frame the guide nor go, post or reach into it in another way.
    webkit_security_manager_register_uri_scheme_as_display_isolated(webkit_web_context_get_security_manager(context),
                                                                    "velmora");
}

std::string FailurePage(const std::string& address, const std::string& reason)
{
    std::string page(guide_parts::Find("error.html"));
    page = Replaced(std::move(page), "<!--ADDRESS-->", Escaped(address));
    return Replaced(std::move(page), "<!--REASON-->", Escaped(reason));
}

}  // namespace velmora
