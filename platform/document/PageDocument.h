// The document model of a live page, over the channel to its agent.
//
// A form's facts come in one trip and are kept until the page's structure changes or, for what a
// write may change elsewhere (values, ticks, choices), until the next write.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/document/PageChannel.h"
#include "platform/document/PageFacts.h"

namespace velmora {

/// Which of its forms a document lists, and which of them first.
struct FormOrder {
    enum class Kind {
        All,    ///< All, in the order of the page.
        First,  ///< That of the one handle, whose elements are read with it, ahead of the others. The frames inside
                ///< are not looked at.
        Only,   ///< Those of the handles alone.
    };
    Kind kind = Kind::All;
    std::vector<std::string> handles = {};
};

/// A frame as the events hand it on, with the document that the event is about. Once another stands in
/// the frame, every read and write fails.
class PageFrame : public BrowserObject {
public:
    explicit PageFrame(PagePlace place, FormOrder order = {}) : place_(std::move(place)), order_(std::move(order)) {}
    std::shared_ptr<velmora::Document> Document() override;

private:
    PagePlace place_;
    FormOrder order_;
    std::shared_ptr<velmora::Document> document_;  ///< As it was last opened.
};

/// A frame in which the page's own script sends a form. Its document holds that one form, as it was
/// when the user submitted it: the script may have emptied it since.
class SubmittedFrame : public BrowserObject {
public:
    SubmittedFrame(PagePlace place, FormSnapshot snapshot) : place_(std::move(place)), snapshot_(std::move(snapshot)) {}
    std::shared_ptr<velmora::Document> Document() override;

private:
    PagePlace place_;
    FormSnapshot snapshot_;
};

/// The document of that name. Throws DocumentError if it cannot be reached.
std::shared_ptr<Document> OpenDocument(const PagePlace& place, const FormOrder& order = {});

}  // namespace velmora
