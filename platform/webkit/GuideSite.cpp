#include "platform/webkit/GuideSite.h"

#include <optional>
#include <string_view>

#include "guide_pages.h"

namespace velmora {

namespace {

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
    const std::string spaced = Replaced(std::string(escaped), "+", " ");
    std::string bytes;
    for (std::size_t i = 0; i < spaced.size(); ++i) {
        if (spaced[i] == '%' && i + 2 < spaced.size() && g_ascii_isxdigit(spaced[i + 1]) &&
            g_ascii_isxdigit(spaced[i + 2])) {
            bytes += static_cast<char>(g_ascii_xdigit_value(spaced[i + 1]) * 16 + g_ascii_xdigit_value(spaced[i + 2]));
            i += 2;
        } else {
            bytes += spaced[i];
        }
    }
    char* valid = g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size()));
    std::string text = valid;
    g_free(valid);
    return text;
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

std::string BodyOf(WebKitURISchemeRequest* request)
{
    GInputStream* stream = webkit_uri_scheme_request_get_http_body(request);
    if (!stream) return {};
    std::string body;
    char piece[4096];
    for (gssize got; (got = g_input_stream_read(stream, piece, sizeof piece, nullptr, nullptr)) > 0;) {
        body.append(piece, static_cast<std::size_t>(got));
    }
    g_object_unref(stream);
    return body;
}

struct Page {
    std::string text;
    const char* type;
};

/// The page of a path of the site; nothing if there is none.
std::optional<Page> PageOf(std::string path, const std::string& method, const std::string& sent)
{
    if (path.empty() || path == "/") path = "/index";
    if (path == "/style.css") return Page{std::string(guide_pages::Find("style.css")), "text/css; charset=utf-8"};
    constexpr const char* kHtml = "text/html; charset=utf-8";
    if (path == "/answer" || path == "/result") {
        std::string page(guide_pages::Find("answer.html"));
        page = Replaced(std::move(page), "<!--METHOD-->", Escaped(method));
        return Page{Replaced(std::move(page), "<!--ANSWER-->", AnswerRows(sent)), kHtml};
    }
    for (const char* name : {"index", "practice", "search"}) {
        if (path == std::string("/") + name)
            return Page{std::string(guide_pages::Find(name + std::string(".html"))), kHtml};
    }
    return std::nullopt;
}

void Serve(WebKitURISchemeRequest* request, gpointer)
{
    const std::string uri = webkit_uri_scheme_request_get_uri(request);
    const char* path = webkit_uri_scheme_request_get_path(request);
    const char* method = webkit_uri_scheme_request_get_http_method(request);
    const std::size_t mark = uri.find('?');
    std::string sent = BodyOf(request);
    if (sent.empty() && mark != std::string::npos) sent = uri.substr(mark + 1, uri.find('#', mark) - mark - 1);

    const auto page = PageOf(path ? path : "", method ? method : "GET", sent);
    const Page shown =
        page.value_or(Page{FailurePage(uri, "There is no such page in the guide."), "text/html; charset=utf-8"});
    GInputStream* stream = g_memory_input_stream_new_from_data(g_memdup2(shown.text.data(), shown.text.size()),
                                                               static_cast<gssize>(shown.text.size()), g_free);
    WebKitURISchemeResponse* response = webkit_uri_scheme_response_new(stream, static_cast<gint64>(shown.text.size()));
    webkit_uri_scheme_response_set_content_type(response, shown.type);
    webkit_uri_scheme_response_set_status(response, page ? 200 : 404, nullptr);
    webkit_uri_scheme_request_finish_with_response(request, response);
    g_object_unref(response);
    g_object_unref(stream);
}

}  // namespace

void ServeGuide(WebKitWebContext* context)
{
    webkit_web_context_register_uri_scheme(context, "velmora", Serve, nullptr, nullptr);
}

std::string FailurePage(const std::string& address, const std::string& reason)
{
    std::string page(guide_pages::Find("error.html"));
    page = Replaced(std::move(page), "<!--ADDRESS-->", Escaped(address));
    return Replaced(std::move(page), "<!--REASON-->", Escaped(reason));
}

}  // namespace velmora
