// The document model of a live page, over the channel to its agent.
//
// A form's facts come in one trip and are kept until the page's structure changes or, for what a
// write may change elsewhere (values, ticks, choices), until the next write.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/document/PageChannel.h"
#include "platform/document/PageFacts.h"

namespace velmora {

/// A frame as the events hand it on, with the document that the event is about. Once another stands in
/// the frame, every read and write fails.
class PageFrame : public BrowserObject {
public:
    explicit PageFrame(PagePlace place) : place_(std::move(place)) {}
    std::shared_ptr<velmora::Document> Document() override;

private:
    PagePlace place_;
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
std::shared_ptr<Document> OpenDocument(const PagePlace& place);

}  // namespace velmora
