// A kernel store of any content. The first byte says how it is read: as a store in one form or the other, as the table
// of one, or as the content of one, to which a head is made that fits.

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "framework/kernel/restore.h"
#include "framework/kernel/store/StoreStream.h"
#include "framework/kernel/store/StoreTable.h"
#include "fuzz/KernelHead.h"

namespace
{

using namespace KVR;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File FileOf(std::string_view bytes)
{
    return {fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"), &std::fclose};
}

void Ask(BODY const& body)
{
    body.FaceList();
    for (std::unique_ptr<EDGE> const& edge : body.EdgeList())
    {
        curve* made = nullptr;
        static_cast<void>(GKI_MAKE_CURVE::from_edge(edge.get(), false, made));
    }
}

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
            Ask(*body);
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
    constexpr int kText = 1;
    constexpr int kTable = 2;
    constexpr int kContent = 4;
    if (size < 2)
        return 0;
    std::string_view bytes(reinterpret_cast<char const*>(data) + 1, size - 1);
    bool const isText = (data[0] & kText) != 0;
    std::string whole;
    if ((data[0] & kContent) != 0)
        bytes = whole = Fuzz::WithHead(bytes, isText);
    File const file = FileOf(bytes);
    if (!file)
        return 0;
    if ((data[0] & (kTable | kContent)) == kTable)
        ReadTable(file.get(), bytes.size(), isText);
    else
        RestoreStore(file.get(), isText);
    return 0;
}
