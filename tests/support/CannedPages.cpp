#include "tests/support/CannedPages.h"

namespace velmora::test {

namespace {

template <class Items>
auto& At(Items& items, int i)
{
    MayFail<DocumentError>();
    if (i < 0 || static_cast<std::size_t>(i) >= items.size()) throw DocumentError("no item of that index");
    return items[static_cast<std::size_t>(i)];
}

/// What the pages own is handed out as it is.
template <class Part>
std::shared_ptr<Part> Handle(Part& part)
{
    return {std::shared_ptr<void>(), &part};
}

class OptionView : public Option {
public:
    OptionView(const CannedOption& option, CannedElement& list) : option_(option), list_(list) {}
    std::string Text() override { return Told(option_.text); }
    std::string Value() override { return Told(option_.value); }
    bool Selected() override { return Told(option_.selected); }
    void Select() override { list_.journal->push_back("choose " + list_.Name() + ": " + option_.text); }

private:
    const CannedOption& option_;
    CannedElement& list_;
};

class ElementList : public ElementCollection {
public:
    int Length() override { return static_cast<int>(Told(elements).size()); }
    std::shared_ptr<Element> Item(int i) override { return At(elements, i); }

    std::vector<std::shared_ptr<Element>> elements;
};

class FormView : public Form {
public:
    FormView(CannedForm& form, std::shared_ptr<velmora::Document> document)
        : form_(form), document_(std::move(document))
    {
        for (auto& element : form.elements) {
            if (!element.IsImage()) list_.elements.push_back(Handle<Element>(element));
        }
    }
    std::string Action() override { return Told(form_.action); }
    std::string Id() override { return Told(form_.id); }
    int Length() override { return list_.Length(); }
    std::shared_ptr<Element> Elements(int j) override { return list_.Item(j); }
    std::shared_ptr<velmora::Document> Document() override { return Told(document_); }

private:
    const CannedForm& form_;
    std::shared_ptr<velmora::Document> document_;
    ElementList list_;
};

}  // namespace

std::shared_ptr<Option> CannedElement::Options(int k)
{
    return std::make_shared<OptionView>(At(Readable(options), k), *this);
}

CannedFrame::CannedFrame(CannedPage page, std::shared_ptr<Journal> journal)
    : page_(std::move(page)), journal_(std::move(journal))
{
    for (const auto& frame : page_.frames) frames.push_back(std::make_shared<CannedFrame>(frame, journal_));
    for (auto& form : page_.forms) {
        for (auto& element : form.elements) element.journal = journal_.get();
    }
}

std::shared_ptr<velmora::Document> CannedFrame::Document()
{
    MayFail<DocumentError>();
    if (page_.refuses) throw DocumentError("the frame refuses access");
    return Handle<velmora::Document>(*this);
}

std::shared_ptr<BrowserObject> CannedFrame::Frames(int i) { return At(frames, i); }

std::shared_ptr<Form> CannedFrame::Forms(int i) { return std::make_shared<FormView>(At(page_.forms, i), Document()); }

std::string CannedFrame::InnerHtml()
{
    std::string html = Told(page_.html);
    if (!html.empty()) return html;
    for (const auto& form : page_.forms) html += "<form action=" + form.action + " id=" + form.id + ">";
    return html;
}

std::shared_ptr<ElementCollection> CannedFrame::GetElementsByTagName(const std::string&)
{
    MayFail<DocumentError>();
    const auto inputs = std::make_shared<ElementList>();
    for (auto& form : page_.forms) {
        for (auto& element : form.elements) {
            if (element.options.empty()) inputs->elements.push_back(Handle<Element>(element));
        }
    }
    return inputs;
}

CannedBrowser::CannedBrowser(WebBrowser& control, const std::map<std::string, CannedPage>& site)
    : control_(control), site_(site)
{
    control_.Attach(this);
}

void CannedBrowser::Navigate(const std::string& url)
{
    Visited.push_back(url);
    pending_.push_back(url);
}

void CannedBrowser::Deliver()
{
    while (!pending_.empty()) {
        const std::string url = std::exchange(pending_.front(), {});
        pending_.pop_front();
        BeforeNavigate2Event event{control_, url, 0, "", "", ""};
        control_.BeforeNavigate2.Raise(event);
        const auto found = site_.find(url);
        Page = std::make_shared<CannedFrame>(found == site_.end() ? CannedPage{} : found->second, Log);
        Complete(url);
    }
}

void CannedBrowser::Complete(const std::string& url)
{
    const auto page = Page;
    for (const auto& frame : page->frames) control_.DocumentComplete.Raise(*frame, frame->Address());
    control_.DocumentComplete.Raise(control_, url);
}

}  // namespace velmora::test
