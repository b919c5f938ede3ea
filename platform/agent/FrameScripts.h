// The agent's script in each frame of a page.
#pragma once

#include <webkit/webkit-web-process-extension.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/glib/Callbacks.h"
#include "platform/wire/Wire.h"

namespace velmora {

/// A number that nobody can guess, small enough for a script.
std::uint64_t NewNumber();

class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs the agent's script in each new document of a page and calls into it. Documents that are gone, and
/// exceptions in the script, throw ScriptError.
class FrameScripts {
public:
    /// Sends an event of the script: its kind, the packed text.
    using Tell = std::function<void(const std::string& kind, const std::string& packed)>;

    /// Serves what the program asks of a document that has just finished; see AgentChannel.
    using ServeInPage = std::function<bool(bool isFirst)>;

    FrameScripts(Tell tell, ServeInPage serve) : tell_(std::move(tell)), serve_(std::move(serve)) {}
    FrameScripts(const FrameScripts&) = delete;
    FrameScripts& operator=(const FrameScripts&) = delete;

    /// Starts the script in a document that has just begun; tells if it cannot. `page` is the context of
    /// the page's own scripts in the same frame.
    void Begin(JSCContext* context, JSCContext* page, std::uint64_t frame);

    /// The script's answer to a packed read, also packed.
    std::string Read(const wire::DocumentName& name, const std::string& request);
    /// The same for a row of writes. Nothing while it is under way: when the page's promises have run, it goes on.
    std::optional<std::string> Write(const wire::DocumentName& name, const std::string& request);
    std::optional<std::string> GoOn(const wire::DocumentName& name);
    void Click(const wire::DocumentName& name, const std::string& handle);
    /// Keeps the questions of the whole page (alert and the like): a write would wait for their answers.
    void HoldQuestions();
    void ReleaseQuestions();
    /// Nothing more is asked of any frame for now.
    void Rest();
    /// The address of the frame's document may have changed within the document.
    void Moved(std::uint64_t frame);
    /// How often the structure of the document's forms has changed; 0 for one that is gone.
    std::uint64_t Revision(const wire::DocumentName& name);

    /// Whether a script wants to know what the page requests.
    bool WatchesRequests() const { return !watching_.empty(); }
    /// Tells those scripts of a request.
    void Requested(const std::string& packed);

private:
    using Value = std::shared_ptr<JSCValue>;
    using WeakValue = std::shared_ptr<JSCWeakValue>;

    /// What the script keeps for a frame. The references are weak: the document owns it.
    struct Script {
        std::uint64_t document;
        WeakValue object;
        WeakValue page;  ///< The window, for the page's own scripts.
    };

    static Value Evaluate(JSCContext* context, const std::string& file);
    /// What the script needs of the engine and of the other files.
    Value MakeParts(JSCContext* context, std::uint64_t frame);
    Value MakeClock(JSCContext* context);
    void Start(JSCContext* context, JSCContext* page, std::uint64_t frame);
    Value Call(const wire::DocumentName& name, const char* method, const char* argument = nullptr);
    Value Call(std::uint64_t frame, const char* method, const char* argument = nullptr);
    void HoldQuestions(std::uint64_t frame);
    void TellError(std::uint64_t frame, const std::string& error);
    std::vector<std::uint64_t> Frames() const;

    Tell tell_;
    ServeInPage serve_;
    std::map<std::uint64_t, Script> scripts_;
    std::map<std::uint64_t, Value> heldQuestions_;  ///< What ends each hold.
    bool holdsQuestions_ = false;
    std::set<std::uint64_t> watching_;
    Callbacks callbacks_;
};

}  // namespace velmora
