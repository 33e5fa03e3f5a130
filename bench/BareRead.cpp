#include "bench/BareRead.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

#include "bench/ProcessorTime.h"
#include "framework/api/LargePages.h"

namespace KVR::Bench
{

namespace
{

constexpr std::align_val_t kAlignment{kLargePage};

struct FreeAligned
{
    void operator()(std::byte* block) const noexcept { ::operator delete(block, kAlignment); }
};

}  // namespace

void ReadBare(std::filesystem::path const& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file)
        throw std::runtime_error("Cannot read " + path.string());
    std::vector<char> buffer(1 << 20);
    while (std::fread(buffer.data(), 1, buffer.size(), file) == buffer.size())
    {
    }
    std::fclose(file);
}

double SecondsOfFreshMemory(double bytes)
{
    constexpr std::size_t kBlock = 8 * 1024 * 1024;
    std::vector<std::unique_ptr<std::byte, FreeAligned>> blocks(static_cast<std::size_t>(bytes) / kBlock + 1);
    return SecondsOf(
        [&]
        {
            for (auto& block : blocks)
            {
                block.reset(static_cast<std::byte*>(::operator new(kBlock, kAlignment)));
                AdviseLargePages(block.get(), kBlock);
                std::memset(block.get(), 1, kBlock);
            }
        });
}

}  // namespace KVR::Bench
