// A kernel store of any content. The first byte says how it is read: as a store in one form or the other, with damaged
// bytes kept from Open CASCADE by the digest, or as the table of one.

#include <cstdlib>
#include <memory>

#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "framework/kernel/restore.h"
#include "framework/kernel/store/StoreStream.h"
#include "framework/kernel/store/StoreTable.h"

namespace
{

using namespace KVR;

void RestoreStore(std::FILE* file, bool isText)
{
    HISTORY_STREAM stream;
    ActiveStreamScope const active(&stream);
    ENTITY_LIST entities(false);
    GKI_RESTORE restore(file, isText, -1);
    outcome const result = restore.execute_restore(entities);
    if (result.ok() != (entities.count() > 0) && entities.count() > 0)
        std::abort();
    for (int i = 0; i < entities.count(); ++i)
    {
        if (BODY const* const body = GMK::BODY_xs(entities[i]).body)
            body->FaceList();
    }
}

void ReadTable(std::FILE* file, std::size_t size, bool isText)
{
    StoreReadBuffer content(file, size);
    StoreTable table;
    if (!table.Read(content, isText))
        return;
    // A row takes some bytes of the file.
    if (table.rows.size() > size)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size < 2)
        return 0;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(
        fmemopen(const_cast<std::uint8_t*>(data) + 1, size - 1, "rb"), &std::fclose);
    if (!file)
        return 0;
    bool const isText = (data[0] & 1) != 0;
    if ((data[0] & 2) != 0)
        ReadTable(file.get(), size - 1, isText);
    else
        RestoreStore(file.get(), isText);
    return 0;
}
