#include "tests/support/KernelBytes.h"

#include <gtest/gtest.h>
#include <xxhash.h>
#include <BRep_Builder.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shape.hxx>

#include "framework/kernel/global_data.h"
#include "framework/kernel/restore.h"
#include "tests/support/RunOnStack.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

std::string ContentOf(std::FILE* file)
{
    std::string bytes;
    std::rewind(file);
    char buffer[4096];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
        bytes.append(buffer, got);
    return bytes;
}

}  // namespace

std::string StoreBytes(std::vector<std::unique_ptr<ENTITY>> const& entities, bool isText)
{
    ENTITY_LIST list(false);
    for (auto const& entity : entities)
        list.add(entity.get());
    std::FILE* const file = std::tmpfile();
    outcome const result = GKI_SAVE(file, isText).execute_save(list);
    EXPECT_TRUE(result.ok()) << result.message();
    std::string bytes = ContentOf(file);
    std::fclose(file);
    return bytes;
}

std::string WithHead(std::string const& content, bool isText)
{
    std::uint64_t const digest = XXH3_64bits(content.data(), content.size());
    if (!isText)
        return "KVRKERNB" + WordBytes(1) + WordBytes(digest) + WordBytes(content.size()) + content;
    char numbers[64];
    std::snprintf(numbers, sizeof numbers, "%016x %016llx %016llx\n", 1U, static_cast<unsigned long long>(digest),
                  static_cast<unsigned long long>(content.size()));
    return std::string("KVRKERNT ") + numbers + content;
}

std::string WordBytes(std::uint64_t value)
{
    std::string bytes;
    for (int i = 0; i < 8; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
    return bytes;
}

std::string NestedStoreBytes(int depth, bool isText)
{
    std::string bytes;
    // Open CASCADE goes down the nesting on the stack when it writes.
    RunOnStack(1024 * 1024 * 1024,
               [&]
               {
                   BRep_Builder builder;
                   TopoDS_Shape shape = BoxShape(1, 1, 1);
                   for (int i = 0; i < depth; ++i)
                   {
                       TopoDS_Compound compound;
                       builder.MakeCompound(compound);
                       builder.Add(compound, shape);
                       shape = compound;
                   }
                   std::vector<std::unique_ptr<ENTITY>> entities;
                   entities.push_back(std::make_unique<BODY>(shape));
                   bytes = StoreBytes(entities, isText);
               });
    return bytes;
}

StoreFileOfBytes::StoreFileOfBytes(std::string const& bytes)
    : m_file(bytes.empty() ? std::tmpfile() : ::fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"))
{
    EXPECT_NE(m_file, nullptr);
}

StoreFileOfBytes::~StoreFileOfBytes()
{
    std::fclose(m_file);
}

RestoredStore::RestoredStore(std::string const& bytes, bool isText, bool allowsInsecure)
    : stream(std::make_unique<HISTORY_STREAM>()), entities(std::make_unique<ENTITY_LIST>(false))
{
    StoreFileOfBytes const file(bytes);
    ActiveStreamScope const active(stream.get());
    GKI_RESTORE restore(file.File(), isText, -1);
    EXPECT_TRUE(
        restore.set_allow_insecure_restore(allowsInsecure ? kInsecureRestore_Allowed : kInsecureRestore_Forbidden)
            .ok());
    result = restore.execute_restore(*entities);
    int count = 0;
    EXPECT_TRUE(restore.security_issue_found(isInsecure, isInsecureRestored, count).ok());
}

}  // namespace KVR::Test
