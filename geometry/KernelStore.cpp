#include "geometry/KernelStore.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/api/Event.h"
#include "framework/api/Exception.h"
#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"
#include "framework/gmk_interface/GMKHistoryUtil.h"
#include "framework/gmk_interface/GMKUtil.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/data_ids.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_iterator.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/restore.h"
#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/SubObjectPersistentIdReader.h"
#include "producer/XMLProducerImpl.h"
#include "producer/XMLProducerOptions.h"
#include "readers/Ignored.h"

namespace KVR
{

namespace
{

struct StoreForm
{
    wchar_t const* extension;
    char const* openMode;
    bool isText;
};

constexpr StoreForm kBinaryForms[] = {
    {L".sab", "rb", false},
    {L".gkb", "rb", false},
};
constexpr StoreForm kTextForm = {L"", "r", true};

StoreForm const& FormOf(UTF16String const& path)
{
    UTF16String const extension = PathExtension(path).ToLower();
    for (StoreForm const& form : kBinaryForms)
    {
        if (extension.Compare(form.extension) == 0)
            return form;
    }
    return kTextForm;
}

// Closes with the scope, also when memory runs out on the way.
struct CloseStore
{
    void operator()(std::FILE* file) const noexcept { GMKUtil::CloseGmkFile(file); }
};

void PostSecurityEvent(XMLProducerImpl const& producer, bool isRestored, UTF16String const& pathText)
{
    FileException exception;
    // Kept: the path as the document has it.
    exception.SetFileName(pathText);
    exception.SetReporter(kComponentRole_Producer);
    exception.SetErrorCode(isRestored ? FileException::kFileErrorCode_InsecureContentRestored
                                      : FileException::kFileErrorCode_InsecureContentRefused);
    auto const event = std::make_unique<ExceptionEvent>(ExceptionEvent::kEventType_Exception, exception);
    producer.eventManager->PostEvent(event.get());
}

using RowRange = std::pair<std::uint64_t, std::uint64_t>;

void TellEntity(std::string_view kind, UTF8String const& id, bool isKept, RowRange const& row)
{
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        observer->RecordRead({kind, id, 0, 0, isKept, row.first, row.second});
}

void TellOutcome(outcome const& restored, bool isInsecure)
{
    if (isInsecure)
        TellObserver(&ReadObserver::StoreFailed, StoreFailure::kInsecure, "the content is not what was written");
    if (!restored.ok() && restored.error_number() != outcome::kInsecureStore)
        TellObserver(&ReadObserver::StoreFailed, StoreFailure::kUnreadable, restored.message());
}

void FileCurve(EDGE* edge, UTF8String const& id, RowRange const& row, CurveEntities& curveEntities)
{
    curve* made = nullptr;
    outcome const result = GKI_MAKE_CURVE::from_edge(edge, false, made);
    TellEntity("edge", id, result.ok() && made && curveEntities.try_emplace(id, made).second, row);
}

void FileEntities(ENTITY_LIST const& entities, std::vector<RowRange> const& rows, CurveEntities& curveEntities,
                  BodyEntities& bodyEntities)
{
    BodyEntities bodiesOfStore;
    int const count = entities.count();
    for (int i = 0; i < count; ++i)
    {
        ENTITY* const entity = entities[i];
        UTF8String const id = GMKUtil::EntityDxid(entity);
        bool const hasId = !id.IsEmpty();
        auto const place = static_cast<std::size_t>(i);
        RowRange const row = place < rows.size() ? rows[place] : RowRange();
        if (hasId && GMK::BODY_xs(entity).body)
        {
            bodiesOfStore.try_emplace(id, entity);
            TellEntity("body", id, bodyEntities.try_emplace(id, entity).second, row);
        }
        else if (EDGE* const edge = hasId ? GMK::EDGE_xs(entity).edge : nullptr)
        {
            FileCurve(edge, id, row, curveEntities);
        }
        else
        {
            TellEntity("unknown", id, false, row);
        }
    }
    std::vector<ENTITY*> separate;
    for (auto const& [id, entity] : bodiesOfStore)
        separate.push_back(entity);
    if (!separate.empty())
        GMKHistoryUtil::CreateSeparateHistoryStream(separate.size(), separate.data());
}

template <class Sub>
void BuildDataIdIndex(BODY const* body, DataIdIndex& index, std::uint32_t& counter)
{
    using Iterator = GMK::entity_iterator<BODY, Sub>;
    for (Iterator at(body); !(at == Iterator()); ++at)
    {
        GMK::gmk_array<DXID_DATA> ids;
        outcome const result = gki_get_datax_id(static_cast<Sub*>(at), ids);
        if (result.ok() && !ids.empty())
            index.try_emplace(UTF8String(ids[ids.count() - 1].dx_id()), counter);
        ++counter;
    }
}

}  // namespace

bool RestoreKernelStore(KernelStoreContext const& context, UTF16String const& pathText, CurveEntities& curveEntities,
                        BodyEntities& bodyEntities)
{
    GMKGlobalDataSaveRestore const guard;
    UTF16String const path = ResolveSideFilePath(context.sceneFilePath, pathText);
    StoreForm const& form = FormOf(path);
    std::unique_ptr<std::FILE, CloseStore> file(GMKUtil::OpenGmkFile(UTF8String(path), form.openMode));
    if (!file)
    {
        TellObserver(&ReadObserver::StoreFailed, StoreFailure::kNotOpened, "the file cannot be opened");
        return false;
    }
    XMLProducerImpl& producer = context.producer;
    GMKHistoryUtil::SetActiveHistoryStream(producer.GetHistoryStream());
    GKI_RESTORE restore(file.get(), form.isText, -1);
    bool const allowsInsecure = producer.options && producer.options->WantRestoreInsecureGMKFiles();
    if (allowsInsecure)
        Ignored(restore.set_allow_insecure_restore(kInsecureRestore_Allowed));
    ENTITY_LIST entities(false);
    // Whatever the outcome, what is in the list counts.
    outcome const restored = restore.execute_restore(entities);
    bool found = false;
    bool isRestored = false;
    int count = 0;
    Ignored(restore.security_issue_found(found, isRestored, count));
    if (found && producer.eventManager)
        PostSecurityEvent(producer, allowsInsecure, pathText);
    TellOutcome(restored, found);
    if (restored.error_number() == outcome::kBadFile && producer.options && producer.options->UnreadSideFileHandler())
        producer.options->UnreadSideFileHandler()(path);
    file.reset();
    FileEntities(entities, restore.row_ranges(), curveEntities, bodyEntities);
    return true;
}

void BuildFaceDataIdIndex(BODY const* body, DataIdIndex& index, std::uint32_t& counter)
{
    BuildDataIdIndex<FACE>(body, index, counter);
}

void BuildEdgeDataIdIndex(BODY const* body, DataIdIndex& index, std::uint32_t& counter)
{
    BuildDataIdIndex<EDGE>(body, index, counter);
}

void LoadObjectPersistentIds(XMLProducerImpl* producer, xercesc::DOMNode const* node, UTF8String const& id,
                             EditableDataIdToPersistentIdMap& map)
{
    if (!producer || !node || !producer->sideFileIndex)
        return;
    SubObjectPersistentIds& known = producer->sideFileIndex->subObjectPersistentIds;
    // Kept: one side file with ids for any object stands for the elements of all.
    if (known.empty())
    {
        SubObjectPersistentIdReader reader;
        reader.ReadSubObjectPersistentIdsFromXML(node, map);
        return;
    }
    auto const found = known.find(id);
    if (found == known.end() || !found->second)
        return;
    // The entry stays, without its ids, so that the table does not look empty when all are handed out.
    std::unique_ptr<EditableDataIdToPersistentIdMap> const held(std::exchange(found->second, nullptr));
    map = *held;
}

}  // namespace KVR
