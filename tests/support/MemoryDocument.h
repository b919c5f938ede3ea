// A document held in memory, made from a sketch. It behaves as a page in the engine does; the same
// tests hold for both. What the program writes and clicks goes into a journal.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Browser.h"
#include "tests/support/PageSketch.h"

namespace velmora::test {

/// What the program did to pages, one line each: "user := anna", "check news=yes", "choose color: Red",
/// "click go".
using Journal = std::vector<std::string>;

class MemoryDocument;

/// A control of a page in its present state.
struct MemoryControl {
    explicit MemoryControl(const ControlSketch& from);

    std::string Type() const;
    std::string Value() const;
    /// What `name` and `value` are in the journal's lines and in a submission.
    const std::string& Name() const { return sketch.name; }
    void SelectOption(std::size_t k);

    ControlSketch sketch;  ///< Its options carry the present selection.
    std::string value;
    bool checked;
    int form = -1;  ///< The form that it belongs to, from 0; -1: none.
};

/// A frame: its own document, or a refusal.
class MemoryFrame : public BrowserObject {
public:
    explicit MemoryFrame(std::shared_ptr<MemoryDocument> page) : document(std::move(page)) {}
    std::shared_ptr<velmora::Document> Document() override;

    std::shared_ptr<MemoryDocument> document;
};

class MemoryDocument : public Document, public std::enable_shared_from_this<MemoryDocument> {
public:
    using EntryList = std::vector<std::pair<std::string, std::string>>;

    explicit MemoryDocument(PageSketch page, std::shared_ptr<Journal> journal = std::make_shared<Journal>());

    int FramesLength() override;
    std::shared_ptr<BrowserObject> Frames(int i) override;
    int FormsLength() override;
    std::shared_ptr<Form> Forms(int i) override;
    std::string InnerHtml() override;
    std::shared_ptr<ElementCollection> GetElementsByTagName(const std::string& tag) override;

    // The user's own hands: no line in the journal. The first control that fits is meant; a test
    // that names one that is not there fails with std::out_of_range.
    void Enter(const std::string& name, const std::string& value);
    void Tick(const std::string& name, const std::string& value);
    void Choose(const std::string& name, const std::string& optionText);

    /// What a form sends when `pressed` (or nothing, null) submits it.
    EntryList Entries(int form, const MemoryControl* pressed) const;
    MemoryControl& ControlNamed(const std::string& name);

    /// Ends the page: from now on everything throws.
    void End();
    /// Throws DocumentError once the page is gone.
    void RequirePresent() const;

    const PageSketch Page;
    const std::shared_ptr<Journal> Log;
    std::vector<std::shared_ptr<MemoryFrame>> MemoryFrames;
    std::vector<std::unique_ptr<MemoryControl>> Controls;  ///< In the order of the document.
    /// A control was clicked by the program.
    std::function<void(MemoryDocument&, MemoryControl&)> Clicked;

private:
    void AddControls(const std::vector<ControlSketch>& sketches, int form);
    void UncheckGroup(const MemoryControl& radio);

    friend class MemoryElement;
    bool gone_ = false;
};

class MemoryElement : public Element {
public:
    MemoryElement(std::shared_ptr<MemoryDocument> page, MemoryControl& control)
        : page_(std::move(page)), control_(control)
    {
    }

    std::string Name() override;
    std::string Type() override;
    std::string Value() override;
    void SetValue(const std::string& value) override;
    bool Checked() override;
    void Check() override;
    std::string Src() override;
    int OptionsLength() override;
    std::shared_ptr<Option> Options(int k) override;
    void Click() override;

private:
    MemoryControl& Readable() const;

    std::shared_ptr<MemoryDocument> page_;
    MemoryControl& control_;
};

}  // namespace velmora::test
