#include "platform/webkit/Markup.h"

#include <array>
#include <cstddef>
#include <utility>

#include "platform/CodePage.h"

namespace velmora {

namespace {

constexpr auto npos = std::string_view::npos;

// The only references that the engine writes when it serialises an attribute (HTML, "escaping a
// string").
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kReferences{{
    {"&amp;", "&"},
    {"&nbsp;", "\xC2\xA0"},
    {"&quot;", "\""},
    {"&lt;", "<"},
    {"&gt;", ">"},
}};

std::string Decoded(std::string_view value)
{
    std::string text;
    while (!value.empty()) {
        const std::size_t mark = value.find('&');
        text += value.substr(0, mark);
        if (mark == npos) break;
        value.remove_prefix(mark);
        std::string_view source = value.substr(0, 1);
        std::string_view decoded = source;
        for (const auto& [reference, character] : kReferences) {
            if (value.starts_with(reference)) {
                source = reference;
                decoded = character;
            }
        }
        text += decoded;
        value.remove_prefix(source.size());
    }
    return text;
}

// An "=" inside is let through: an action with a query of its own would keep its quotes otherwise,
// and no submission would ever match it.
bool NeedsNoQuotes(std::string_view value) { return !value.empty() && value.find_first_of(" \t\n\f\r\"'<>`") == npos; }

/// Copies one tag from its "<" on and gives what is behind it.
std::string_view CopyTag(std::string_view rest, std::string& out)
{
    std::size_t from = 0;
    for (;;) {
        const std::size_t mark = rest.find_first_of("\">", from);
        if (mark == npos) {
            out += rest;
            return {};
        }
        if (rest[mark] == '>') {
            out += rest.substr(0, mark + 1);
            return rest.substr(mark + 1);
        }
        const std::size_t end = rest.find('"', mark + 1);
        if (end == npos) {
            out += rest;
            return {};
        }
        const std::string value = Decoded(rest.substr(mark + 1, end - mark - 1));
        if (NeedsNoQuotes(value)) {
            out += rest.substr(0, mark);
            out += value;
        } else {
            out += rest.substr(0, end + 1);
        }
        rest.remove_prefix(end + 1);
        from = 0;
    }
}

/// The end of what stands as raw text behind "<": a comment, or the inside of an element whose text
/// is no markup. 0 if an ordinary tag begins here.
std::size_t RawTextEnd(std::string_view rest)
{
    if (rest.starts_with("<!--")) {
        const std::size_t end = rest.find("-->", 4);
        return end == npos ? rest.size() : end + 3;
    }
    for (const std::string_view name : {"script", "style"}) {
        if (rest.substr(1, name.size()) != name) continue;
        const std::size_t end = FindIgnoringCase(rest, std::string("</") + std::string(name));
        return end == npos ? rest.size() : end;
    }
    return 0;
}

}  // namespace

std::string PlainMarkup(std::string_view markup)
{
    std::string out;
    out.reserve(markup.size());
    while (!markup.empty()) {
        const std::size_t tag = markup.find('<');
        out += markup.substr(0, tag);
        if (tag == npos) break;
        markup.remove_prefix(tag);
        if (const std::size_t raw = RawTextEnd(markup); raw > 0) {
            out += markup.substr(0, raw);
            markup.remove_prefix(raw);
        } else {
            markup = CopyTag(markup, out);
        }
    }
    return out;
}

}  // namespace velmora
