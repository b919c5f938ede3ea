#include "platform/webkit/FormEncoding.h"

#include <cstddef>

#include "platform/CodePage.h"

namespace velmora {

namespace {

std::string WithCrLf(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        if (text[i] == '\r' || text[i] == '\n') {
            result += "\r\n";
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string Windows1252Bytes(std::string_view text)
{
    std::string bytes;
    for (std::size_t position = 0; position < text.size();) {
        const char32_t character = NextCharacter(text, position);
        if (const auto code = CodeOfCharacter(character)) {
            bytes += static_cast<char>(*code);
        } else {
            bytes += "&#" + std::to_string(static_cast<unsigned long>(character)) + ";";
        }
    }
    return bytes;
}

bool StaysAsItIs(unsigned char byte)
{
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '*' || byte == '-' || byte == '.' || byte == '_';
}

void AppendEscaped(std::string& body, std::string_view text, std::string_view encoding)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    const std::string lines = WithCrLf(text);
    const std::string bytes = encoding == "windows-1252" ? Windows1252Bytes(lines) : lines;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (StaysAsItIs(byte)) {
            body += c;
        } else if (byte == ' ') {
            body += '+';
        } else {
            body += '%';
            body += kDigits[byte >> 4];
            body += kDigits[byte & 15];
        }
    }
}

}  // namespace

std::string EncodeForm(const FormEntries& entries, std::string_view encoding)
{
    std::string body;
    for (const auto& [name, value] : entries) {
        if (!body.empty()) body += '&';
        AppendEscaped(body, name, encoding);
        body += '=';
        AppendEscaped(body, value, encoding);
    }
    return body;
}

}  // namespace velmora
