// A page in a few words, from which the in-memory document and the HTML for the real engine are
// made alike.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora::test {

struct OptionSketch {
    std::string text = {};
    std::optional<std::string> value = {};  ///< None: the option's value is its text.
    bool selected = false;
};

struct ControlSketch {
    std::string tag = "input";  ///< "input", "select", "textarea", "button", "fieldset", ...
    std::string type = {};      ///< The type attribute; empty: none is written.
    std::string name = {};
    std::optional<std::string> value = {};
    std::vector<OptionSketch> options = {};
    std::string src = {};
    std::string form = {};  ///< The id of the form that the control belongs to from elsewhere.
    bool checked = false;
    bool multiple = false;
    bool disabled = false;
    bool unreadable = false;  ///< In memory only: every read and write of it fails.
};

struct FormSketch {
    std::optional<std::string> action = {};
    std::vector<ControlSketch> controls = {};
    std::string id = {};
    std::string method = "post";
};

struct PageSketch {
    std::vector<FormSketch> forms = {};
    std::vector<ControlSketch> before = {};  ///< Controls in front of the forms.
    std::vector<ControlSketch> after = {};   ///< Controls behind the forms.
    std::vector<PageSketch> frames = {};
    std::string address = "about:srcdoc";  ///< In memory: what a frame completes with.
    bool refuses = false;                  ///< As a frame: from another origin, so that it cannot be read.
};

// The controls that pages are made of.
inline ControlSketch Text(std::string name, std::string value = {})
{
    return {.type = "text", .name = name, .value = value};
}
inline ControlSketch Password(std::string name, std::string value = {})
{
    return {.type = "password", .name = name, .value = value};
}
inline ControlSketch Hidden(std::string name, std::string value)
{
    return {.type = "hidden", .name = name, .value = value};
}
inline ControlSketch Area(std::string name, std::string value = {})
{
    return {.tag = "textarea", .name = name, .value = value};
}
inline ControlSketch Submit(std::string name = {}, std::string value = "Send")
{
    return {.type = "submit", .name = name, .value = value};
}
inline ControlSketch Image(std::string name, std::string src) { return {.type = "image", .name = name, .src = src}; }
inline ControlSketch Box(std::string name, std::string value, bool checked = false)
{
    return {.type = "checkbox", .name = name, .value = value, .checked = checked};
}
inline ControlSketch Radio(std::string name, std::string value, bool checked = false)
{
    return {.type = "radio", .name = name, .value = value, .checked = checked};
}
inline ControlSketch One(std::string name, std::vector<OptionSketch> options)
{
    return {.tag = "select", .name = name, .options = std::move(options)};
}
inline ControlSketch Many(std::string name, std::vector<OptionSketch> options)
{
    return {.tag = "select", .name = name, .options = std::move(options), .multiple = true};
}

enum class Quotes { Always, WhereNeeded };

/// What stands inside the document element.
std::string InnerHtmlOf(const PageSketch& page, Quotes quotes);
/// The page as HTML; frames stand in it, one that refuses has an origin of its own.
std::string HtmlOf(const PageSketch& page);

}  // namespace velmora::test
