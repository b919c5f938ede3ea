#include "platform/controls/PackedTexts.h"

#include <algorithm>
#include <stdexcept>

namespace velmora {

namespace {

constexpr unsigned kBitsOfByte = 7;
constexpr unsigned kMore = 1U << kBitsOfByte;

std::size_t ReadLength(const unsigned char*& at)
{
    std::size_t length = 0;
    for (unsigned shift = 0;; shift += kBitsOfByte) {
        const unsigned byte = *at++;
        length |= static_cast<std::size_t>(byte % kMore) << shift;
        if (byte < kMore) return length;
    }
}

std::size_t BytesOfLength(std::size_t length)
{
    std::size_t bytes = 1;
    while ((length >>= kBitsOfByte) > 0) ++bytes;
    return bytes;
}

unsigned char* WriteLength(unsigned char* at, std::size_t length)
{
    for (; length >= kMore; length >>= kBitsOfByte) *at++ = static_cast<unsigned char>(kMore | (length % kMore));
    *at++ = static_cast<unsigned char>(length);
    return at;
}

}  // namespace

PackedTexts::PackedTexts(const std::vector<std::string_view>& texts)
{
    if (texts.size() > kMost) throw std::length_error("too many texts");
    std::size_t size = 1;
    for (const std::string_view text : texts) size += BytesOfLength(text.size()) + text.size();
    // Not std::make_unique, which would clear what is filled at once.
    bytes_.reset(new unsigned char[size]);
    unsigned char* at = bytes_.get();
    *at++ = static_cast<unsigned char>(texts.size());
    for (const std::string_view text : texts) at = WriteLength(at, text.size());
    for (const std::string_view text : texts) at = std::copy(text.begin(), text.end(), at);
}

std::size_t PackedTexts::Count() const { return bytes_[0]; }

std::string_view PackedTexts::At(std::size_t i) const
{
    const unsigned char* at = bytes_.get() + 1;
    std::size_t before = 0;
    std::size_t length = 0;
    for (std::size_t k = 0; k < Count(); ++k) {
        const std::size_t next = ReadLength(at);
        if (k < i) before += next;
        if (k == i) length = next;
    }
    return {reinterpret_cast<const char*>(at) + (length > 0 ? before : 0), length};
}

std::vector<std::string_view> PackedTexts::All() const
{
    std::vector<std::string_view> texts(Count());
    for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = At(i);
    return texts;
}

void PackedTexts::Set(std::size_t i, std::string_view text)
{
    std::vector<std::string_view> texts = All();
    texts.at(i) = text;
    *this = PackedTexts(texts);
}

}  // namespace velmora
