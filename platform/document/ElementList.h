// The elements of a form, or of a tag, of a live page: fetched in one trip, written in one.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/document/PageChannel.h"
#include "platform/document/PageFacts.h"

namespace velmora {

/// One document and the way to it. Every request throws once another document stands in its frame.
class DocumentLink {
public:
    explicit DocumentLink(PagePlace place) : place_(std::move(place)) {}

    const PagePlace& Place() const { return place_; }

    DocumentVersion Version() const { return place_.channel->Version(place_.document); }
    template <class Parse>
    auto Read(const std::vector<std::string>& request, Parse parse) const
    {
        return place_.channel->Read(place_.document, request, parse);
    }
    void Write(const std::vector<std::string>& request) const { place_.channel->Write(place_.document, request); }
    /// As PageChannel::WriteAll.
    std::size_t WriteAll(const std::vector<std::vector<std::string>>& requests) const
    {
        return place_.channel->WriteAll(place_.document, requests);
    }
    /// False if the element is still disabled at the end of the wait.
    bool Click(const std::string& handle) const;

private:
    PagePlace place_;
};

/// Elements count from 0. A request fails with DocumentError.
class ElementList {
public:
    ElementList(DocumentLink link, std::vector<std::string> request)
        : link_(std::move(link)), request_(std::move(request))
    {
    }

    /// The elements as they stood once, whatever has become of them.
    ElementList(DocumentLink link, std::vector<ElementFacts> kept)
        : link_(std::move(link)), elements_(std::move(kept)), isKept_(true)
    {
    }

    const DocumentLink& Link() const { return link_; }

    /// The elements have just been read.
    void Take(std::vector<ElementFacts> elements);

    /// The elements, as good as the last change of the structure.
    const std::vector<ElementFacts>& Structure();
    /// An element that was found at place i, with nothing that a write may have changed since.
    const ElementFacts& State(int i, const std::string& handle);
    /// The same, as good as the last change of the structure.
    const ElementFacts& Named(int i, const std::string& handle);

    /// Writes into the element at place i, or keeps that for Release.
    void Write(int i, std::vector<std::string> request);
    /// From now on writes are kept.
    void Hold() { holds_ = true; }
    std::size_t Held() const { return held_.size(); }
    /// Has what was kept written. Gives the place of the element from which on all is to be looked at anew: a write
    /// has changed the structure, or the page is slow and those behind it were not tried. Nothing if all stands as it
    /// was.
    std::optional<int> Release();

private:
    void Fetch() { Take(link_.Read(request_, ReadElements)); }

    DocumentLink link_;
    std::vector<std::string> request_;
    std::vector<ElementFacts> elements_;
    std::optional<DocumentVersion> fetched_;
    bool isKept_ = false;
    bool holds_ = false;
    std::vector<std::vector<std::string>> held_;
    std::vector<int> places_;  ///< Of the elements of what is held.
    /// The element among whose writes the last row ended, and how many of them were done.
    std::pair<std::string, std::size_t> choices_;
};

}  // namespace velmora
