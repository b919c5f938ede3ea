#include "tests/support/MemoryBrowser.h"

#include <cctype>
#include <cstdio>
#include <utility>

namespace velmora::test {

namespace {

std::string WithoutQuery(const std::string& url) { return url.substr(0, url.find('?')); }

std::string Urlencoded(const std::string& text)
{
    std::string result;
    for (const unsigned char c : text) {
        if (std::isalnum(c) || c == '*' || c == '-' || c == '.' || c == '_') {
            result += static_cast<char>(c);
        } else if (c == ' ') {
            result += '+';
        } else {
            char escape[4];
            std::snprintf(escape, sizeof escape, "%%%02X", c);
            result += escape;
        }
    }
    return result;
}

}  // namespace

std::string FormUrlencoded(const MemoryDocument::EntryList& entries)
{
    std::string body;
    for (const auto& [name, value] : entries) {
        body += (body.empty() ? "" : "&") + Urlencoded(name) + "=" + Urlencoded(value);
    }
    return body;
}

std::string Resolved(const std::string& page, const std::string& address)
{
    if (address.empty()) return page;
    if (address.find("://") != std::string::npos) return address;
    const std::string base = WithoutQuery(page);
    const auto host = base.find("://") + 3;
    if (address.front() == '/') return base.substr(0, base.find('/', host)) + address;
    return base.substr(0, base.rfind('/') + 1) + address;
}

MemoryBrowser::MemoryBrowser(WebBrowser& control)
    : Page(std::make_shared<MemoryDocument>(PageSketch{}, Log)), control_(control)
{
    control_.Attach(this);
}

MemoryBrowser::~MemoryBrowser()
{
    control_.Attach(nullptr);
    Page->End();
}

void MemoryBrowser::Navigate(const std::string& url) { Begin({.url = url}); }

void MemoryBrowser::GoBack()
{
    if (history_.size() < 2) return;
    history_.pop_back();
    const std::string url = std::exchange(history_.back(), {});
    history_.pop_back();
    Begin({.url = url});
}

void MemoryBrowser::Submit(int form, const std::string& button, int frame)
{
    MemoryDocument& page = frame < 0 ? *Page : *Page->MemoryFrames.at(static_cast<std::size_t>(frame))->document;
    const std::string address = frame < 0 ? history_.back() : page.Page.address;
    Begin(page, address, form, button.empty() ? nullptr : &page.ControlNamed(button), frame);
}

void MemoryBrowser::Begin(MemoryDocument& page, const std::string& address, int form, const MemoryControl* pressed,
                          int frame)
{
    const FormSketch& sketch = page.Page.forms.at(static_cast<std::size_t>(form));
    const std::string body = FormUrlencoded(page.Entries(form, pressed));
    const std::string target = Resolved(address, sketch.action.value_or(""));
    if (sketch.method == "post") {
        Begin({.url = target,
               .postData = body,
               .headers = "Content-Type: application/x-www-form-urlencoded\r\n",
               .frame = frame});
    } else {
        Begin({.url = WithoutQuery(target) + "?" + body, .frame = frame});
    }
}

void MemoryBrowser::Deliver(int limit)
{
    for (; !pending_.empty() && limit > 0; --limit) {
        const Navigation next = std::move(pending_.front());
        pending_.pop_front();
        CarryOut(next);
    }
    pending_.clear();
}

void MemoryBrowser::CarryOut(const Navigation& navigation)
{
    std::shared_ptr<MemoryFrame> frame;
    if (navigation.frame >= 0) frame = Page->MemoryFrames.at(static_cast<std::size_t>(navigation.frame));
    BrowserObject& pDisp = frame ? static_cast<BrowserObject&>(*frame) : control_;
    BeforeNavigate2Event event{
        pDisp, navigation.url, 0, navigation.targetFrame, navigation.postData, navigation.headers};
    control_.BeforeNavigate2.Raise(event);
    Visited.push_back(navigation.url);
    Sent.push_back(navigation);
    if (frame) {
        ShowInFrame(navigation.url, navigation.frame);
    } else {
        Show(navigation.url);
    }
}

std::shared_ptr<MemoryDocument> MemoryBrowser::Load(const std::string& url)
{
    auto found = Site.find(url);
    if (found == Site.end()) found = Site.find(WithoutQuery(url));
    return std::make_shared<MemoryDocument>(found == Site.end() ? PageSketch{} : found->second, Log);
}

void MemoryBrowser::Show(const std::string& url)
{
    Page->End();
    Page = Load(url);
    history_.push_back(url);
    const auto clickedIn = [this](int frame) {
        return [this, frame](MemoryDocument& page, MemoryControl& control) {
            const std::string type = control.Type();
            if (control.form < 0 || (type != "submit" && type != "image")) return;
            Begin(page, frame < 0 ? history_.back() : page.Page.address, control.form, &control, frame);
        };
    };
    Page->Clicked = clickedIn(-1);
    for (std::size_t i = 0; i < Page->MemoryFrames.size(); ++i) {
        Page->MemoryFrames[i]->document->Clicked = clickedIn(static_cast<int>(i));
    }
    control_.CommandStateChange.Raise(WebBrowser::kCommandBack, history_.size() > 1);
    Complete(url);
}

void MemoryBrowser::ShowInFrame(const std::string& url, int frame)
{
    const auto object = Page->MemoryFrames.at(static_cast<std::size_t>(frame));
    object->document->End();
    object->document = Load(url);
    control_.DocumentComplete.Raise(*object, url);
}

void MemoryBrowser::Complete(const std::string& url)
{
    const auto page = Page;
    for (const auto& frame : page->MemoryFrames) control_.DocumentComplete.Raise(*frame, frame->document->Page.address);
    control_.DocumentComplete.Raise(control_, url);
}

}  // namespace velmora::test
