#include "platform/agent/Converter.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/unistr.h>

#include <memory>

namespace velmora {

std::string Convert(std::string_view text, const std::string& encoding)
{
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding.c_str(), &error), ucnv_close);
    if (U_FAILURE(error)) return {};
    // The engine's own settings.
    ucnv_setFallback(converter.get(), true);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_ESCAPE, UCNV_ESCAPE_XML_DEC, nullptr, nullptr, &error);
    const auto units = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::string bytes(static_cast<std::size_t>(UCNV_GET_MAX_BYTES_FOR_STRING(units.length(), 10)), '\0');
    const int32_t length = ucnv_fromUChars(converter.get(), bytes.data(), static_cast<int32_t>(bytes.size()),
                                           units.getBuffer(), units.length(), &error);
    bytes.resize(U_FAILURE(error) ? 0 : static_cast<std::size_t>(length));
    return bytes;
}

}  // namespace velmora
