#include <optional>
#include <stdexcept>
#include <string_view>

#include "platform/text/CodePage.h"
#include "platform/text/Search.h"
#include "platform/text/Utf8.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

constexpr std::size_t kMostFields = 60;

bool IsHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The number of the first `digits` hexadecimal digits; nothing if there are not that many.
std::optional<char32_t> HexNumber(std::string_view text, std::size_t digits)
{
    if (text.size() < digits) return std::nullopt;
    char32_t number = 0;
    for (const char c : text.substr(0, digits)) {
        if (!IsHexDigit(c)) return std::nullopt;
        number = 16 * number + static_cast<char32_t>(frmBrowser::HexDigitValue(static_cast<unsigned char>(c)));
    }
    return number;
}

// The UTF-16 unit of an escape "%uXXXX" at the beginning of the text.
std::optional<char32_t> UnitEscape(std::string_view text)
{
    return text.starts_with("%u") ? HexNumber(text.substr(2), 4) : std::nullopt;
}

struct Decoded {
    char32_t character;
    std::size_t length;  // of the escape
};

// The escape at the beginning of the text; nothing if it is none or only half of a character.
std::optional<Decoded> DecodeEscape(std::string_view text)
{
    if (const auto code = HexNumber(text.substr(1), 2)) {
        // This spelling gives a blank, as a bare "+" does; "%2b" gives the plus sign.
        if (text.substr(1, 2) == "2B") return Decoded{U' ', 3};
        return Decoded{CharacterOfCode(static_cast<unsigned char>(*code)), 3};
    }
    const auto unit = UnitEscape(text);
    if (!unit || IsLowSurrogate(*unit)) return std::nullopt;
    if (!IsHighSurrogate(*unit)) return Decoded{*unit, 6};
    const auto low = UnitEscape(text.substr(6));
    if (!low || !IsLowSurrogate(*low)) return std::nullopt;
    return Decoded{0x10000 + ((*unit - 0xD800) << 10) + (*low - 0xDC00), 12};
}

// Reads one character of an escaped text. A "%" that begins no escape stands for itself.
char32_t NextDecoded(std::string_view text, std::size_t& position)
{
    if (text[position] == '%') {
        if (const auto decoded = DecodeEscape(text.substr(position))) {
            position += decoded->length;
            return decoded->character;
        }
    }
    const char32_t character = NextCharacter(text, position);
    return character == U'+' ? U' ' : character;
}

/// Whether a byte is a character that stands for itself wherever it stands, as most do.
bool IsSmallLetterOrDigit(char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); }

void AppendHex(std::string& text, char32_t number, int digits)
{
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += "0123456789ABCDEF"[(number >> shift) & 0xF];
}

void AppendUnitEscape(std::string& text, char32_t unit)
{
    text += "%u";
    AppendHex(text, unit, 4);
}

void AppendEscape(std::string& text, char32_t character)
{
    if (const auto code = CodeOfCharacter(character)) {
        text += '%';
        AppendHex(text, *code, 2);
    } else if (character < 0x10000) {
        AppendUnitEscape(text, character);
    } else {
        AppendUnitEscape(text, 0xD800 + ((character - 0x10000) >> 10));
        AppendUnitEscape(text, 0xDC00 + ((character - 0x10000) & 0x3FF));
    }
}

}  // namespace

int frmBrowser::HexDigitValue(char32_t c)
{
    if (c >= U'A' && c <= U'F') return static_cast<int>(c - U'A') + 10;
    if (c >= U'a' && c <= U'f') return static_cast<int>(c - U'a') + 10;
    return static_cast<int>(c) - '0';
}

std::string frmBrowser::DecodeFieldText(const std::string& s)
{
    std::string text;
    text.reserve(s.size());
    for (std::size_t position = 0; position < s.size();) AppendCharacter(text, NextDecoded(s, position));
    return text;
}

std::string frmBrowser::EncodeFieldText(const std::string& s)
{
    const std::size_t first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    const std::string_view trimmed = std::string_view(s).substr(first, s.find_last_not_of(' ') + 1 - first);

    std::string encoded;
    for (std::size_t position = 0; position < trimmed.size();) {
        const char32_t character = NextCharacter(trimmed, position);
        if (IsAsciiLetterOrDigit(character)) {
            encoded += static_cast<char>(character);
        } else {
            AppendEscape(encoded, character);
        }
    }
    return encoded;
}

bool frmBrowser::FieldNameMatches(const std::string& fieldName, const std::string& wanted)
{
    // Character by character instead of by whole texts: a walk asks for each element against each
    // name, and nearly all differ at once.
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < fieldName.size() && j < wanted.size()) {
        if (fieldName[i] == wanted[j] && IsSmallLetterOrDigit(wanted[j])) {
            ++i, ++j;
            continue;
        }
        if (LowerCaseCharacter(NextDecoded(fieldName, i)) != NextCharacter(wanted, j)) return false;
    }
    return i == fieldName.size() && j == wanted.size();
}

bool frmBrowser::HasPair(const std::string& postdata) { return postdata.find('=') != std::string::npos; }

std::string frmBrowser::JoinPostdata(const std::vector<std::string>& names, const std::vector<std::string>& values)
{
    if (names.empty()) throw std::logic_error("the field table was never filled");
    std::string postdata;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) postdata += '&';
        postdata += names[i];
        postdata += '=';
        postdata += values.at(i);
    }
    return postdata;
}

void frmBrowser::SplitPostdata(const std::string& s, std::vector<std::string>& names, std::vector<std::string>& values)
{
    const std::string_view text = s;
    std::size_t count = 0;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find('&', start);
        const bool isLast = end == std::string_view::npos;
        const std::string_view piece = text.substr(start, isLast ? end : end - start);
        const std::size_t equals = piece.find('=');
        const bool isPair = equals != std::string_view::npos;
        if (count == kMostFields && (!isLast || isPair)) {
            // The text is fixed; the number in it is not that of the limit.
            ShowStatus("Warning: Only maximum 20 fields can be recorded!");
            return;
        }
        if (isPair) {
            // Cuts off what an earlier, longer table had after this place.
            names.resize(count + 1);
            values.resize(count + 1);
            names[count] = piece.substr(0, equals);
            values[count] = piece.substr(equals + 1);
            ++count;
        }
        if (isLast) return;
        start = end + 1;
    }
}

}  // namespace velmora
