// The agent's script in each frame of a page.
#pragma once

#include <webkit/webkit-web-process-extension.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora {

class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs the agent's script in each new document of a page and calls into it. Frames that are gone,
/// and exceptions in the script, throw ScriptError.
class FrameScripts {
public:
    /// Sends an event of the script: its kind, the packed text.
    using Tell = std::function<void(const std::string& kind, const std::string& packed)>;

    /// Serves what the program asks of a document that has just finished; see AgentChannel.
    using ServeInPage = std::function<bool()>;

    FrameScripts(Tell tell, ServeInPage serve) : tell_(std::move(tell)), serve_(std::move(serve)) {}

    /// Starts the script in a document that has just begun. `page` is the context of the page's own
    /// scripts in the same frame.
    void Begin(JSCContext* context, JSCContext* page, std::uint64_t frame);

    /// The script's answer to a packed request, also packed.
    std::string Ask(std::uint64_t frame, const std::string& request);
    /// The markup inside the document element.
    std::string Markup(std::uint64_t frame);
    void Click(std::uint64_t frame, const std::string& handle);
    /// Keeps the questions of a frame's page (alert and the like) until ReleaseQuestions: a write into
    /// the page would wait for their answers, and the program for the write.
    void HoldQuestions(std::uint64_t frame);
    void ReleaseQuestions();
    /// Nothing more is asked of any frame for now.
    void Rest();
    /// The address of the frame's document may have changed within the document.
    void Moved(std::uint64_t frame);
    /// How often the structure of the frame's forms has changed; 0 for a frame that is gone.
    std::uint64_t Revision(std::uint64_t frame);

private:
    struct Unref {
        void operator()(void* object) const { g_object_unref(object); }
    };
    using Value = std::unique_ptr<JSCValue, Unref>;
    using WeakValue = std::unique_ptr<JSCWeakValue, Unref>;

    /// What the script keeps for a frame. The references are weak: the document owns it.
    struct Script {
        WeakValue object;
        WeakValue page;  ///< The window, for the page's own scripts.
    };

    static Value Evaluate(JSCContext* context, const std::string& file);
    Value Call(std::uint64_t frame, const char* method, const char* argument = nullptr);
    static std::string BytesOf(JSCValue* value);
    static gboolean OnServe(gpointer self);
    static void OnTell(const char* kind, const char* packed, gpointer sender);

    Tell tell_;
    ServeInPage serve_;
    std::map<std::uint64_t, Script> scripts_;
    std::map<std::uint64_t, Value> heldQuestions_;  ///< What ends each hold.
};

}  // namespace velmora
