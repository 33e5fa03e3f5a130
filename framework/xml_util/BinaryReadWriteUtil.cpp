#include "framework/xml_util/BinaryReadWriteUtil.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

#include "framework/xml_util/ByteChunks.h"

namespace KVR
{

namespace
{

template <class Item>
int ReadItem(std::FILE* file, Item& value, bool swapBytes)
{
    std::array<unsigned char, sizeof(Item)> bytes;
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size())
        return 0;
    if (swapBytes)
        std::reverse(bytes.begin(), bytes.end());
    std::memcpy(&value, bytes.data(), bytes.size());
    return 1;
}

bool ReadFlag(std::FILE* file, bool& flag)
{
    unsigned char byte = 0;
    if (std::fread(&byte, 1, 1, file) != 1)
        return false;
    flag = byte != 0;
    return true;
}

}  // namespace

int BinaryReadWriteUtil::BinaryRead(std::FILE* file, unsigned long long& value, bool swapBytes)
{
    return ReadItem(file, value, swapBytes);
}

int BinaryReadWriteUtil::BinaryRead(std::FILE* file, double& value, bool swapBytes)
{
    return ReadItem(file, value, swapBytes);
}

int BinaryReadWriteUtil::BinaryRead(std::FILE* file, unsigned int& value, bool swapBytes)
{
    return ReadItem(file, value, swapBytes);
}

bool BinaryReadWriteUtil::ReadData(std::FILE* file, UTF8String& text, bool swapBytes)
{
    unsigned long long length = 0;
    if (BinaryRead(file, length, swapBytes) == 0)
        return false;
    std::string bytes;
    if (!AppendBytes(file, length, bytes))
        return false;
    text = UTF8String(std::move(bytes));
    return true;
}

bool BinaryReadWriteUtil::ReadData(std::FILE* file, double& x, double& y, double& z, bool swapBytes)
{
    bool const hasX = BinaryRead(file, x, swapBytes) != 0;
    bool const hasY = BinaryRead(file, y, swapBytes) != 0;
    bool const hasZ = BinaryRead(file, z, swapBytes) != 0;
    return hasX && hasY && hasZ;
}

bool BinaryReadWriteUtil::ReadData(std::FILE* file, bool& first, bool& second, bool)
{
    bool const hasFirst = ReadFlag(file, first);
    bool const hasSecond = ReadFlag(file, second);
    return hasFirst && hasSecond;
}

}  // namespace KVR
