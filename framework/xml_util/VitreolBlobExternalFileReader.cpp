#include "framework/xml_util/VitreolBlobExternalFileReader.h"

#include <array>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "framework/api/IOUtil.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/BinaryReadWriteUtil.h"
#include "framework/xml_util/ByteChunks.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

namespace
{

constexpr std::array<char, 8> kMagic = {'K', 'V', 'R', 'A', 'S', 'S', 'E', 'T'};
constexpr unsigned long long kVersion = 1;

bool ReadHead(std::FILE* file, unsigned long long& count, bool swapBytes)
{
    std::array<char, kMagic.size()> magic;
    unsigned long long version = 0;
    return std::fread(magic.data(), 1, magic.size(), file) == magic.size() && magic == kMagic &&
           BinaryReadWriteUtil::BinaryRead(file, version, swapBytes) != 0 && version == kVersion &&
           BinaryReadWriteUtil::BinaryRead(file, count, swapBytes) != 0;
}

std::unique_ptr<VitreolSerializedAsset> ReadAsset(std::FILE* file, UTF8String& id, bool swapBytes)
{
    UTF8String type;
    unsigned long long size = 0;
    std::vector<unsigned char> bytes;
    if (!BinaryReadWriteUtil::ReadData(file, id, swapBytes) || !BinaryReadWriteUtil::ReadData(file, type, swapBytes) ||
        BinaryReadWriteUtil::BinaryRead(file, size, swapBytes) == 0 || !AppendBytes(file, size, bytes))
        return nullptr;
    return std::make_unique<VitreolSerializedAsset>(std::move(type), Blob(bytes.size(), bytes.data()));
}

}  // namespace

VitreolBlobExternalFileReader::VitreolBlobExternalFileReader(UTF16String const& path) : m_path(path) {}
VitreolBlobExternalFileReader::~VitreolBlobExternalFileReader() = default;

bool VitreolBlobExternalFileReader::LoadVitreolFromExternalFile(std::map<UTF8String, VitreolSerializedAsset*>& assets)
{
    bool const swapBytes = IOUtil::IsBigEndian();
    FilePtr const file(UTF8String(m_path), "rb");
    unsigned long long count = 0;
    if (!file || !ReadHead(file, count, swapBytes))
    {
        if (file)
            TellObserver(&ReadObserver::StoreFailed, StoreFailure::kUnreadable, "this is no file of material assets");
        else
            TellObserver(&ReadObserver::StoreFailed, StoreFailure::kNotOpened, "the file cannot be opened");
        return false;
    }
    TellObserver(&ReadObserver::RecordsClaimed, count);
    for (; count > 0; --count)
    {
        // Where a record stands is an observer's alone to know.
        unsigned long long const begin = Observer() ? static_cast<unsigned long long>(std::ftell(file)) : 0;
        UTF8String id;
        std::unique_ptr<VitreolSerializedAsset> asset = ReadAsset(file, id, swapBytes);
        if (!asset)
            return false;
        bool const isKept = assets.try_emplace(id, asset.get()).second;
        if (isKept)
            static_cast<void>(asset.release());
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            observer->RecordRead({"asset", id, begin, static_cast<unsigned long long>(std::ftell(file)), isKept});
    }
    return true;
}

}  // namespace KVR
