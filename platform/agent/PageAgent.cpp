// The page agent: loaded into each web process, it runs the agent's script in every document, tells
// the program what happens there and answers what the program asks of a document.

#include <gio/gunixfdlist.h>
#include <webkit/webkit-web-process-extension.h>

#include <memory>
#include <string>

#include "platform/agent/AgentChannel.h"
#include "platform/agent/FrameScripts.h"
#include "platform/glib/Callbacks.h"
#include "platform/wire/Wire.h"

namespace velmora {
namespace {

/// The agent of one page. It lives as long as the page.
class PageAgent {
public:
    explicit PageAgent(WebKitWebPage* page)
        : page_(page), number_(NewNumber()),
          scripts_([this](const std::string& kind, const std::string& packed) { Tell(kind, packed); },
                   [this](bool isFirst) { return channel_ && channel_->ServeInPage(isFirst); })
    {
        callbacks_.Connect(page, "user-message-received", [this](WebKitWebPage*, WebKitUserMessage* message) {
            Take(message);
            return true;
        });
        callbacks_.Connect(page, "send-request",
                           [this](WebKitWebPage*, WebKitURIRequest* request, WebKitURIResponse* redirect) {
                               if (!redirect) NoteRequest(request);
                           });
    }

    void BeginDocument(WebKitFrame* frame, WebKitScriptWorld* world)
    {
        // The engine hands a page to its process before the program knows of the process, so the
        // program cannot give the agent anything; the agent asks, as soon as there is a document.
        if (!channel_) AskForChannel();
        if (webkit_frame_is_main_frame(frame)) mainFrame_ = webkit_frame_get_id(frame);
        const auto context = Owned(webkit_frame_get_js_context_for_script_world(frame, world));
        const auto page = Owned(webkit_frame_get_js_context(frame));
        scripts_.Begin(context.get(), page.get(), webkit_frame_get_id(frame));
    }

private:
    void Take(WebKitUserMessage* message)
    {
        if (std::string(webkit_user_message_get_name(message)) != wire::kMoved) return;
        try {
            scripts_.Moved(mainFrame_);
        } catch (const ScriptError&) {
            // A page without a document yet: it will be told when it has finished.
        }
    }

    /// The page is about to make a request.
    void NoteRequest(WebKitURIRequest* request)
    {
        if (!scripts_.WatchesRequests()) return;
        const auto text = [](const char* value) { return std::string(value ? value : ""); };
        SoupMessageHeaders* headers = webkit_uri_request_get_http_headers(request);
        const auto header = [&](const char* name) {
            return text(headers ? soup_message_headers_get_one(headers, name) : nullptr);
        };
        // A site without encryption is told no mode; but a page is asked for in words of its own.
        std::string mode = header("Sec-Fetch-Mode");
        if (mode.empty() && header("Accept").starts_with("text/html")) mode = "navigate";
        const std::string packed = wire::Pack(
            {text(webkit_uri_request_get_http_method(request)), text(webkit_uri_request_get_uri(request)), mode});
        // Not in the middle of the page's own work on it.
        Later([this, packed] { scripts_.Requested(packed); });
    }

    void Tell(const std::string& kind, const std::string& packed)
    {
        if (packed.size() > wire::kLongestEvent) return;
        WebKitUserMessage* message = NewMessage(wire::kEventPrefix + kind, packed);
        webkit_web_page_send_message_to_view(page_, message, nullptr, nullptr, nullptr);
    }

    WebKitUserMessage* NewMessage(const std::string& name, const std::string& packed) const
    {
        const std::string text = std::to_string(number_) + '\n' + packed;
        return webkit_user_message_new(name.c_str(), g_variant_new_string(text.c_str()));
    }

    void AskForChannel()
    {
        if (asked_) return;
        asked_ = true;
        // The page, and with it this, lives until the answer is there.
        webkit_web_page_send_message_to_view(page_, NewMessage(wire::kHello, "0\n0"), nullptr, OnHelloAnswered, this);
    }

    static void OnHelloAnswered(GObject* source, GAsyncResult* result, gpointer data)
    {
        const auto reply = Owned(webkit_web_page_send_message_to_view_finish(WEBKIT_WEB_PAGE(source), result, nullptr));
        static_cast<PageAgent*>(data)->TakeChannel(reply.get());
    }

    void TakeChannel(WebKitUserMessage* reply)
    {
        asked_ = false;
        GUnixFDList* descriptors = reply ? webkit_user_message_get_fd_list(reply) : nullptr;
        if (!descriptors || g_unix_fd_list_get_length(descriptors) != 1) return;
        const int descriptor = g_unix_fd_list_get(descriptors, 0, nullptr);
        if (descriptor < 0) return;
        channel_ = std::make_unique<AgentChannel>(
            descriptor, [this](const auto& header, const auto* body) { return Serve(header, body); },
            [this](const auto& header) { return scripts_.Revision(header.document); },
            [this] {
                // The program gave up waiting once: a new channel has no late answers in it. What was held for the
                // program is not to be held until it asks anew, which may be never.
                channel_.reset();
                scripts_.Rest();
                AskForChannel();
            });
    }

    std::optional<AgentChannel::Answer> Serve(const wire::RequestHeader& request, const std::string* body)
    {
        try {
            const auto text = body ? Answer(request, *body) : scripts_.GoOn(request.document);
            if (!text) return std::nullopt;
            return AgentChannel::Answer{.outcome = wire::kServed, .body = *text};
        } catch (const ScriptError& error) {
            return AgentChannel::Answer{.outcome = wire::kRefused, .body = error.what()};
        }
    }

    std::optional<std::string> Answer(const wire::RequestHeader& request, const std::string& body)
    {
        const wire::DocumentName& name = request.document;
        switch (request.operation) {
        case wire::kRead: return scripts_.Read(name, body);
        case wire::kWrite: scripts_.HoldQuestions(); return scripts_.Write(name, body);
        case wire::kClick: ClickLater(name, body); return "";
        case wire::kDone: scripts_.Rest(); return "";
        default: throw ScriptError("no such operation");
        }
    }

    // A click may open a question of the page's own ("Really send?"), which the user is to see when the
    // program is not waiting for an answer.
    void ClickLater(const wire::DocumentName& name, const std::string& handle)
    {
        Later([this, name, handle] {
            try {
                scripts_.ReleaseQuestions();
                scripts_.Click(name, handle);
            } catch (const ScriptError&) {
                // The element went between the request and the click: nothing is left to click.
            }
        });
    }

    /// Before what the engine has to do for the page.
    void Later(Callbacks::Action action) { callbacks_.Later(std::move(action), G_PRIORITY_HIGH); }

    WebKitWebPage* page_;
    const std::uint64_t number_;
    std::uint64_t mainFrame_ = 0;
    FrameScripts scripts_;
    std::unique_ptr<AgentChannel> channel_;
    bool asked_ = false;
    Callbacks callbacks_;
};

constexpr char kAgentKey[] = "velmora-agent";

void OnPageCreated(WebKitWebProcessExtension*, WebKitWebPage* page)
{
    g_object_set_data_full(G_OBJECT(page), kAgentKey, new PageAgent(page),
                           [](gpointer data) { delete static_cast<PageAgent*>(data); });
}

void OnWindowObjectCleared(WebKitScriptWorld* world, WebKitWebPage* page, WebKitFrame* frame)
{
    auto* agent = static_cast<PageAgent*>(g_object_get_data(G_OBJECT(page), kAgentKey));
    if (agent) agent->BeginDocument(frame, world);
}

}  // namespace
}  // namespace velmora

extern "C" G_MODULE_EXPORT void webkit_web_process_extension_initialize(WebKitWebProcessExtension* extension)
{
    // Lives as long as the process.
    WebKitScriptWorld* world = webkit_script_world_new_with_name("velmora");
    velmora::Connect(world, "window-object-cleared", velmora::OnWindowObjectCleared);
    velmora::Connect(extension, "page-created", velmora::OnPageCreated);
}
