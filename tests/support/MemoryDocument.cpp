#include "tests/support/MemoryDocument.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>
#include <stdexcept>

namespace velmora::test {

namespace {

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

/// Trims white space and makes one blank of every run of it.
std::string Collapsed(const std::string& text)
{
    std::istringstream words(text);
    std::string result;
    for (std::string word; words >> word;) result += (result.empty() ? "" : " ") + word;
    return result;
}

template <class Items>
auto& At(Items& items, int i)
{
    if (i < 0 || static_cast<std::size_t>(i) >= items.size()) throw DocumentError("no item of that index");
    return items[static_cast<std::size_t>(i)];
}

/// Whether a control is among a form's elements.
bool IsElement(const ControlSketch& control)
{
    if (control.tag == "input") return control.type != "image";
    return control.tag == "select" || control.tag == "textarea" || control.tag == "button";
}

std::string OptionValue(const OptionSketch& option) { return option.value.value_or(Collapsed(option.text)); }

class MemoryOption : public Option {
public:
    MemoryOption(std::shared_ptr<MemoryDocument> page, MemoryControl& control, int k)
        : page_(std::move(page)), control_(control), k_(k)
    {
    }

    std::string Text() override { return Collapsed(Sketch().text); }
    std::string Value() override { return OptionValue(Sketch()); }
    bool Selected() override { return Sketch().selected; }
    void Select() override
    {
        if (Sketch().selected) return;
        control_.SelectOption(static_cast<std::size_t>(k_));
        page_->Log->push_back("choose " + control_.Name() + ": " + Text());
    }

private:
    OptionSketch& Sketch() const
    {
        page_->RequirePresent();
        return At(control_.sketch.options, k_);
    }

    std::shared_ptr<MemoryDocument> page_;
    MemoryControl& control_;
    int k_;
};

class MemoryForm : public Form {
public:
    MemoryForm(std::shared_ptr<MemoryDocument> page, int index) : page_(std::move(page)), index_(index) {}

    std::string Action() override
    {
        const auto own = OwnControls();
        const bool hidden = std::any_of(own.begin(), own.end(),
                                        [](auto* c) { return c->Name() == "action" && c->sketch.type != "image"; });
        return hidden ? "[object]" : Sketch().action.value_or("");
    }
    std::string Id() override { return Sketch().id; }
    int Length() override { return static_cast<int>(ListedControls().size()); }
    std::shared_ptr<Element> Elements(int j) override
    {
        auto listed = ListedControls();
        return std::make_shared<MemoryElement>(page_, *At(listed, j));
    }
    std::shared_ptr<velmora::Document> Document() override { return page_; }

private:
    const FormSketch& Sketch() const
    {
        page_->RequirePresent();
        return At(page_->Page.forms, index_);
    }
    std::vector<MemoryControl*> OwnControls() const
    {
        page_->RequirePresent();
        std::vector<MemoryControl*> own;
        for (auto& control : page_->Controls) {
            if (control->form == index_) own.push_back(control.get());
        }
        return own;
    }
    std::vector<MemoryControl*> ListedControls() const
    {
        auto listed = OwnControls();
        std::erase_if(listed, [](auto* c) { return !IsElement(c->sketch); });
        return listed;
    }

    std::shared_ptr<MemoryDocument> page_;
    int index_;
};

class MemoryCollection : public ElementCollection {
public:
    MemoryCollection(std::shared_ptr<MemoryDocument> page, std::vector<MemoryControl*> controls)
        : page_(std::move(page)), controls_(std::move(controls))
    {
    }
    int Length() override
    {
        page_->RequirePresent();
        return static_cast<int>(controls_.size());
    }
    std::shared_ptr<Element> Item(int i) override
    {
        page_->RequirePresent();
        return std::make_shared<MemoryElement>(page_, *At(controls_, i));
    }

private:
    std::shared_ptr<MemoryDocument> page_;
    std::vector<MemoryControl*> controls_;
};

}  // namespace

// --- A control's state ----------------------------------------------------------------------------

MemoryControl::MemoryControl(const ControlSketch& from)
    : sketch(from), value(from.value.value_or("")), checked(from.checked)
{
    const auto selected = [](const OptionSketch& option) { return option.selected; };
    auto& options = sketch.options;
    if (!sketch.multiple && !options.empty() && std::none_of(options.begin(), options.end(), selected)) {
        options.front().selected = true;
    }
}

std::string MemoryControl::Type() const
{
    if (sketch.tag == "select") return sketch.multiple ? "select-multiple" : "select-one";
    if (sketch.tag == "textarea") return "textarea";
    if (sketch.tag == "button") return sketch.type.empty() ? "submit" : sketch.type;
    static const std::set<std::string> known{"text",  "password", "hidden", "checkbox", "radio", "submit",
                                             "image", "button",   "reset",  "file",     "email", "number"};
    const std::string type = Lower(sketch.type);
    return known.contains(type) ? type : "text";
}

std::string MemoryControl::Value() const
{
    if (sketch.tag == "select") {
        const auto chosen = std::find_if(sketch.options.begin(), sketch.options.end(),
                                         [](const OptionSketch& option) { return option.selected; });
        return chosen == sketch.options.end() ? "" : OptionValue(*chosen);
    }
    if ((Type() == "checkbox" || Type() == "radio") && !sketch.value) return "on";
    return value;
}

void MemoryControl::SelectOption(std::size_t k)
{
    if (!sketch.multiple) {
        for (auto& option : sketch.options) option.selected = false;
    }
    sketch.options.at(k).selected = true;
}

// --- Elements -------------------------------------------------------------------------------------

MemoryControl& MemoryElement::Readable() const
{
    page_->RequirePresent();
    if (control_.sketch.unreadable) throw DocumentError("the element cannot be read");
    return control_;
}

std::string MemoryElement::Name() { return Readable().Name(); }
std::string MemoryElement::Type() { return Readable().Type(); }
std::string MemoryElement::Value() { return Readable().Value(); }
bool MemoryElement::Checked() { return Readable().checked; }
std::string MemoryElement::Src() { return Readable().sketch.src; }
int MemoryElement::OptionsLength() { return static_cast<int>(Readable().sketch.options.size()); }

void MemoryElement::SetValue(const std::string& value)
{
    if (Readable().value == value) return;
    control_.value = value;
    page_->Log->push_back(control_.Name() + " := " + value);
}

void MemoryElement::Check()
{
    if (Readable().checked) return;
    page_->UncheckGroup(control_);
    control_.checked = true;
    page_->Log->push_back("check " + control_.Name() + "=" + control_.Value());
}

std::shared_ptr<Option> MemoryElement::Options(int k)
{
    At(Readable().sketch.options, k);
    return std::make_shared<MemoryOption>(page_, control_, k);
}

void MemoryElement::Click()
{
    Readable();
    page_->Log->push_back("click " + control_.Name());
    if (page_->Clicked) page_->Clicked(*page_, control_);
}

// --- Documents ------------------------------------------------------------------------------------

std::shared_ptr<velmora::Document> MemoryFrame::Document()
{
    if (document->Page.refuses) throw DocumentError("the frame refuses access");
    return document;
}

MemoryDocument::MemoryDocument(PageSketch page, std::shared_ptr<Journal> journal)
    : Page(std::move(page)), Log(std::move(journal))
{
    AddControls(Page.before, -1);
    for (std::size_t i = 0; i < Page.forms.size(); ++i) AddControls(Page.forms[i].controls, static_cast<int>(i));
    AddControls(Page.after, -1);
    for (const auto& frame : Page.frames) {
        MemoryFrames.push_back(std::make_shared<MemoryFrame>(std::make_shared<MemoryDocument>(frame, Log)));
    }
}

void MemoryDocument::AddControls(const std::vector<ControlSketch>& sketches, int form)
{
    for (const auto& sketch : sketches) {
        auto control = std::make_unique<MemoryControl>(sketch);
        control->form = form;
        for (std::size_t i = 0; i < Page.forms.size() && !sketch.form.empty(); ++i) {
            if (Page.forms[i].id == sketch.form) control->form = static_cast<int>(i);
        }
        Controls.push_back(std::move(control));
    }
}

int MemoryDocument::FramesLength() { return RequirePresent(), static_cast<int>(MemoryFrames.size()); }

std::shared_ptr<BrowserObject> MemoryDocument::Frames(int i)
{
    RequirePresent();
    return At(MemoryFrames, i);
}

int MemoryDocument::FormsLength()
{
    RequirePresent();
    return static_cast<int>(Page.forms.size());
}

std::shared_ptr<Form> MemoryDocument::Forms(int i)
{
    RequirePresent();
    At(Page.forms, i);
    return std::make_shared<MemoryForm>(shared_from_this(), i);
}

std::string MemoryDocument::InnerHtml()
{
    RequirePresent();
    return InnerHtmlOf(Page, Quotes::WhereNeeded);
}

std::shared_ptr<ElementCollection> MemoryDocument::GetElementsByTagName(const std::string& tag)
{
    RequirePresent();
    std::vector<MemoryControl*> found;
    for (auto& control : Controls) {
        if (control->sketch.tag == Lower(tag)) found.push_back(control.get());
    }
    return std::make_shared<MemoryCollection>(shared_from_this(), std::move(found));
}

void MemoryDocument::UncheckGroup(const MemoryControl& radio)
{
    if (radio.Type() != "radio") return;
    for (auto& other : Controls) {
        if (other->Type() == "radio" && other->Name() == radio.Name() && other->form == radio.form) {
            other->checked = false;
        }
    }
}

MemoryControl& MemoryDocument::ControlNamed(const std::string& name)
{
    for (auto& control : Controls) {
        if (control->Name() == name) return *control;
    }
    throw std::out_of_range("the page has no control " + name);
}

void MemoryDocument::Enter(const std::string& name, const std::string& value) { ControlNamed(name).value = value; }

void MemoryDocument::Tick(const std::string& name, const std::string& value)
{
    for (auto& control : Controls) {
        if (control->Name() != name || control->Value() != value) continue;
        UncheckGroup(*control);
        control->checked = true;
        return;
    }
    throw std::out_of_range("the page has no box " + name + "=" + value);
}

void MemoryDocument::Choose(const std::string& name, const std::string& optionText)
{
    MemoryControl& control = ControlNamed(name);
    for (std::size_t k = 0; k < control.sketch.options.size(); ++k) {
        if (Collapsed(control.sketch.options[k].text) == optionText) return control.SelectOption(k);
    }
    throw std::out_of_range("the list has no option " + optionText);
}

MemoryDocument::EntryList MemoryDocument::Entries(int form, const MemoryControl* pressed) const
{
    EntryList entries;
    for (const auto& control : Controls) {
        const std::string type = control->Type();
        const bool button = type == "submit" || type == "image" || type == "button" || type == "reset";
        if (control->form != form || control->sketch.disabled || control->Name().empty()) continue;
        if (button && control.get() != pressed) continue;
        if ((type == "checkbox" || type == "radio") && !control->checked) continue;
        if (control->sketch.tag == "select") {
            for (const auto& option : control->sketch.options) {
                if (option.selected) entries.emplace_back(control->Name(), OptionValue(option));
            }
        } else if (type == "image") {
            entries.emplace_back(control->Name() + ".x", "0");
            entries.emplace_back(control->Name() + ".y", "0");
        } else {
            entries.emplace_back(control->Name(), control->Value());
        }
    }
    return entries;
}

void MemoryDocument::End()
{
    gone_ = true;
    for (auto& frame : MemoryFrames) frame->document->End();
}

void MemoryDocument::RequirePresent() const
{
    if (gone_) throw DocumentError("the page is gone");
    if (Page.refuses) throw DocumentError("the frame refuses access");
}

}  // namespace velmora::test
