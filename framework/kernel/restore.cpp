#include "framework/kernel/restore.h"

#include <Standard_Failure.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cerrno>
#include <locale>
#include <memory>
#include <new>
#include <ostream>

#include "framework/kernel/KernelMessages.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/store/StoreHead.h"
#include "framework/kernel/store/StoreShapes.h"
#include "framework/kernel/store/StoreStream.h"
#include "framework/kernel/store/StoreTable.h"

namespace KVR
{

namespace
{

bool DigestOfRest(std::FILE* file, std::uint64_t size, std::uint64_t& value)
{
    constexpr std::size_t kPiece = 64 * 1024;
    long const at = std::ftell(file);
    auto const buffer = std::make_unique<unsigned char[]>(kPiece);
    StoreDigest digest;
    while (size > 0)
    {
        auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, kPiece));
        if (std::fread(buffer.get(), 1, wanted, file) != wanted)
            return false;
        digest.Add(buffer.get(), wanted);
        size -= wanted;
    }
    value = digest.Value();
    return std::fseek(file, at, SEEK_SET) == 0;
}

// The shape of a row's kind; a body may be of any.
bool Fits(ENTITY_KIND kind, TopAbs_ShapeEnum type)
{
    switch (kind)
    {
        case kEntity_Body:
            return true;
        case kEntity_Face:
            return type == TopAbs_FACE;
        case kEntity_Edge:
            return type == TopAbs_EDGE;
        case kEntity_Vertex:
            break;
    }
    return type == TopAbs_VERTEX;
}

std::unique_ptr<ENTITY> MakeEntity(StoreTable::Row& row, TopoDS_Shape const& shape)
{
    std::unique_ptr<ENTITY> entity;
    switch (row.kind)
    {
        case kEntity_Body:
        {
            auto body = std::make_unique<BODY>(shape);
            for (BODY::SubId& id : row.faceIds)
                body->AddFaceDataId(id.place, std::move(id.dataId));
            for (BODY::SubId& id : row.edgeIds)
                body->AddEdgeDataId(id.place, std::move(id.dataId));
            entity = std::move(body);
            break;
        }
        case kEntity_Face:
            entity = std::make_unique<FACE>(shape);
            break;
        case kEntity_Edge:
            entity = std::make_unique<EDGE>(shape);
            break;
        case kEntity_Vertex:
            entity = std::make_unique<VERTEX>(shape);
            break;
    }
    for (std::string& dataId : row.dataIds)
        entity->AddDataId(std::move(dataId));
    return entity;
}

// Open CASCADE does not stand every allocation that fails while it reads: what a store of this size takes has to be
// there before it begins. Throws std::bad_alloc.
void ExpectMemory(std::uint64_t size)
{
    constexpr std::uint64_t kPerByte = 24;
    constexpr std::uint64_t kAtLeast = std::uint64_t{1} << 20U;
    // Never written to, so that it costs no time.
    std::unique_ptr<char[]> const room(new char[kAtLeast + kPerByte * size]);
}

// Decodes a store's content; nothing is made unless all of it is good.
bool Decode(std::FILE* file, std::uint64_t size, bool textMode, std::vector<std::unique_ptr<ENTITY>>& entities,
            std::vector<std::pair<std::uint64_t, std::uint64_t>>& rowRanges)
{
    ExpectMemory(size);
    auto const start = static_cast<std::uint64_t>(std::max(0L, std::ftell(file)));
    StoreReadBuffer content(file, size);
    StoreTable table;
    if (!table.Read(content, textMode))
        return false;
    std::vector<TopoDS_Shape> shapes;
    if (!ReadShapes(content, textMode, shapes) || shapes.size() != table.rows.size())
        return false;
    for (std::size_t i = 0; i < shapes.size(); ++i)
    {
        if (!Fits(table.rows[i].kind, shapes[i].ShapeType()))
            return false;
    }
    for (std::size_t i = 0; i < shapes.size(); ++i)
    {
        rowRanges.emplace_back(start + table.rows[i].begin, start + table.rows[i].end);
        entities.push_back(MakeEntity(table.rows[i], shapes[i]));
    }
    return true;
}

outcome BadFile()
{
    return {outcome::kBadFile, "the store cannot be read"};
}

// What could not be read is not damaged. Of a place that the system cannot go to, errno alone tells, which was cleared
// before.
outcome BadStore(std::FILE* file, char const* message)
{
    return std::ferror(file) || errno == EIO ? BadFile() : outcome(outcome::kBadStore, message);
}

outcome BadContent(std::FILE* file)
{
    return BadStore(file, "the content of the store is damaged");
}

}  // namespace

GKI_RESTORE::GKI_RESTORE(std::FILE* file, bool textMode, int) : m_file(file), m_textMode(textMode) {}

outcome GKI_RESTORE::set_allow_insecure_restore(insecure_restore_option option)
{
    if (option != kInsecureRestore_Forbidden && option != kInsecureRestore_Allowed)
        return {outcome::kBadArgument, "there is no such option"};
    m_allowsInsecure = option == kInsecureRestore_Allowed;
    return {};
}

outcome GKI_RESTORE::execute_restore(ENTITY_LIST& entities)
{
    m_isInsecure = m_isRestored = false;
    m_rowRanges.clear();
    errno = 0;
    if (!m_file)
        return {outcome::kBadArgument, "there is no file"};
    if (!gki_global_data().activeStream)
        return {outcome::kBadArgument, "no history stream is active"};
    StoreHead head;
    std::uint64_t size = 0;
    constexpr char kNoStore[] = "this is no store of the kernel, or it was cut short";
    if (!head.Read(m_file, m_textMode))
        return BadStore(m_file, kNoStore);
    if (!MeasureRest(m_file, size))
        return BadFile();
    if (size != head.size)
        return BadStore(m_file, kNoStore);
    std::uint64_t digest = 0;
    if (!DigestOfRest(m_file, size, digest))
        return BadFile();
    m_isInsecure = digest != head.digest;
    if (m_isInsecure && !m_allowsInsecure)
        return {outcome::kInsecureStore, "the content of the store is not what was written"};
    MemoryWatch const watch;
    try
    {
        std::vector<std::unique_ptr<ENTITY>> made;
        if (!Decode(m_file, size, m_textMode, made, m_rowRanges))
        {
            watch.Check();
            return BadContent(m_file);
        }
        // The stream owns them from here on.
        for (std::unique_ptr<ENTITY>& entity : made)
            entities.add(entity.release());
        m_isRestored = true;
        return {};
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
        return BadContent(m_file);
    }
    catch (std::exception const&)
    {
        // The stream's end.
        watch.Check();
        return BadContent(m_file);
    }
}

outcome GKI_RESTORE::security_issue_found(bool& found, bool& restored, int& count) const
{
    found = m_isInsecure;
    restored = m_isInsecure && m_isRestored;
    count = m_isInsecure ? 1 : 0;
    return {};
}

GKI_SAVE::GKI_SAVE(std::FILE* file, bool textMode) : m_file(file), m_textMode(textMode) {}

outcome GKI_SAVE::execute_save(ENTITY_LIST const& entities)
{
    outcome badFile(outcome::kBadFile, "the store cannot be written");
    if (!m_file)
        return {outcome::kBadArgument, "there is no file"};
    MemoryWatch const watch;
    try
    {
        StoreTable table;
        std::vector<TopoDS_Shape const*> shapes;
        for (int i = 0; i < entities.count(); ++i)
        {
            ENTITY const& entity = *entities[i];
            StoreTable::Row row{entity.Kind(), entity.DataIds(), {}, {}, 0, 0};
            if (auto const* const body = dynamic_cast<BODY const*>(&entity))
            {
                row.faceIds = body->FaceDataIds();
                row.edgeIds = body->EdgeDataIds();
            }
            table.rows.push_back(std::move(row));
            shapes.push_back(&entity.Shape());
        }
        long const start = std::ftell(m_file);
        StoreHead head;
        if (start < 0 || !head.Write(m_file, m_textMode))
            return badFile;
        StoreWriteBuffer content(m_file);
        std::ostream out(&content);
        out.imbue(std::locale::classic());
        out.exceptions(std::ios_base::failbit | std::ios_base::badbit);
        table.Write(out, m_textMode);
        WriteShapes(shapes, out, m_textMode);
        out.flush();
        head.digest = content.Digest();
        head.size = content.Size();
        bool const isPatched = std::fseek(m_file, start, SEEK_SET) == 0 && head.Write(m_file, m_textMode) &&
                               std::fseek(m_file, 0, SEEK_END) == 0 && std::fflush(m_file) == 0;
        return isPatched ? outcome() : badFile;
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
        return {outcome::kBadGeometry, KernelFailureText(failure)};
    }
    catch (std::ios_base::failure const&)
    {
        return badFile;
    }
}

}  // namespace KVR
