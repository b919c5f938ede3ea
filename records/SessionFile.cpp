#include <exception>
#include <utility>

#include "platform/Files.h"
#include "platform/text/CodePage.h"
#include "platform/text/Search.h"
#include "platform/text/Utf8.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

// What a name leaves out of an address: as many characters as "http://" has.
constexpr std::size_t kDroppedFromName = 7;

constexpr char kLineEnd[] = "\r\n";

std::string TagLine(const std::string& tag, const std::string& value)
{
    return "    <" + tag + ">" + value + "</" + tag + ">" + kLineEnd;
}

/// Where a tag begins, at a place or behind it. A load looks for so many that it is worth going by the marks.
std::size_t FindTag(const std::string& text, std::string_view mark, std::string_view tag, std::size_t from)
{
    std::size_t at = text.find('<', from);
    for (; at != std::string::npos; at = text.find('<', at + 1)) {
        const std::string_view rest = std::string_view(text).substr(at);
        const std::size_t end = mark.size() + tag.size();
        if (rest.size() <= end || rest[end] != '>' || !rest.starts_with(mark)) continue;
        if (EqualIgnoringCase(rest.substr(mark.size(), tag.size()), tag)) break;
    }
    return at;
}

// The values stand between the tags as they are: the files look like XML and are none.
std::string InFrame(const std::string& elements)
{
    return std::string("<?xml version=\"1.0\"?>") + kLineEnd + "<Velmora>" + kLineEnd + elements + "</Velmora>";
}

}  // namespace

std::string frmBrowser::BuildSessionXml(const RecordItem& record)
{
    std::string elements;
    for (const RecordField& field : kRecordFields) elements += TagLine(field.name, record.*field.text);
    return InFrame(elements);
}

std::string frmBrowser::BuildHomeXml(const std::string& home)
{
    return InFrame(TagLine("Type", kTypeHome) + TagLine("Home", home));
}

void frmBrowser::ParseSessionXml(const std::string& text, RecordItem& record)
{
    for (const RecordField& field : kRecordFields) {
        record.*field.text = GetXmlElement(text, field.name);
        if (record.Type == kTypeHome) return;
    }
    if (record.Type.empty()) record.Type = kTypeForm;
}

std::string frmBrowser::GetXmlElement(const std::string& text, const std::string& tag)
{
    const std::size_t begin = FindTag(text, "<", tag, 0);
    if (begin == std::string::npos) return {};
    const std::size_t value = text.find('>', begin) + 1;
    const std::size_t end = FindTag(text, "</", tag, value);
    return end == std::string::npos ? std::string() : text.substr(value, end - value);
}

std::string frmBrowser::MakeSessionFileName(const std::string& Url)
{
    std::string name;
    std::size_t count = 0;
    for (std::size_t position = 0; position < Url.size();) {
        const char32_t character = NextCharacter(Url, position);
        if (++count > kDroppedFromName) name += IsAsciiLetterOrDigit(character) ? static_cast<char>(character) : '_';
    }
    return name;
}

std::string frmBrowser::SessionFilePath(const std::string& Url)
{
    return gstrSessionPath + "/" + MakeSessionFileName(Url) + ".xml";
}

bool frmBrowser::ReadTextFile(const std::string& path, std::string& text)
{
    try {
        std::string bytes = platform_.files.Read(path);
        if (bytes.empty()) return false;
        text = TextOfBytes(std::move(bytes));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void frmBrowser::WriteTextFile(const std::string& path, const std::string& text)
{
    try {
        platform_.files.Write(path, BytesOfText(text + kLineEnd));
    } catch (const std::exception&) {
        // The file that was there still is; the row keeps the new values until the program ends.
    }
}

void frmBrowser::WriteSessionFile(const RecordItem& record)
{
    WriteTextFile(SessionFilePath(record.Url), BuildSessionXml(record));
}

}  // namespace velmora
