#include "platform/page/FrameScripts.h"

#include <utility>

#include "agent_script.h"
#include "platform/page/Converter.h"

namespace velmora {

namespace {

/// Who tells: given to the script's function, freed with it.
struct Sender {
    FrameScripts::Tell tell;
    std::string frame;
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

void FrameScripts::OnTell(const char* kind, const char* packed, gpointer data)
{
    const auto& sender = *static_cast<Sender*>(data);
    sender.tell(kind ? kind : "", sender.frame + '\n' + (packed ? packed : ""));
}

gboolean FrameScripts::OnServe(gpointer self) { return static_cast<FrameScripts*>(self)->serve_(); }

FrameScripts::Value FrameScripts::Evaluate(JSCContext* context, const std::string& file)
{
    const std::string_view source = agent_script::Find(file);
    Value value(jsc_context_evaluate_with_source_uri(context, source.data(), static_cast<gssize>(source.size()),
                                                     ("velmora-" + file).c_str(), 1));
    ThrowIfFailed(context);
    return value;
}

void FrameScripts::Begin(JSCContext* context, JSCContext* page, std::uint64_t frame)
{
    const Value start = Evaluate(context, "agent.js");
    const Value parts(jsc_value_new_object(context, nullptr, nullptr));
    for (const char* part : {"formbody", "settling", "submissions"}) {
        jsc_value_object_set_property(parts.get(), part, Evaluate(context, std::string(part) + ".js").get());
    }
    const Value convert(jsc_value_new_function(context, "convert", G_CALLBACK(OnConvert), nullptr, nullptr,
                                               G_TYPE_STRING, 2, G_TYPE_STRING, G_TYPE_STRING));
    jsc_value_object_set_property(parts.get(), "convert", convert.get());
    // The scripts of a page are gone before the agent is.
    const Value serve(
        jsc_value_new_function(context, "serve", G_CALLBACK(OnServe), this, nullptr, G_TYPE_BOOLEAN, 0, G_TYPE_NONE));
    jsc_value_object_set_property(parts.get(), "serve", serve.get());
    const Value number(jsc_value_new_number(context, static_cast<double>(frame)));
    const Value tell(jsc_value_new_function(
        context, "tell", G_CALLBACK(&FrameScripts::OnTell), new Sender{tell_, std::to_string(frame)},
        [](gpointer sender) { delete static_cast<Sender*>(sender); }, G_TYPE_NONE, 2, G_TYPE_STRING, G_TYPE_STRING));
    const Value object(jsc_value_function_call(start.get(), JSC_TYPE_VALUE, number.get(), JSC_TYPE_VALUE, tell.get(),
                                               JSC_TYPE_VALUE, parts.get(), G_TYPE_NONE));
    ThrowIfFailed(context);
    jsc_context_set_value(context, "velmoraAgent", object.get());
    const Value window(jsc_context_get_global_object(page));
    heldQuestions_.erase(frame);
    scripts_[frame] = Script{WeakValue(jsc_weak_value_new(object.get())), WeakValue(jsc_weak_value_new(window.get()))};
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

std::string FrameScripts::BytesOf(JSCValue* value)
{
    GBytes* bytes = jsc_value_to_string_as_bytes(value);
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    std::string text(data ? data : "", size);
    g_bytes_unref(bytes);
    return text;
}

std::string FrameScripts::Ask(std::uint64_t frame, const std::string& request)
{
    return BytesOf(Call(frame, "answer", request.c_str()).get());
}

std::string FrameScripts::Markup(std::uint64_t frame) { return BytesOf(Call(frame, "markup").get()); }

void FrameScripts::Click(std::uint64_t frame, const std::string& handle) { Call(frame, "click", handle.c_str()); }

void FrameScripts::HoldQuestions(std::uint64_t frame)
{
    const auto script = scripts_.find(frame);
    if (script == scripts_.end() || heldQuestions_.contains(frame)) return;
    const Value window(jsc_weak_value_get_value(script->second.page.get()));
    if (!window) return;
    JSCContext* page = jsc_value_get_context(window.get());
    const Value hold = Evaluate(page, "questions.js");
    Value release(jsc_value_function_call(hold.get(), G_TYPE_NONE));
    ThrowIfFailed(page);
    heldQuestions_[frame] = std::move(release);
}

void FrameScripts::ReleaseQuestions()
{
    for (const auto& [frame, release] : std::exchange(heldQuestions_, {})) {
        JSCContext* page = jsc_value_get_context(release.get());
        const Value nothing(jsc_value_function_call(release.get(), G_TYPE_NONE));
        jsc_context_clear_exception(page);
    }
}

void FrameScripts::Rest()
{
    ReleaseQuestions();
    std::vector<std::uint64_t> frames;
    for (const auto& script : scripts_) frames.push_back(script.first);
    for (const std::uint64_t frame : frames) {
        try {
            Call(frame, "rest");
        } catch (const ScriptError&) {
            // A frame that is gone rests for good.
        }
    }
}

void FrameScripts::Moved(std::uint64_t frame) { Call(frame, "moved"); }

std::uint64_t FrameScripts::Revision(std::uint64_t frame)
{
    try {
        return static_cast<std::uint64_t>(jsc_value_to_double(Call(frame, "currentRevision").get()));
    } catch (const ScriptError&) {
        return 0;
    }
}

}  // namespace velmora
