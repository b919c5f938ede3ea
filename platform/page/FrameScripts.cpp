#include "platform/page/FrameScripts.h"

#include "agent_script.h"

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

}  // namespace

void FrameScripts::OnTell(const char* kind, const char* packed, gpointer data)
{
    const auto& sender = *static_cast<Sender*>(data);
    sender.tell(kind ? kind : "", sender.frame + '\n' + (packed ? packed : ""));
}

void FrameScripts::Begin(JSCContext* context, std::uint64_t frame)
{
    const std::string_view source = agent_script::Find("agent.js");
    const Value start(jsc_context_evaluate_with_source_uri(context, source.data(), static_cast<gssize>(source.size()),
                                                           "velmora-agent.js", 1));
    ThrowIfFailed(context);
    const Value number(jsc_value_new_number(context, static_cast<double>(frame)));
    const Value tell(jsc_value_new_function(
        context, "tell", G_CALLBACK(&FrameScripts::OnTell), new Sender{tell_, std::to_string(frame)},
        [](gpointer sender) { delete static_cast<Sender*>(sender); }, G_TYPE_NONE, 2, G_TYPE_STRING, G_TYPE_STRING));
    const Value object(
        jsc_value_function_call(start.get(), JSC_TYPE_VALUE, number.get(), JSC_TYPE_VALUE, tell.get(), G_TYPE_NONE));
    ThrowIfFailed(context);
    jsc_context_set_value(context, "velmoraAgent", object.get());
    scripts_[frame] = Script{WeakValue(jsc_weak_value_new(object.get()))};
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

std::uint64_t FrameScripts::Revision(std::uint64_t frame)
{
    try {
        return static_cast<std::uint64_t>(jsc_value_to_double(Call(frame, "currentRevision").get()));
    } catch (const ScriptError&) {
        return 0;
    }
}

}  // namespace velmora
