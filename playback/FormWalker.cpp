#include <exception>
#include <optional>
#include <utility>

#include "platform/text/Search.h"
#include "playback/ElementKind.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

constexpr char kWrite[] = "WRITE";

// How much markup is searched for the actions of forms that hide theirs. A page with thousands of such
// forms would otherwise have all of it searched for each.
constexpr std::size_t kMostSearched = std::size_t{64} << 20;

// The document of a frame; null if the frame refuses access.
std::shared_ptr<Document> FrameDocument(Document& top, int i)
{
    try {
        return top.Frames(i)->Document();
    } catch (const std::exception&) {
        return nullptr;
    }
}

}  // namespace

void frmBrowser::ProcessDocument(BrowserObject& browser, const std::string& mode, std::string& action,
                                 std::string& postdata)
{
    try {
        const auto top = browser.Document();
        const int frames = top->FramesLength();
        for (int i = 0; i < frames; ++i) {
            const auto document = FrameDocument(*top, i);
            if (document && ProcessForm(mode, *document, action, postdata)) return;
        }
        ProcessForm(mode, *top, action, postdata);
    } catch (const std::exception&) {
        // A document that cannot be read holds no form.
    }
}

bool frmBrowser::ProcessForm(const std::string& mode, Document& document, std::string& action, std::string& postdata)
{
    try {
        SplitPostdata(postdata, gstrFieldNames, gstrFieldValues);
        const auto form = WalkForms(mode, document, action);
        if (!form) return false;
        if (mode != kWrite) {
            postdata = JoinPostdata(gstrFieldNames, gstrFieldValues);
            return true;
        }
        // Ahead of any click: the submission of a filled form is not captured.
        gbRecordArmed = false;
        if (mnuAutoClick.Checked()) SubmitForm(*form);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::shared_ptr<Form> frmBrowser::WalkForms(const std::string& mode, Document& document, std::string& action)
{
    std::optional<std::string> html;
    std::size_t searched = 0;
    const int forms = document.FormsLength();
    for (int i = 0; i < forms; ++i) {
        auto form = document.Forms(i);
        std::string formAction = form->Action();
        if (formAction == "[object]") {
            // One reading serves all forms: none is changed before the one that is found.
            if (!html) html = document.InnerHtml();
            searched += html->size();
            std::string written = searched <= kMostSearched ? FindFormTag(*html, form->Id()) : std::string();
            if (!written.empty()) formAction = std::move(written);
        }
        if (UrlsMatch(action, formAction) && WalkElements(mode, *form)) return form;
    }
    return nullptr;
}

bool frmBrowser::WalkElements(const std::string& mode, Form& form)
{
    const int elements = form.Length();
    std::string first;
    // Several forms of a page may go to one address: the first element tells the recorded one.
    if (elements > 0 && !GetFieldValue(LowerCase(form.Elements(0)->Name()), first)) return false;
    const auto visit = [&](Element& element) {
        const ElementKind kind = KindOf(element.Type());
        const std::string name = LowerCase(element.Name());
        std::string recorded;
        GetFieldValue(name, recorded);
        if (mode == kWrite) {
            WriteElement(element, kind, name, recorded);
        } else {
            ReadElement(element, kind, name, recorded);
        }
    };
    if (mode == kWrite) {
        form.WriteEach(visit);
    } else {
        for (int j = 0; j < elements; ++j) visit(*form.Elements(j));
    }
    return true;
}

void frmBrowser::SubmitForm(Form& form)
{
    const int elements = form.Length();
    for (int j = 0; j < elements; ++j) {
        const auto element = form.Elements(j);
        if (KindOf(element->Type()) == ElementKind::Submit) {
            if (!element->Click()) AskForClick();
            return;
        }
    }
    AutoClickSubmit(form, gstrFieldNames);
}

}  // namespace velmora
