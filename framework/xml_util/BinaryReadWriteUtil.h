#pragma once

#include <cstdio>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// Reads the primitive items of the binary side files, which are little-endian. `swapBytes` is
/// IOUtil::IsBigEndian(). An output is left alone when the file cannot deliver its item.
class KVR_XML_UTIL_API BinaryReadWriteUtil
{
public:
    /// The number of items read, 1 or 0.
    static int BinaryRead(std::FILE* file, unsigned long long& value, bool swapBytes);
    static int BinaryRead(std::FILE* file, double& value, bool swapBytes);
    static int BinaryRead(std::FILE* file, unsigned int& value, bool swapBytes);

    /// A u64 length in bytes and that many bytes of UTF-8. With a length that the file cannot deliver, what is left of
    /// the file is consumed and the answer is false. Memory is taken as bytes arrive.
    static bool ReadData(std::FILE* file, UTF8String& text, bool swapBytes);
    /// Three doubles, each by itself; whether all were there.
    static bool ReadData(std::FILE* file, double& x, double& y, double& z, bool swapBytes);
    /// Two bytes, of which any value but 0 is true; whether both were there.
    static bool ReadData(std::FILE* file, bool& first, bool& second, bool swapBytes);
};

}  // namespace KVR
