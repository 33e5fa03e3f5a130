#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/history_stream.h"
#include "framework/kernel/outcome.h"

namespace KVR::Test
{

/// The bytes of a store with the entities.
std::string StoreBytes(std::vector<std::unique_ptr<ENTITY>> const& entities, bool isText);
/// A store of any content, with a head that fits it.
std::string WithHead(std::string const& content, bool isText);
/// A number as the binary form has it.
std::string WordBytes(std::uint64_t value);
/// A store of one body of compounds in one another, so many, around a box.
std::string NestedStoreBytes(int depth, bool isText);

/// A file of the bytes, which have to outlive it, open for reading, gone with the scope.
class StoreFileOfBytes
{
public:
    explicit StoreFileOfBytes(std::string const& bytes);
    ~StoreFileOfBytes();
    StoreFileOfBytes(StoreFileOfBytes const&) = delete;
    StoreFileOfBytes& operator=(StoreFileOfBytes const&) = delete;
    std::FILE* File() const noexcept { return m_file; }

private:
    std::FILE* m_file;
};

/// What became of restoring the bytes, in a stream of its own.
struct RestoredStore
{
    RestoredStore(std::string const& bytes, bool isText, bool allowsInsecure);

    std::unique_ptr<HISTORY_STREAM> stream;
    std::unique_ptr<ENTITY_LIST> entities;
    outcome result;
    bool isInsecure = false;
    bool isInsecureRestored = false;
};

}  // namespace KVR::Test
