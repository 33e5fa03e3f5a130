#pragma once

#include <string_view>

#include "framework/api/Export.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Text to number and back, independent of every locale and without allocation. A number is the whole text, with ASCII
/// white space allowed at both ends; "inf", "nan", hexadecimal forms, a decimal comma, trailing characters and values
/// out of range do not convert. An output is left alone on failure; a null text does not convert.
class KVR_API StringUtil
{
public:
    enum ConversionStatusEnum : int
    {
        kConversionStatus_Success = 0,
        kConversionStatus_NotANumber = 1,
        kConversionStatus_OutOfRange = 2
    };

    /// Decimal or scientific notation with an optional sign.
    static ConversionStatusEnum ToDouble(char const* text, double& value);
    static ConversionStatusEnum ToDouble(UTF8String const& text, double& value);
    static ConversionStatusEnum ToDouble(std::string_view text, double& value);
    /// Digits of the base, 2 to 36, with an optional sign.
    static ConversionStatusEnum ToInt(char const* text, int& value, int base);
    static ConversionStatusEnum ToInt(UTF8String const& text, int& value, int base);
    /// Digits of the base, 2 to 36, with an optional plus.
    static ConversionStatusEnum ToUnsignedlong(char const* text, unsigned long& value, int base);

    /// The pieces between the separators as they stand, repeats kept. Empty pieces are kept unless `skipEmpty`, so that
    /// "1,0," gives three and the empty text one. An empty separator gives the whole text.
    static IdSet Split(UTF8String const& text, UTF8String const& separator, bool skipEmpty);

    /// The format with its first "%lu" replaced by the number in decimal; null counts as "%lu".
    static UTF8String FromUnsignedlong(unsigned long value, char const* format);
};

}  // namespace KVR
