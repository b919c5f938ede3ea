#include "platform/document/ElementList.h"

#include <algorithm>
#include <chrono>

namespace velmora {

namespace {

// A page may look at what was entered, and ask its server, before it lets its button be pressed.
constexpr std::chrono::seconds kLongestDisabled{3};
constexpr std::chrono::milliseconds kPause{20};

}  // namespace

bool DocumentLink::Click(const std::string& handle) const
{
    // What the page has emptied or drawn anew since it was written is written once more.
    Write({"again"});
    const auto isReady = [&] { return Read({"ready", handle}, [](wire::Reader& reader) { return reader.Flag(); }); };
    const auto deadline = Clock::now() + kLongestDisabled;
    while (!isReady()) {
        if (Clock::now() > deadline) return false;
        place_.channel->Pause(kPause);
    }
    place_.channel->Click(place_.document, handle);
    return true;
}

void ElementList::Take(std::vector<ElementFacts> elements)
{
    elements_ = std::move(elements);
    fetched_ = link_.Version();
}

const std::vector<ElementFacts>& ElementList::Structure()
{
    if (isKept_) return elements_;
    if (!fetched_ || fetched_->revision != link_.Version().revision) Fetch();
    return elements_;
}

const ElementFacts& ElementList::State(int i, const std::string& handle)
{
    if (!isKept_ && (!fetched_ || fetched_->writes != link_.Version().writes)) Fetch();
    return Named(i, handle);
}

const ElementFacts& ElementList::Named(int i, const std::string& handle)
{
    const auto& elements = Structure();
    const auto place = static_cast<std::size_t>(i);
    if (place < elements.size() && elements[place].handle == handle) return elements[place];
    for (const ElementFacts& element : elements) {
        if (element.handle == handle) return element;
    }
    throw DocumentError("the element is gone");
}

void ElementList::Write(int i, std::vector<std::string> request)
{
    if (!holds_) return link_.Write(request);
    held_.push_back(std::move(request));
    places_.push_back(i);
}

std::optional<int> ElementList::Release()
{
    holds_ = false;
    const auto held = std::exchange(held_, {});
    const auto places = std::exchange(places_, {});
    if (held.empty()) return std::nullopt;
    const std::uint64_t revision = link_.Version().revision;
    const std::size_t done = link_.WriteAll(held);
    const bool isWhole = done == held.size();
    if (isWhole && link_.Version().revision == revision) return std::nullopt;
    // The elements up to the next write are among them: a list that lacked an option may have it now.
    const int last = places[done - 1];
    const std::string handle = elements_.at(static_cast<std::size_t>(last)).handle;
    // Of several choices in a list some may be left; but a page may take each back as soon as it is made.
    const auto first = std::find(places.begin(), places.end(), last) - places.begin();
    const std::pair choices(handle, done - static_cast<std::size_t>(first));
    const bool isDone = isWhole || places[done] != last || choices == std::exchange(choices_, choices);
    // Fields ahead of it may have come or gone. Where it went itself, the next stands in its place.
    const auto& now = Structure();
    const auto place = std::find_if(now.begin(), now.end(), [&](const auto& each) { return each.handle == handle; });
    if (place == now.end()) return last;
    return static_cast<int>(place - now.begin()) + (isDone ? 1 : 0);
}

}  // namespace velmora
