#include "tests/support/CannedPages.h"

namespace velmora::test {

namespace {

template <class Items>
auto& At(Items& items, int i)
{
    if (i < 0 || static_cast<std::size_t>(i) >= items.size()) throw DocumentError("no item of that index");
    return items[static_cast<std::size_t>(i)];
}

class OptionView : public Option {
public:
    OptionView(const CannedOption& option, const CannedElement& list, Journal& journal)
        : option_(option), list_(list), journal_(journal)
    {
    }
    std::string Text() override { return option_.text; }
    std::string Value() override { return option_.value; }
    bool Selected() override { return option_.selected; }
    void Select() override { journal_.push_back("choose " + list_.name + ": " + option_.text); }

private:
    const CannedOption& option_;
    const CannedElement& list_;
    Journal& journal_;
};

class ElementView : public Element {
public:
    ElementView(const CannedElement& element, Journal& journal) : element_(element), journal_(journal) {}

    std::string Name() override { return Readable().name; }
    std::string Type() override { return Readable().type; }
    std::string Value() override { return Readable().value; }
    bool Checked() override { return Readable().checked; }
    std::string Src() override { return Readable().src; }
    int OptionsLength() override { return static_cast<int>(Readable().options.size()); }
    std::shared_ptr<Option> Options(int k) override
    {
        return std::make_shared<OptionView>(At(Readable().options, k), element_, journal_);
    }
    void SetValue(const std::string& value) override { journal_.push_back(Name() + " := " + value); }
    void Check() override { journal_.push_back("check " + Name() + "=" + Value()); }
    void Click() override { journal_.push_back("click " + Name()); }

private:
    const CannedElement& Readable() const
    {
        if (element_.unreadable) throw DocumentError("the element cannot be read");
        return element_;
    }

    const CannedElement& element_;
    Journal& journal_;
};

class ElementList : public ElementCollection {
public:
    int Length() override { return static_cast<int>(elements.size()); }
    std::shared_ptr<Element> Item(int i) override { return At(elements, i); }

    std::vector<std::shared_ptr<Element>> elements;
};

class DocumentView : public Document, public std::enable_shared_from_this<DocumentView> {
public:
    explicit DocumentView(CannedFrame& frame) : frame_(frame) {}

    int FramesLength() override { return static_cast<int>(frame_.frames.size()); }
    std::shared_ptr<BrowserObject> Frames(int i) override { return At(frame_.frames, i); }
    int FormsLength() override { return static_cast<int>(frame_.page.forms.size()); }
    std::shared_ptr<Form> Forms(int i) override;
    std::string InnerHtml() override
    {
        std::string html = frame_.page.html;
        if (!html.empty()) return html;
        for (const auto& form : frame_.page.forms) html += "<form action=" + form.action + " id=" + form.id + ">";
        return html;
    }
    std::shared_ptr<ElementCollection> GetElementsByTagName(const std::string&) override
    {
        const auto inputs = std::make_shared<ElementList>();
        for (const auto& form : frame_.page.forms) {
            for (const auto& element : form.elements) {
                if (element.options.empty()) inputs->elements.push_back(View(element));
            }
        }
        return inputs;
    }
    std::shared_ptr<Element> View(const CannedElement& element)
    {
        return std::make_shared<ElementView>(element, *frame_.journal);
    }

private:
    CannedFrame& frame_;
};

class FormView : public Form {
public:
    FormView(const CannedForm& form, std::shared_ptr<DocumentView> document)
        : form_(form), document_(std::move(document))
    {
        for (const auto& element : form.elements) {
            if (element.type != "image") elements_.push_back(document_->View(element));
        }
    }
    std::string Action() override { return form_.action; }
    std::string Id() override { return form_.id; }
    int Length() override { return static_cast<int>(elements_.size()); }
    std::shared_ptr<Element> Elements(int j) override { return At(elements_, j); }
    std::shared_ptr<velmora::Document> Document() override { return document_; }

private:
    const CannedForm& form_;
    std::shared_ptr<DocumentView> document_;
    std::vector<std::shared_ptr<Element>> elements_;
};

std::shared_ptr<Form> DocumentView::Forms(int i)
{
    return std::make_shared<FormView>(At(frame_.page.forms, i), shared_from_this());
}

}  // namespace

CannedFrame::CannedFrame(CannedPage told, std::shared_ptr<Journal> log) : page(std::move(told)), journal(std::move(log))
{
    for (const auto& frame : page.frames) frames.push_back(std::make_shared<CannedFrame>(frame, journal));
}

std::shared_ptr<velmora::Document> CannedFrame::Document()
{
    if (page.refuses) throw DocumentError("the frame refuses access");
    return std::make_shared<DocumentView>(*this);
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
    for (const auto& frame : page->frames) control_.DocumentComplete.Raise(*frame, frame->page.address);
    control_.DocumentComplete.Raise(control_, url);
}

}  // namespace velmora::test
