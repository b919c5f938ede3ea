#include "platform/webkit/engine/PageAgents.h"

#include <gio/gunixfdlist.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <numeric>

#include "platform/document/Address.h"
#include "platform/glib/Handle.h"

namespace velmora {

namespace {

// Pages that lie in the history's store keep their agents, so there are a few; a process that asks
// for more than this costs only its own earlier channels.
constexpr std::size_t kMostAgents = 32;

// An action that no navigation follows (a form's data read by the page's own script, a link
// that a script took over) stays here; only the latest can matter.
constexpr std::size_t kMostActions = 16;
constexpr std::size_t kLongestBody = std::size_t{4} << 20;  // In bytes.
constexpr std::size_t kMostBodies = std::size_t{16} << 20;

PageAction ReadFormAction(wire::Reader& reader, const PagePlace& place)
{
    PageAction form;
    form.isForm = true;
    form.place = place;
    reader.Read(form.url, form.method, form.target, form.body, form.userActs, form.isNews, form.documentUrl);
    if (form.body.size() > kLongestBody) form.body.clear();
    return form;
}

PageAction ReadFormData(wire::Reader& reader, const PagePlace& place)
{
    PageAction form = ReadFormAction(reader, place);
    form.form = reader.Text();
    return form;
}

PageAction ReadLinkAction(wire::Reader& reader, const PagePlace& place)
{
    PageAction link;
    link.place = place;
    reader.Read(link.url, link.target, link.staysHere);
    return link;
}

PageSubmission ReadSubmission(wire::Reader& reader, const PagePlace& place)
{
    PageSubmission submission;
    submission.action = ReadFormAction(reader, place);
    reader.Read(submission.time);
    submission.form.form = ReadForm(reader);
    submission.form.elements = ReadElements(reader);
    return submission;
}

}  // namespace

bool PageAgents::Take(WebKitUserMessage* message)
{
    const std::string name = webkit_user_message_get_name(message);
    if (!name.starts_with(wire::kEventPrefix)) return false;
    GVariant* parameters = webkit_user_message_get_parameters(message);
    if (!parameters || !g_variant_is_of_type(parameters, G_VARIANT_TYPE_STRING)) return true;
    gsize length = 0;
    const char* packed = g_variant_get_string(parameters, &length);
    if (length > wire::kLongestEvent) return true;
    try {
        wire::Reader reader(std::string_view(packed, length));
        std::uint64_t agent = 0;
        PagePlace place;
        reader.Read(agent, place.document.frame, place.document.number);
        if (name == wire::kHello) {
            AnswerHello(message, agent);
        } else if (name == wire::kError) {
            g_warning("velmora: a fault in the page agent's script: %s", reader.Text().c_str());
        } else if ((place.channel = ChannelOf(agent))) {
            Dispatch(name, reader, place);
        }
    } catch (const wire::WireError& error) {
        g_warning("velmora: a page agent's message was dropped: %s", error.what());
    } catch (const DocumentError& error) {
        g_warning("velmora: %s", error.what());
    }
    return true;
}

void PageAgents::Dispatch(const std::string& name, wire::Reader& reader, const PagePlace& place)
{
    const auto whole = [&](auto read) {
        auto told = read(reader, place);
        reader.End();
        return told;
    };
    if (name == wire::kBegun || name == wire::kFinished) {
        std::string url;
        bool isTop = false;
        reader.Read(url, isTop);
        std::vector<std::string> laterForms;
        if (name == wire::kFinished) laterForms = ReadSeveral(reader, [](wire::Reader& part) { return part.Text(); });
        reader.End();
        if (isTop) top_ = place;
        if (name == wire::kBegun) {
            listener_.OnBegun(place, url, isTop);
        } else {
            listener_.OnFinished(place, url, isTop, std::move(laterForms));
        }
    } else if (name == wire::kFormData) {
        Remember(whole(ReadFormData));
    } else if (name == wire::kLink) {
        Remember(whole(ReadLinkAction));
    } else if (name == wire::kSubmitted && listener_.TakesSubmissions()) {
        listener_.OnSubmitted(whole(ReadSubmission));
    }
}

void PageAgents::Remember(PageAction action)
{
    actions_.push_back(std::move(action));
    const auto bytes = [this] {
        return std::accumulate(actions_.begin(), actions_.end(), std::size_t{0},
                               [](std::size_t sum, const auto& each) { return sum + BytesOf(each); });
    };
    while (actions_.size() > kMostActions || bytes() > kMostBodies) actions_.pop_front();
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
    auto channel = std::make_shared<PageChannel>(wait_, time_);
    const int descriptor = channel->TakeAgentEnd();
    const auto descriptors = Owned(g_unix_fd_list_new_from_array(&descriptor, 1));  // takes the descriptor over
    webkit_user_message_send_reply(message,
                                   webkit_user_message_new_with_fd_list(wire::kHello, nullptr, descriptors.get()));
    agents_.remove_if([number](const Agent& agent) { return agent.number == number; });
    agents_.push_front({number, channel});
    if (agents_.size() > kMostAgents) agents_.pop_back();
}

}  // namespace velmora
