#include "platform/text/Utf8.h"

#include <cstdint>
#include <cstring>
#include <optional>

#include "platform/text/CodePage.h"

namespace velmora {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// The length of a UTF-8 sequence by its first byte; 1 if no sequence begins with it.
std::size_t SequenceLength(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 1;
}

// The character of a sequence of two to four bytes; nothing if it is cut short, over-long, a
// surrogate or beyond the last character.
std::optional<char32_t> CharacterOfSequence(std::string_view sequence, std::size_t length)
{
    if (sequence.size() < length) return std::nullopt;
    char32_t character = static_cast<unsigned char>(sequence[0]) & (0x7Fu >> length);
    for (const char c : sequence.substr(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0u) != 0x80) return std::nullopt;
        character = (character << 6) | (byte & 0x3Fu);
    }
    constexpr char32_t kFirst[] = {0x80, 0x800, 0x10000};
    if (character < kFirst[length - 2] || character > 0x10FFFF) return std::nullopt;
    if (character >= 0xD800 && character <= 0xDFFF) return std::nullopt;
    return character;
}

}  // namespace

char32_t NextCharacter(std::string_view text, std::size_t& position)
{
    const auto lead = static_cast<unsigned char>(text[position]);
    const std::size_t length = SequenceLength(lead);
    if (length > 1) {
        if (const auto character = CharacterOfSequence(text.substr(position, length), length)) {
            position += length;
            return *character;
        }
    }
    ++position;
    return CharacterOfCode(lead);
}

void AppendCharacter(std::string& text, char32_t character)
{
    if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) character = kReplacement;
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        tail(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | (character >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (character >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

std::vector<char32_t> CharactersOf(std::string_view text)
{
    std::vector<char32_t> characters;
    characters.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) characters.push_back(NextCharacter(text, position));
    return characters;
}

bool IsAscii(std::string_view text)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::uint64_t bits = 0;
    for (; text.size() >= sizeof bits; text.remove_prefix(sizeof bits)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), sizeof word);
        bits |= word;
    }
    for (const char c : text) bits |= static_cast<unsigned char>(c);
    return (bits & kHighBits) == 0;
}

bool IsAsciiLetterOrDigit(char32_t character)
{
    return (character >= U'0' && character <= U'9') || (character >= U'A' && character <= U'Z') ||
           (character >= U'a' && character <= U'z');
}

}  // namespace velmora
