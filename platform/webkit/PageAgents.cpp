#include "platform/webkit/PageAgents.h"

#include <gio/gunixfdlist.h>
#include <unistd.h>

#include <algorithm>

namespace velmora {

namespace {

// Pages that lie in the history's store keep their agents, so there are a few; a process that asks
// for more than this costs only its own earlier channels.
constexpr std::size_t kMostAgents = 32;

// An action that its navigation does not follow (a form's data read by the page's own script, a link
// that a script took over) stays behind; only the latest can matter.
constexpr std::size_t kMostActions = 16;

std::string WithoutFragment(const std::string& url) { return url.substr(0, url.find('#')); }
std::string WithoutQuery(const std::string& url) { return url.substr(0, url.find_first_of("?#")); }

}  // namespace

bool PageAgents::Take(WebKitUserMessage* message)
{
    const std::string name = webkit_user_message_get_name(message);
    if (!name.starts_with(wire::kEventPrefix)) return false;
    GVariant* parameters = webkit_user_message_get_parameters(message);
    if (!parameters || !g_variant_is_of_type(parameters, G_VARIANT_TYPE_STRING)) return true;
    gsize length = 0;
    const char* packed = g_variant_get_string(parameters, &length);
    try {
        wire::Reader reader(std::string_view(packed, length));
        const std::uint64_t agent = reader.Number();
        const std::uint64_t frame = reader.Number();
        if (name == wire::kHello) {
            AnswerHello(message, agent);
        } else {
            Dispatch(name, reader, agent, frame);
        }
    } catch (const wire::WireError& error) {
        g_warning("velmora: a page agent's message was dropped: %s", error.what());
    } catch (const DocumentError& error) {
        g_warning("velmora: %s", error.what());
    }
    return true;
}

void PageAgents::Dispatch(const std::string& name, wire::Reader& reader, std::uint64_t agent, std::uint64_t frame)
{
    const PagePlace place{ChannelOf(agent), frame};
    if (name == wire::kBegun) {
        if (place.channel) place.channel->BeginDocument(frame);
        if (reader.Flag()) top_ = place;
    } else if (name == wire::kFinished) {
        const std::string url = reader.Text();
        if (reader.Flag()) top_ = place;
        finished_(place, url);
    } else if (name == wire::kFormData) {
        Remember(ReadAction(reader, agent, frame));
    } else if (name == wire::kSubmitted) {
        submitted_(ReadSubmission(reader, agent, frame));
    } else if (name == wire::kLink) {
        PageAction link;
        link.url = reader.Text();
        link.target = reader.Text();
        link.place = TargetPlace(agent, frame, reader.Number());
        Remember(std::move(link));
    } else if (name == wire::kError) {
        g_warning("velmora: a fault in the page agent's script: %s", reader.Text().c_str());
    }
}

PageAction PageAgents::ReadAction(wire::Reader& reader, std::uint64_t agent, std::uint64_t frame) const
{
    PageAction form;
    form.isForm = true;
    form.url = reader.Text();
    form.method = reader.Text();
    form.target = reader.Text();
    form.place = TargetPlace(agent, frame, reader.Number());
    form.body = reader.Text();
    return form;
}

PageAgents::Submission PageAgents::ReadSubmission(wire::Reader& reader, std::uint64_t agent, std::uint64_t frame) const
{
    Submission submission;
    submission.action = ReadAction(reader, agent, frame);
    submission.place = {ChannelOf(agent), frame};
    submission.url = reader.Text();
    submission.time = reader.Number();
    submission.form.form = ReadForm(reader);
    submission.form.elements = ReadElements(reader);
    return submission;
}

PagePlace PageAgents::TargetPlace(std::uint64_t agent, std::uint64_t frame, std::uint64_t target) const
{
    return {ChannelOf(agent), target == 0 ? frame : target};
}

void PageAgents::Remember(PageAction action)
{
    actions_.push_back(std::move(action));
    if (actions_.size() > kMostActions) actions_.pop_front();
}

std::optional<PageAction> PageAgents::TakeAction(bool isForm, const std::string& url, const std::string& method)
{
    const auto matches = [&](const PageAction& action) {
        if (action.isForm != isForm) return false;
        if (!isForm) return action.url == url;
        // Only web requests name their method; for the built-in site it is not known.
        if (action.method == "post") return method != "GET" && WithoutFragment(action.url) == WithoutFragment(url);
        return method != "POST" && WithoutQuery(action.url) == WithoutQuery(url);
    };
    const auto found = std::find_if(actions_.rbegin(), actions_.rend(), matches);
    if (found == actions_.rend()) return std::nullopt;
    PageAction action = std::move(*found);
    actions_.erase(std::next(found).base());
    return action;
}

std::shared_ptr<PageChannel> PageAgents::ChannelOf(std::uint64_t number) const
{
    for (const Agent& agent : agents_) {
        if (agent.number == number) return agent.channel;
    }
    return nullptr;
}

void PageAgents::AnswerHello(WebKitUserMessage* message, std::uint64_t number)
{
    auto channel = std::make_shared<PageChannel>();
    const int descriptor = channel->TakeAgentEnd();
    GUnixFDList* descriptors = g_unix_fd_list_new_from_array(&descriptor, 1);  // takes the descriptor over
    webkit_user_message_send_reply(message, webkit_user_message_new_with_fd_list(wire::kHello, nullptr, descriptors));
    g_object_unref(descriptors);
    agents_.remove_if([number](const Agent& agent) { return agent.number == number; });
    agents_.push_front({number, channel});
    if (agents_.size() > kMostAgents) agents_.pop_back();
}

}  // namespace velmora
