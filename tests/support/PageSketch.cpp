#include "tests/support/PageSketch.h"

namespace velmora::test {

namespace {

std::string Escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        default: result += c;
        }
    }
    return result;
}

class Writer {
public:
    explicit Writer(Quotes quotes) : quotes_(quotes) {}

    void Page(const PageSketch& page)
    {
        html_ += "<head><meta charset=\"utf-8\"></head><body>\n";
        for (const auto& control : page.before) Control(control);
        for (const auto& form : page.forms) Form(form);
        for (const auto& control : page.after) Control(control);
        for (const auto& frame : page.frames) Frame(frame);
        html_ += "</body>";
    }
    std::string Take() { return std::move(html_); }

private:
    void Attribute(const std::string& name, const std::string& value)
    {
        const bool bare = quotes_ == Quotes::WhereNeeded && !value.empty() &&
                          value.find_first_of(" \t\r\n\"'<>`") == std::string::npos;
        html_ += " " + name + "=" + (bare ? value : "\"" + Escaped(value) + "\"");
    }
    void AttributeIfAny(const std::string& name, const std::string& value)
    {
        if (!value.empty()) Attribute(name, value);
    }
    void Flag(const std::string& name, bool set)
    {
        if (set) Attribute(name, "");
    }

    void Form(const FormSketch& form)
    {
        html_ += "<form";
        if (form.action) Attribute("action", *form.action);
        AttributeIfAny("id", form.id);
        Attribute("method", form.method);
        html_ += ">\n";
        for (const auto& control : form.controls) Control(control);
        html_ += "</form>\n";
    }

    void Control(const ControlSketch& control)
    {
        html_ += "<" + control.tag;
        AttributeIfAny("type", control.type);
        AttributeIfAny("name", control.name);
        if (control.value && control.tag != "textarea") Attribute("value", *control.value);
        AttributeIfAny("src", control.src);
        AttributeIfAny("form", control.form);
        Flag("checked", control.checked);
        Flag("multiple", control.multiple);
        Flag("disabled", control.disabled);
        html_ += ">";
        if (control.tag == "textarea") html_ += "\n" + Escaped(control.value.value_or(""));
        for (const auto& option : control.options) Option(option);
        if (control.tag != "input") html_ += "</" + control.tag + ">";
        html_ += "\n";
    }

    void Option(const OptionSketch& option)
    {
        html_ += "<option";
        if (option.value) Attribute("value", *option.value);
        Flag("selected", option.selected);
        html_ += ">" + Escaped(option.text) + "</option>";
    }

    void Frame(const PageSketch& frame)
    {
        html_ += "<iframe";
        Flag("sandbox", frame.refuses);
        Attribute("srcdoc", HtmlOf(frame));
        html_ += "></iframe>\n";
    }

    Quotes quotes_;
    std::string html_;
};

}  // namespace

std::string InnerHtmlOf(const PageSketch& page, Quotes quotes)
{
    Writer writer(quotes);
    writer.Page(page);
    return writer.Take();
}

std::string HtmlOf(const PageSketch& page)
{
    return "<!DOCTYPE html><html>" + InnerHtmlOf(page, Quotes::Always) + "</html>";
}

}  // namespace velmora::test
