#include "platform/agent/FrameScripts.h"

#include <random>
#include <utility>

#include "agent_script.h"
#include "platform/agent/Converter.h"

namespace velmora {

namespace {

/// Who tells: given to the script's functions, freed with them.
struct Sender {
    FrameScripts& scripts;
    FrameScripts::Tell tell;
    std::uint64_t frame;
    std::string name;  ///< The packed numbers of the frame and the document.
};

void ThrowIfFailed(JSCContext* context)
{
    JSCException* exception = jsc_context_get_exception(context);
    if (!exception) return;
    char* text = jsc_exception_to_string(exception);
    std::string message = text ? text : "the script failed";
    g_free(text);
    jsc_context_clear_exception(context);
    throw ScriptError(message);
}

/// The bytes of a text in an encoding, each as the character of its number.
char* OnConvert(const char* text, const char* encoding, gpointer)
{
    const std::string bytes = Convert(text ? text : "", encoding ? encoding : "");
    return g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", "ISO-8859-1", nullptr, nullptr, nullptr);
}

}  // namespace

std::uint64_t NewNumber()
{
    constexpr std::uint64_t kLargest = (std::uint64_t{1} << 53) - 1;
    std::random_device source;
    return ((std::uint64_t{source()} << 32) | source()) & kLargest;
}

/// An action of a script that waits for its time.
struct FrameScripts::Alarm {
    FrameScripts& scripts;
    guint source = 0;
    Value action;
};

FrameScripts::~FrameScripts()
{
    for (const guint alarm : std::exchange(alarms_, {})) g_source_remove(alarm);
}

void FrameScripts::OnTell(const char* kind, const char* packed, gpointer data)
{
    const auto& sender = *static_cast<Sender*>(data);
    sender.tell(kind ? kind : "", sender.name + '\n' + (packed ? packed : ""));
}

void FrameScripts::OnWatch(gboolean isOn, gpointer data)
{
    const auto& sender = *static_cast<Sender*>(data);
    if (isOn) {
        sender.scripts.watching_.insert(sender.frame);
    } else {
        sender.scripts.watching_.erase(sender.frame);
    }
}

gboolean FrameScripts::OnServe(gpointer self) { return static_cast<FrameScripts*>(self)->serve_(); }

double FrameScripts::OnAfter(double milliseconds, JSCValue* action, gpointer data)
{
    auto& self = *static_cast<FrameScripts*>(data);
    auto* alarm = new Alarm{self, 0, Value(static_cast<JSCValue*>(g_object_ref(action)))};
    alarm->source = g_timeout_add_full(
        G_PRIORITY_DEFAULT, static_cast<guint>(milliseconds),
        [](gpointer due) -> gboolean {
            auto& [scripts, source, function] = *static_cast<Alarm*>(due);
            scripts.alarms_.erase(source);
            JSCContext* context = jsc_value_get_context(function.get());
            const Value nothing(jsc_value_function_call(function.get(), G_TYPE_NONE));
            try {
                ThrowIfFailed(context);
            } catch (const ScriptError& error) {
                scripts.TellError(0, error.what());
            }
            return G_SOURCE_REMOVE;
        },
        alarm, [](gpointer due) { delete static_cast<Alarm*>(due); });
    self.alarms_.insert(alarm->source);
    return alarm->source;
}

void FrameScripts::OnCancel(double alarm, gpointer data)
{
    auto& self = *static_cast<FrameScripts*>(data);
    const auto source = static_cast<guint>(alarm);
    if (self.alarms_.erase(source) > 0) g_source_remove(source);
}

void FrameScripts::TellError(std::uint64_t frame, const std::string& error)
{
    tell_("error", std::to_string(frame) + "\n0\n" + wire::Pack({error}));
}

FrameScripts::Value FrameScripts::Evaluate(JSCContext* context, const std::string& file)
{
    const std::string_view source = agent_script::Find(file);
    Value value(jsc_context_evaluate_with_source_uri(context, source.data(), static_cast<gssize>(source.size()),
                                                     ("velmora-" + file).c_str(), 1));
    ThrowIfFailed(context);
    return value;
}

FrameScripts::Value FrameScripts::MakeClock(JSCContext* context)
{
    Value clock(jsc_value_new_object(context, nullptr, nullptr));
    const Value after(jsc_value_new_function(context, "after", G_CALLBACK(OnAfter), this, nullptr, G_TYPE_DOUBLE, 2,
                                             G_TYPE_DOUBLE, JSC_TYPE_VALUE));
    const Value cancel(
        jsc_value_new_function(context, "cancel", G_CALLBACK(OnCancel), this, nullptr, G_TYPE_NONE, 1, G_TYPE_DOUBLE));
    jsc_value_object_set_property(clock.get(), "after", after.get());
    jsc_value_object_set_property(clock.get(), "cancel", cancel.get());
    return clock;
}

// The scripts of a page are gone before the agent is.
FrameScripts::Value FrameScripts::MakeParts(JSCContext* context, std::uint64_t frame)
{
    Value parts(jsc_value_new_object(context, nullptr, nullptr));
    const auto put = [&](const char* name, const Value& value) {
        jsc_value_object_set_property(parts.get(), name, value.get());
    };
    for (const char* part : {"dom", "formbody", "outgoing", "settling", "submissions"}) {
        put(part, Evaluate(context, std::string(part) + ".js"));
    }
    put("convert", Value(jsc_value_new_function(context, "convert", G_CALLBACK(OnConvert), nullptr, nullptr,
                                                G_TYPE_STRING, 2, G_TYPE_STRING, G_TYPE_STRING)));
    put("serve", Value(jsc_value_new_function(context, "serve", G_CALLBACK(OnServe), this, nullptr, G_TYPE_BOOLEAN, 0,
                                              G_TYPE_NONE)));
    put("watch", Value(jsc_value_new_function(
                     context, "watch", G_CALLBACK(&FrameScripts::OnWatch), new Sender{*this, {}, frame, {}},
                     [](gpointer sender) { delete static_cast<Sender*>(sender); }, G_TYPE_NONE, 1, G_TYPE_BOOLEAN)));
    put("clock", MakeClock(context));
    return parts;
}

void FrameScripts::Begin(JSCContext* context, JSCContext* page, std::uint64_t frame)
{
    const std::uint64_t document = NewNumber();
    const Value start = Evaluate(context, "agent.js");
    const Value parts = MakeParts(context, frame);
    const Value frameNumber(jsc_value_new_number(context, static_cast<double>(frame)));
    const Value documentNumber(jsc_value_new_number(context, static_cast<double>(document)));
    const std::string name = std::to_string(frame) + '\n' + std::to_string(document);
    const Value tell(jsc_value_new_function(
        context, "tell", G_CALLBACK(&FrameScripts::OnTell), new Sender{*this, tell_, frame, name},
        [](gpointer sender) { delete static_cast<Sender*>(sender); }, G_TYPE_NONE, 2, G_TYPE_STRING, G_TYPE_STRING));
    const Value object(jsc_value_function_call(start.get(), JSC_TYPE_VALUE, frameNumber.get(), JSC_TYPE_VALUE,
                                               documentNumber.get(), JSC_TYPE_VALUE, tell.get(), JSC_TYPE_VALUE,
                                               parts.get(), G_TYPE_NONE));
    ThrowIfFailed(context);
    jsc_context_set_value(context, "velmoraAgent", object.get());
    const Value window(jsc_context_get_global_object(page));
    heldQuestions_.erase(frame);
    watching_.erase(frame);
    scripts_[frame] =
        Script{document, WeakValue(jsc_weak_value_new(object.get())), WeakValue(jsc_weak_value_new(window.get()))};
    if (holdsQuestions_) HoldQuestions(frame);
}

FrameScripts::Value FrameScripts::Call(std::uint64_t frame, const char* method, const char* argument)
{
    const auto script = scripts_.find(frame);
    if (script == scripts_.end()) throw ScriptError("no such frame");
    const Value object(jsc_weak_value_get_value(script->second.object.get()));
    if (!object) {
        scripts_.erase(script);
        throw ScriptError("the frame's document is gone");
    }
    JSCContext* context = jsc_value_get_context(object.get());
    Value result(argument ? jsc_value_object_invoke_method(object.get(), method, G_TYPE_STRING, argument, G_TYPE_NONE)
                          : jsc_value_object_invoke_method(object.get(), method, G_TYPE_NONE));
    ThrowIfFailed(context);
    if (!result) throw ScriptError("the script gave nothing");
    return result;
}

FrameScripts::Value FrameScripts::Call(const wire::DocumentName& name, const char* method, const char* argument)
{
    const auto script = scripts_.find(name.frame);
    if (script == scripts_.end() || script->second.document != name.number) throw ScriptError("the page is gone");
    return Call(name.frame, method, argument);
}

std::string FrameScripts::BytesOf(JSCValue* value)
{
    GBytes* bytes = jsc_value_to_string_as_bytes(value);
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    std::string text(data ? data : "", size);
    g_bytes_unref(bytes);
    return text;
}

std::string FrameScripts::Ask(const wire::DocumentName& name, const std::string& request)
{
    return BytesOf(Call(name, "answer", request.c_str()).get());
}

void FrameScripts::Click(const wire::DocumentName& name, const std::string& handle)
{
    Call(name, "click", handle.c_str());
}

void FrameScripts::HoldQuestions()
{
    if (std::exchange(holdsQuestions_, true)) return;
    for (const std::uint64_t frame : Frames()) HoldQuestions(frame);
}

void FrameScripts::HoldQuestions(std::uint64_t frame)
{
    const auto script = scripts_.find(frame);
    if (script == scripts_.end()) return;
    const Value window(jsc_weak_value_get_value(script->second.page.get()));
    if (!window) return;
    JSCContext* page = jsc_value_get_context(window.get());
    try {
        const Value hold = Evaluate(page, "questions.js");
        Value release(jsc_value_function_call(hold.get(), G_TYPE_NONE));
        ThrowIfFailed(page);
        heldQuestions_[frame] = std::move(release);
    } catch (const ScriptError&) {
        // A page that has broken its own world keeps its questions.
    }
}

void FrameScripts::ReleaseQuestions()
{
    holdsQuestions_ = false;
    for (const auto& [frame, release] : std::exchange(heldQuestions_, {})) {
        JSCContext* page = jsc_value_get_context(release.get());
        const Value nothing(jsc_value_function_call(release.get(), G_TYPE_NONE));
        jsc_context_clear_exception(page);
    }
}

std::vector<std::uint64_t> FrameScripts::Frames() const
{
    std::vector<std::uint64_t> frames;
    for (const auto& script : scripts_) frames.push_back(script.first);
    return frames;
}

void FrameScripts::Rest()
{
    ReleaseQuestions();
    for (const std::uint64_t frame : Frames()) {
        try {
            Call(frame, "rest");
        } catch (const ScriptError&) {
            // A frame that is gone rests for good.
        }
    }
}

void FrameScripts::Moved(std::uint64_t frame) { Call(frame, "moved"); }

void FrameScripts::Requested(const std::string& packed)
{
    for (const std::uint64_t frame : std::set<std::uint64_t>(watching_)) {
        try {
            Call(frame, "requested", packed.c_str());
        } catch (const ScriptError&) {
            watching_.erase(frame);
        }
    }
}

std::uint64_t FrameScripts::Revision(const wire::DocumentName& name)
{
    try {
        return static_cast<std::uint64_t>(jsc_value_to_double(Call(name, "currentRevision").get()));
    } catch (const ScriptError&) {
        return 0;
    }
}

}  // namespace velmora
