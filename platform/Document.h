// The document model: what the program reads and writes of a page. Indexes count from 0.
//
// Every read and write of the document model may fail: the page may not answer, a frame may refuse
// access, the page's process may have died. All of these throw DocumentError. What an operation
// returns is never null. An object stays valid as long as it is held; once its page is gone, its
// operations throw.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace velmora {

class DocumentError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Document;

class Option {
public:
    virtual ~Option() = default;
    virtual std::string Text() = 0;
    virtual std::string Value() = 0;
    virtual bool Selected() = 0;
    /// Chooses the option as a user would. Nothing happens if it is chosen already.
    virtual void Select() = 0;
};

class Element {
public:
    virtual ~Element() = default;
    /// The name as it comes back from a record: of a name beyond ASCII, each byte that the form sends is
    /// one character of the code page; a plus sign is a blank.
    virtual std::string Name() = 0;
    virtual std::string Type() = 0;
    virtual std::string Value() = 0;
    /// Enters a text as a user would. Nothing happens if the element holds it already.
    virtual void SetValue(const std::string& value) = 0;
    virtual bool Checked() = 0;
    /// Ticks the box or radio button as a user would. Nothing happens if it is ticked already.
    virtual void Check() = 0;
    virtual std::string Src() = 0;
    virtual int OptionsLength() = 0;
    virtual std::shared_ptr<Option> Options(int k) = 0;
    /// Acts as a user's click; what comes of it comes as events after the caller has returned. Waits a few
    /// seconds for an element that is disabled; false if it stays so.
    virtual bool Click() = 0;
};

class Form {
public:
    virtual ~Form() = default;
    /// The action as written in the page; the whole address where that names no file, or an announced
    /// navigation would be spelled otherwise; the document's own address where there is none. "[object]"
    /// when a field of that name hides it.
    virtual std::string Action() = 0;
    /// The id; one is made up for a form without one whose action is hidden.
    virtual std::string Id() = 0;
    /// The elements that have a name, and behind them the buttons that submit without one.
    virtual int Length() = 0;
    virtual std::shared_ptr<Element> Elements(int j) = 0;
    /// Has each element written, in their order. What `write` puts into an element may reach the page only after the
    /// call; it goes by what elements there are and by their options, and reads nothing that a write may change. Where
    /// the page answers a write with other elements or options, it is called again for those behind.
    virtual void WriteEach(const std::function<void(Element&)>& write);
    virtual std::shared_ptr<velmora::Document> Document() = 0;
};

inline void Form::WriteEach(const std::function<void(Element&)>& write)
{
    const int elements = Length();
    for (int j = 0; j < elements; ++j) write(*Elements(j));
}

class ElementCollection {
public:
    virtual ~ElementCollection() = default;
    virtual int Length() = 0;
    virtual std::shared_ptr<Element> Item(int i) = 0;
};

/// The browser itself or one of its frames: whatever has a document.
class BrowserObject {
public:
    virtual ~BrowserObject() = default;
    virtual std::shared_ptr<velmora::Document> Document() = 0;
};

class Document {
public:
    virtual ~Document() = default;
    /// The frames that can be read and hold something to fill in; those of a frameset all count.
    virtual int FramesLength() = 0;
    virtual std::shared_ptr<BrowserObject> Frames(int i) = 0;
    virtual int FormsLength() = 0;
    virtual std::shared_ptr<Form> Forms(int i) = 0;
    /// The markup of the document as far as it matters here, as UTF-8: the tags of its forms, one after
    /// the other as Forms lists them, each with its action, spelled as Form::Action spells it, and its id.
    /// No value stands in quotes or holds a blank that the engine would announce otherwise.
    virtual std::string InnerHtml() = 0;
    /// All elements of a tag in the order of the document. The name is not case-sensitive.
    virtual std::shared_ptr<ElementCollection> GetElementsByTagName(const std::string& tag) = 0;
};

}  // namespace velmora
