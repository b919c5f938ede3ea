#include "platform/document/PageDocument.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/document/ElementList.h"

namespace velmora {

namespace {

// Each frame costs a trip. No real page has this many; a page that says so wants the program to hang.
constexpr std::uint64_t kMostFrames = 1000;

// Fields that are written in one go. What is to be written must not take much memory, nor be told in vain too often.
constexpr std::size_t kMostAtOnce = 256;

/// Whether an element's value is its attribute (HTML, "value mode": default and default/on), so that
/// only a change of the structure can change it.
bool HoldsValueInMarkup(const std::string& type)
{
    static const std::set<std::string> kTypes{"hidden", "submit", "image", "reset", "button", "checkbox", "radio"};
    return kTypes.contains(type);
}

template <class Items>
auto& At(Items& items, int i, const char* what)
{
    if (i < 0 || static_cast<std::size_t>(i) >= items.size()) throw DocumentError(std::string("no such ") + what);
    return items[static_cast<std::size_t>(i)];
}

/// An order of forms as the agent takes it.
const char* NameOf(FormOrder::Kind kind)
{
    constexpr const char* kKinds[] = {"all", "first", "only"};
    return kKinds[static_cast<int>(kind)];
}

/// The tag of a form. Neither its action nor its id holds a blank or a ">".
std::string TagOf(const FormFacts& form)
{
    const auto attribute = [](const char* name, const std::string& value) {
        return value.empty() ? std::string() : std::string(" ") + name + "=" + value;
    };
    return "<form" + attribute("action", form.action) + attribute("id", form.id) + " >";
}

class PageOption : public Option {
public:
    PageOption(std::shared_ptr<ElementList> list, int element, std::string handle, int index)
        : list_(std::move(list)), element_(element), handle_(std::move(handle)), index_(index)
    {
    }

    std::string Text() override { return Facts(list_->Named(element_, handle_)).text; }
    std::string Value() override { return Facts(list_->Named(element_, handle_)).value; }
    bool Selected() override { return Facts(list_->State(element_, handle_)).selected; }
    void Select() override { list_->Write(element_, {"select", handle_, std::to_string(index_)}); }

private:
    const OptionFacts& Facts(const ElementFacts& element) const { return At(element.options, index_, "option"); }

    std::shared_ptr<ElementList> list_;
    int element_;
    std::string handle_;
    int index_;
};

class PageElement : public Element {
public:
    PageElement(std::shared_ptr<ElementList> list, int index)
        : list_(std::move(list)), index_(index), handle_(At(list_->Structure(), index, "element").handle)
    {
    }

    std::string Name() override { return Facts().name; }
    std::string Type() override { return Facts().type; }
    std::string Value() override
    {
        const ElementFacts& element = Facts();
        return HoldsValueInMarkup(element.type) ? element.value : list_->State(index_, handle_).value;
    }
    void SetValue(const std::string& value) override { list_->Write(index_, {"value", handle_, value}); }
    bool Checked() override { return list_->State(index_, handle_).checked; }
    void Check() override { list_->Write(index_, {"check", handle_}); }
    std::string Src() override { return Facts().src; }
    int OptionsLength() override { return static_cast<int>(Facts().options.size()); }
    std::shared_ptr<Option> Options(int k) override
    {
        At(Facts().options, k, "option");
        return std::make_shared<PageOption>(list_, index_, handle_, k);
    }
    bool Click() override { return list_->Link().Click(handle_); }

private:
    const ElementFacts& Facts() { return list_->Named(index_, handle_); }

    std::shared_ptr<ElementList> list_;
    int index_;
    std::string handle_;
};

class PageElements : public ElementCollection {
public:
    explicit PageElements(std::shared_ptr<ElementList> list) : list_(std::move(list)) {}
    int Length() override { return static_cast<int>(list_->Structure().size()); }
    std::shared_ptr<Element> Item(int i) override { return std::make_shared<PageElement>(list_, i); }

private:
    std::shared_ptr<ElementList> list_;
};

class PageForm : public Form {
public:
    PageForm(std::shared_ptr<velmora::Document> document, FormFacts facts, std::shared_ptr<ElementList> elements)
        : document_(std::move(document)), facts_(std::move(facts)), elements_(std::move(elements))
    {
    }

    std::string Action() override { return facts_.hidesAction ? "[object]" : facts_.action; }
    std::string Id() override { return facts_.id; }
    int Length() override { return static_cast<int>(elements_->Structure().size()); }
    std::shared_ptr<Element> Elements(int j) override { return std::make_shared<PageElement>(elements_, j); }
    std::shared_ptr<velmora::Document> Document() override { return document_; }

    void WriteEach(const std::function<void(Element&)>& write) override
    {
        // A page that adds a line for the next entry whenever one is filled in would get one after the other.
        const int count = Length();
        // A page that changes its structure at each write gets one at a time.
        std::size_t most = kMostAtOnce;
        for (int j = 0; j < std::min(count, Length());) {
            std::exception_ptr failure;
            elements_->Hold();
            try {
                for (; j < std::min(count, Length()) && elements_->Held() < most; ++j) {
                    PageElement element(elements_, j);
                    write(element);
                }
            } catch (const std::exception&) {
                failure = std::current_exception();
            }
            // What was written before the failure is; a change of the structure may be its end.
            const auto changed = elements_->Release();
            if (!changed && failure) std::rethrow_exception(failure);
            j = changed.value_or(j);
            most = changed ? 1 : std::min(2 * most, kMostAtOnce);
        }
    }

private:
    std::shared_ptr<velmora::Document> document_;
    FormFacts facts_;
    std::shared_ptr<ElementList> elements_;
};

class PageDocument : public Document, public std::enable_shared_from_this<PageDocument> {
public:
    PageDocument(PagePlace place, FormOrder order) : link_(std::move(place)), order_(std::move(order)) {}

    int FramesLength() override { return static_cast<int>(Facts().frames.size()); }

    std::shared_ptr<BrowserObject> Frames(int i) override
    {
        const std::string& frame = At(Facts().frames, i, "frame");
        const auto inside = link_.Read({"frame", frame}, [](wire::Reader& reader) {
            wire::DocumentName name;
            reader.Read(name.frame, name.number);
            return name;
        });
        return std::make_shared<PageFrame>(PagePlace{link_.Place().channel, inside});
    }

    int FormsLength() override { return static_cast<int>(Facts().forms.size()); }

    /// All objects of one form share what was fetched of its elements.
    std::shared_ptr<Form> Forms(int i) override
    {
        const FormFacts& form = At(Facts().forms, i, "form");
        return std::make_shared<PageForm>(shared_from_this(), form, ElementsOf(form));
    }

    std::string InnerHtml() override
    {
        std::string html;
        for (const FormFacts& form : Facts().forms) html += (html.empty() ? "" : "\n") + TagOf(form);
        return html;
    }

    std::shared_ptr<ElementCollection> GetElementsByTagName(const std::string& tag) override
    {
        return std::make_shared<PageElements>(
            std::make_shared<ElementList>(link_, std::vector<std::string>{"tag", tag}));
    }

private:
    struct DocumentFacts {
        std::vector<std::string> frames;  ///< Their places in the window.
        std::vector<FormFacts> forms;
    };

    const std::shared_ptr<ElementList>& ElementsOf(const FormFacts& form)
    {
        auto& elements = elements_[form.handle];
        if (!elements) {
            const std::vector<std::string> request{"form", form.handle, NameOf(order_.kind)};
            elements = std::make_shared<ElementList>(link_, request);
        }
        return elements;
    }

    const DocumentFacts& Facts()
    {
        if (fetched_ && *fetched_ == link_.Version().revision) return facts_;
        std::vector<std::string> request{"document", NameOf(order_.kind)};
        request.insert(request.end(), order_.handles.begin(), order_.handles.end());
        const bool isSent = order_.kind == FormOrder::Kind::First;
        std::vector<ElementFacts> sent;
        facts_ = link_.Read(request, [&](wire::Reader& reader) {
            DocumentFacts facts;
            facts.frames = ReadSeveral(reader, [](wire::Reader& part) { return part.Text(); });
            if (facts.frames.size() > kMostFrames) throw DocumentError("the page has too many frames");
            facts.forms = ReadSeveral(reader, ReadForm);
            if (isSent) sent = ReadElements(reader);
            return facts;
        });
        fetched_ = link_.Version().revision;
        if (isSent) ElementsOf(At(facts_.forms, 0, "form"))->Take(std::move(sent));
        return facts_;
    }

    DocumentLink link_;
    FormOrder order_;
    DocumentFacts facts_;
    std::optional<std::uint64_t> fetched_;
    std::map<std::string, std::shared_ptr<ElementList>> elements_;
};

/// A document of which one form counts, as it was submitted; all else is that of the live page.
class SubmittedDocument : public Document, public std::enable_shared_from_this<SubmittedDocument> {
public:
    SubmittedDocument(PagePlace place, const FormSnapshot& snapshot)
        : link_(std::move(place)), form_(snapshot.form),
          elements_(std::make_shared<ElementList>(link_, snapshot.elements))
    {
    }

    int FramesLength() override { return 0; }
    std::shared_ptr<BrowserObject> Frames(int) override { throw DocumentError("no such frame"); }
    int FormsLength() override { return 1; }
    std::shared_ptr<Form> Forms(int i) override
    {
        if (i != 0) throw DocumentError("no such form");
        return std::make_shared<PageForm>(shared_from_this(), form_, elements_);
    }
    std::string InnerHtml() override { return OpenDocument(link_.Place())->InnerHtml(); }
    std::shared_ptr<ElementCollection> GetElementsByTagName(const std::string& tag) override
    {
        return OpenDocument(link_.Place())->GetElementsByTagName(tag);
    }

private:
    DocumentLink link_;
    FormFacts form_;
    std::shared_ptr<ElementList> elements_;
};

}  // namespace

std::shared_ptr<Document> SubmittedFrame::Document()
{
    if (!place_.channel) throw DocumentError("the page has no document that can be read");
    return std::make_shared<SubmittedDocument>(place_, snapshot_);
}

std::shared_ptr<Document> PageFrame::Document()
{
    if (document_ && place_.channel->HasJustAnswered()) return document_;
    document_.reset();
    document_ = OpenDocument(place_, order_);
    return document_;
}

std::shared_ptr<Document> OpenDocument(const PagePlace& place, const FormOrder& order)
{
    if (!place.channel) throw DocumentError("the page has no document that can be read");
    auto document = std::make_shared<PageDocument>(place, order);
    document->FramesLength();  // a document that cannot be read is refused here
    return document;
}

}  // namespace velmora
