// What page agents tell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/document/PageChannel.h"
#include "platform/document/PageFacts.h"

namespace velmora {

/// A navigation that a page is about to start, as its agent saw it.
struct PageAction {
    std::string url;  ///< Where it goes; a get form's without its fields.
    bool isForm = false;
    std::string method;          ///< "get" or "post".
    std::string target;          ///< Name of the target frame; empty when none is named.
    PagePlace place;             ///< The document that holds the form or the link.
    std::string body;            ///< Of a post, in the default encoding whatever the form's own is.
    std::uint64_t userActs = 0;  ///< Keys and buttons that the user has pressed in the document so far.
    std::string form;            ///< The handle of the form.
    bool isNews = false;         ///< The program has not been told of the form.
    std::string documentUrl;     ///< Where the form stood when it was sent. Of forms alone.
    bool staysHere = false;      ///< A link into the document that holds it.
};

/// What the texts of an action take.
inline std::size_t BytesOf(const PageAction& action)
{
    return action.url.size() + action.method.size() + action.target.size() + action.body.size() + action.form.size() +
           action.documentUrl.size();
}

/// A form that a page's own script has sent: what a navigation would have been, the time (milliseconds since
/// 1970), the form as it was.
struct PageSubmission {
    PageAction action;
    std::uint64_t time = 0;
    FormSnapshot form;
};

/// Whoever hears what the agents tell.
class PageListener {
public:
    virtual ~PageListener() = default;
    virtual void OnBegun(const PagePlace& place, const std::string& url, bool isTop) = 0;
    /// A document has finished; again for the sake of the forms of these handles alone, if there are any.
    virtual void OnFinished(const PagePlace& place, const std::string& url, bool isTop,
                            std::vector<std::string> laterForms) = 0;
    /// Whether a further submission would be taken; it need not be read otherwise.
    virtual bool TakesSubmissions() const = 0;
    virtual void OnSubmitted(PageSubmission submission) = 0;
};

}  // namespace velmora
