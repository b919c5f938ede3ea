#include "platform/controls/PackedTexts.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

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

std::size_t PackedTexts::Count() const { return bytes_ ? bytes_[0] : 0; }

PackedTexts::Views PackedTexts::Unpacked() const
{
    Views texts;
    const std::size_t count = Count();
    if (count == 0) return texts;
    std::array<std::size_t, kMost> lengths{};
    const unsigned char* at = bytes_.get() + 1;
    for (std::size_t i = 0; i < count; ++i) lengths[i] = ReadLength(at);
    for (std::size_t i = 0; i < count; at += lengths[i++]) {
        texts[i] = {reinterpret_cast<const char*>(at), lengths[i]};
    }
    return texts;
}

std::string_view PackedTexts::At(std::size_t i) const { return i < kMost ? Unpacked()[i] : std::string_view(); }

void PackedTexts::Set(std::size_t i, std::string_view text)
{
    Views texts = Unpacked();
    texts.at(i) = text;
    Pack(Count(), texts);
}

void PackedTexts::Add(std::string_view text)
{
    const std::size_t count = Count();
    if (count == kMost) throw std::length_error("too many texts");
    Views texts = Unpacked();
    texts.at(count) = text;
    Pack(count + 1, texts);
}

void PackedTexts::Pack(std::size_t count, const Views& texts)
{
    std::size_t size = 1;
    for (std::size_t i = 0; i < count; ++i) size += BytesOfLength(texts[i].size()) + texts[i].size();
    // Not std::make_unique, which would clear what is filled at once.
    std::unique_ptr<unsigned char[]> packed(new unsigned char[size]);
    unsigned char* at = packed.get();
    *at++ = static_cast<unsigned char>(count);
    for (std::size_t i = 0; i < count; ++i) at = WriteLength(at, texts[i].size());
    for (std::size_t i = 0; i < count; ++i) at = std::copy(texts[i].begin(), texts[i].end(), at);
    bytes_ = std::move(packed);
}

}  // namespace velmora
