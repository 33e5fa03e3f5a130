#pragma once

#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/Enums.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

class Matrix3d;

/// Document text to the framework's values. A null text counts as empty. Numbers are read as StringUtil reads them; a
/// number of up to 256 characters is converted without allocation.
class KVR_XML_UTIL_API XMLStrUtil
{
public:
    /// Document text as UTF-8, exact; a lone surrogate becomes U+FFFD.
    static UTF8String XMLStrToAStr(XMLCh const* text);
    /// Document text as wide text, exact; a lone surrogate becomes U+FFFD.
    static UTF16String XMLStrToWStr(XMLCh const* text);
    /// 0 for a text that is no integer.
    static int XMLStrToInt(XMLCh const* text);
    /// False, with the output left alone, for a text that is no number.
    static bool XMLStrToDouble(XMLCh const* text, double& value);
    /// Appends the pieces between the separators, trimmed of blanks, tabs and line ends; empty pieces are dropped.
    static void SplitStr(UTF8String const& text, UTF8String const& separator, std::vector<UTF8String>& pieces);
    /// Reads 16 numbers in row order, separated by white space or commas. Any other count, or a piece that is no
    /// number, leaves the matrix alone.
    static void GetTransfFromStr(UTF8String const& text, Matrix3d& matrix);
    static void GetTransfFromStr(XMLCh const* text, Matrix3d& matrix);
    /// The unit whose enumerator has that name, exactly. False, with the output left alone, for any other text.
    static bool StringToUnitType(UTF8String const& text, UnitTypeEnum& unit);
    static bool StringToUnitType(XMLCh const* text, UnitTypeEnum& unit);
    /// The enumerator's name; null for a value that is no unit.
    static char const* UnitTypeToString(UnitTypeEnum unit) noexcept;
};

}  // namespace KVR
