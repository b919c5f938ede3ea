#include "platform/agent/FrameScripts.h"

#include <cstdint>
#include <random>
#include <type_traits>
#include <utility>

#include "agent_script.h"
#include "platform/agent/Converter.h"

namespace velmora {

namespace {

void ThrowIfFailed(JSCContext* context)
{
    JSCException* exception = jsc_context_get_exception(context);
    if (!exception) return;
    const std::string message = OwnedText(jsc_exception_to_string(exception));
    jsc_context_clear_exception(context);
    throw ScriptError(message);
}

/// The bytes of a text in an encoding, each as the character of its number.
char* ConvertToCharacters(const char* text, const char* encoding)
{
    const std::string bytes = Convert(text, encoding);
    return g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", "ISO-8859-1", nullptr, nullptr, nullptr);
}

template <class T>
GType ScriptType()
{
    if constexpr (std::is_same_v<T, JSCValue*>) return JSC_TYPE_VALUE;
    if constexpr (std::is_same_v<T, double>) return G_TYPE_DOUBLE;
    if constexpr (std::is_same_v<T, gboolean>) return G_TYPE_BOOLEAN;
    if constexpr (std::is_void_v<T>) return G_TYPE_NONE;
    return G_TYPE_STRING;
}

/// A member of a script's object by which the script calls a function; it is freed with its script.
template <class Result, class... Arguments>
void PutFunction(JSCValue* object, const char* name, std::function<Result(Arguments...)> function)
{
    using Function = decltype(function);
    GType types[] = {ScriptType<Arguments>()..., G_TYPE_NONE};
    const auto call = +[](Arguments... given, gpointer data) { return (*static_cast<Function*>(data))(given...); };
    const auto made = Owned(jsc_value_new_functionv(
        jsc_value_get_context(object), name, G_CALLBACK(call), new Function(std::move(function)),
        [](gpointer data) { delete static_cast<Function*>(data); }, ScriptType<Result>(), sizeof...(Arguments), types));
    jsc_value_object_set_property(object, name, made.get());
}

std::string BytesOf(JSCValue* value)
{
    const auto bytes = Owned(jsc_value_to_string_as_bytes(value), g_bytes_unref);
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    return {data ? data : "", size};
}

std::optional<std::string> WhenDone(JSCValue* answer)
{
    std::string bytes = BytesOf(answer);
    return bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

}  // namespace

std::uint64_t NewNumber()
{
    constexpr std::uint64_t kLargest = (std::uint64_t{1} << 53) - 1;
    std::random_device source;
    return ((std::uint64_t{source()} << 32) | source()) & kLargest;
}

void FrameScripts::TellError(std::uint64_t frame, const std::string& error)
{
    tell_("error", std::to_string(frame) + "\n0\n" + wire::Pack({error}));
}

FrameScripts::Value FrameScripts::Evaluate(JSCContext* context, const std::string& file)
{
    const std::string_view source = agent_script::Find(file);
    auto value = Owned(jsc_context_evaluate_with_source_uri(context, source.data(), static_cast<gssize>(source.size()),
                                                            ("velmora-" + file).c_str(), 1));
    ThrowIfFailed(context);
    return value;
}

FrameScripts::Value FrameScripts::MakeClock(JSCContext* context)
{
    auto clock = Owned(jsc_value_new_object(context, nullptr, nullptr));
    PutFunction(clock.get(), "after", std::function([this](double milliseconds, JSCValue* action) -> double {
                    return callbacks_.After(static_cast<guint>(milliseconds), [this, action = Held(action)] {
                        const auto nothing = Owned(jsc_value_function_call(action.get(), G_TYPE_NONE));
                        try {
                            ThrowIfFailed(jsc_value_get_context(action.get()));
                        } catch (const ScriptError& error) {
                            TellError(0, error.what());
                        }
                    });
                }));
    PutFunction(clock.get(), "cancel",
                std::function([](double number) { Callbacks::Cancel(static_cast<guint>(number)); }));
    return clock;
}

// The scripts of a page are gone before the agent is.
FrameScripts::Value FrameScripts::MakeParts(JSCContext* context, std::uint64_t frame)
{
    auto parts = Owned(jsc_value_new_object(context, nullptr, nullptr));
    for (const char* part : {"dom", "fields", "formbody", "forms", "outgoing", "settling", "submissions", "writes"}) {
        jsc_value_object_set_property(parts.get(), part, Evaluate(context, std::string(part) + ".js").get());
    }
    jsc_value_object_set_property(parts.get(), "clock", MakeClock(context).get());
    PutFunction(parts.get(), "convert", std::function(ConvertToCharacters));
    PutFunction(parts.get(), "serve", std::function([this](gboolean isFirst) -> gboolean { return serve_(isFirst); }));
    PutFunction(parts.get(), "watch", std::function([this, frame](gboolean isOn) {
                    if (isOn) {
                        watching_.insert(frame);
                    } else {
                        watching_.erase(frame);
                    }
                }));
    return parts;
}

void FrameScripts::Begin(JSCContext* context, JSCContext* page, std::uint64_t frame)
{
    try {
        Start(context, page, frame);
    } catch (const ScriptError& error) {
        TellError(frame, error.what());
    }
}

void FrameScripts::Start(JSCContext* context, JSCContext* page, std::uint64_t frame)
{
    const std::uint64_t document = NewNumber();
    heldQuestions_.erase(frame);
    watching_.erase(frame);
    const Value start = Evaluate(context, "agent.js");
    const Value parts = MakeParts(context, frame);
    const std::string name = std::to_string(frame) + '\n' + std::to_string(document);
    PutFunction(parts.get(), "tell", std::function([this, name](const char* kind, const char* packed) {
                    tell_(kind, name + '\n' + packed);
                }));
    const auto object =
        Owned(jsc_value_function_call(start.get(), G_TYPE_DOUBLE, static_cast<double>(frame), G_TYPE_DOUBLE,
                                      static_cast<double>(document), JSC_TYPE_VALUE, parts.get(), G_TYPE_NONE));
    ThrowIfFailed(context);
    jsc_context_set_value(context, "velmoraAgent", object.get());
    const auto window = Owned(jsc_context_get_global_object(page));
    scripts_[frame] =
        Script{document, Owned(jsc_weak_value_new(object.get())), Owned(jsc_weak_value_new(window.get()))};
    if (holdsQuestions_) HoldQuestions(frame);
}

FrameScripts::Value FrameScripts::Call(std::uint64_t frame, const char* method, const char* argument)
{
    const auto script = scripts_.find(frame);
    if (script == scripts_.end()) throw ScriptError("no such frame");
    const auto object = Owned(jsc_weak_value_get_value(script->second.object.get()));
    if (!object) {
        scripts_.erase(script);
        throw ScriptError("the frame's document is gone");
    }
    JSCContext* context = jsc_value_get_context(object.get());
    auto result =
        Owned(argument ? jsc_value_object_invoke_method(object.get(), method, G_TYPE_STRING, argument, G_TYPE_NONE)
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

std::string FrameScripts::Read(const wire::DocumentName& name, const std::string& request)
{
    return BytesOf(Call(name, "read", request.c_str()).get());
}

std::optional<std::string> FrameScripts::Write(const wire::DocumentName& name, const std::string& request)
{
    return WhenDone(Call(name, "write", request.c_str()).get());
}

std::optional<std::string> FrameScripts::GoOn(const wire::DocumentName& name)
{
    return WhenDone(Call(name, "goOn").get());
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
    const auto window = Owned(jsc_weak_value_get_value(script->second.page.get()));
    if (!window) return;
    JSCContext* page = jsc_value_get_context(window.get());
    try {
        const Value hold = Evaluate(page, "questions.js");
        const auto release = Owned(jsc_value_function_call(hold.get(), G_TYPE_NONE));
        ThrowIfFailed(page);
        heldQuestions_[frame] = release;
    } catch (const ScriptError&) {
        // A page that has broken its own world keeps its questions.
    }
}

void FrameScripts::ReleaseQuestions()
{
    holdsQuestions_ = false;
    for (const auto& [frame, release] : std::exchange(heldQuestions_, {})) {
        JSCContext* page = jsc_value_get_context(release.get());
        const auto nothing = Owned(jsc_value_function_call(release.get(), G_TYPE_NONE));
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
