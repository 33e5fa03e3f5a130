#include "framework/xml_util/VitreolBlobExternalFileReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "framework/api/IOUtil.h"
#include "framework/api/LargePages.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/BinaryReadWriteUtil.h"
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

// Where the file ends, which bounds what it may claim; 0 when the system does not say.
unsigned long long EndOf(std::FILE* file)
{
    long const here = std::ftell(file);
    if (here < 0 || std::fseek(file, 0, SEEK_END) != 0)
        return 0;
    long const end = std::ftell(file);
    return std::fseek(file, here, SEEK_SET) == 0 && end > 0 ? static_cast<unsigned long long>(end) : 0;
}

// Gives assets places in large pages, which small assets of a file share: what is read lands where it stays. A page
// lives as long as the last asset in it.
class AssetMemory
{
public:
    // `left`: the bytes of the file that may yet become assets, this one's among them.
    std::shared_ptr<std::byte> Take(std::size_t size, unsigned long long left)
    {
        if (size > kBlock / 2)
            return MakeBlock(size);
        if (m_left < size)
        {
            m_left = static_cast<std::size_t>(std::min<unsigned long long>(left, kBlock));
            m_block = MakeBlock(m_left);
            m_next = m_block.get();
        }
        std::byte* const place = m_next;
        std::size_t const taken = std::min(m_left, (size + kAlignment - 1) / kAlignment * kAlignment);
        m_next += taken;
        m_left -= taken;
        return {m_block, place};
    }

private:
    static constexpr std::size_t kBlock = kLargePage;
    static constexpr std::size_t kAlignment = alignof(std::max_align_t);
    static constexpr std::align_val_t kBlockAlignment{kLargePage};

    static std::shared_ptr<std::byte> MakeBlock(std::size_t size)
    {
        if (size < kLargePage)
            return {static_cast<std::byte*>(::operator new(size)), [](std::byte* block) { ::operator delete(block); }};
        auto* const block = static_cast<std::byte*>(::operator new(size, kBlockAlignment));
        AdviseLargePages(block, size);
        return {block, [](std::byte* memory) { ::operator delete(memory, kBlockAlignment); }};
    }

    std::shared_ptr<std::byte> m_block;
    std::byte* m_next = nullptr;
    std::size_t m_left = 0;
};

std::unique_ptr<VitreolSerializedAsset> ReadAsset(std::FILE* file, unsigned long long end, AssetMemory& memory,
                                                  UTF8String& id, bool swapBytes)
{
    UTF8String type;
    unsigned long long size = 0;
    if (!BinaryReadWriteUtil::ReadData(file, id, swapBytes) || !BinaryReadWriteUtil::ReadData(file, type, swapBytes) ||
        BinaryReadWriteUtil::BinaryRead(file, size, swapBytes) == 0)
        return nullptr;
    long const here = std::ftell(file);
    unsigned long long const left = here < 0 ? 0 : end - std::min(end, static_cast<unsigned long long>(here));
    if (size > left)
        return nullptr;
    std::shared_ptr<std::byte> const bytes = memory.Take(static_cast<std::size_t>(size), left);
    // The file gives less than its size when it is cut while it is read.
    if (std::fread(bytes.get(), 1, static_cast<std::size_t>(size), file) != size)
        return nullptr;
    return std::make_unique<VitreolSerializedAsset>(std::move(type), bytes, size);
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
    unsigned long long const end = EndOf(file);
    AssetMemory memory;
    for (; count > 0; --count)
    {
        // Where a record stands is an observer's alone to know.
        unsigned long long const begin = Observer() ? static_cast<unsigned long long>(std::ftell(file)) : 0;
        UTF8String id;
        std::unique_ptr<VitreolSerializedAsset> asset = ReadAsset(file, end, memory, id, swapBytes);
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
