#include "fuzz/KernelHead.h"

#include <xxhash.h>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace KVR::Fuzz
{

namespace
{

template <class Number>
void Append(std::string& bytes, Number number)
{
    char raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);
    bytes.append(raw, sizeof number);
}

}  // namespace

std::string WithHead(std::string_view content, bool isText)
{
    std::uint64_t const digest = XXH3_64bits(content.data(), content.size());
    std::string bytes = isText ? "KVRKERNT " : "KVRKERNB";
    if (isText)
    {
        char numbers[64];
        std::snprintf(numbers, sizeof numbers, "%016x %016llx %016zx\n", 1U, static_cast<unsigned long long>(digest),
                      content.size());
        bytes += numbers;
    }
    else
    {
        Append(bytes, std::uint64_t{1});
        Append(bytes, digest);
        Append(bytes, std::uint64_t{content.size()});
    }
    return bytes.append(content);
}

}  // namespace KVR::Fuzz
