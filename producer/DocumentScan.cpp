#include "producer/DocumentScan.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "framework/api/IOUtil.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/InfoSections.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/SubObjectPersistentIdReader.h"
#include "framework/xml_util/VitreolBlobExternalFileReader.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/KernelStore.h"
#include "mesh/SideStoreReader.h"
#include "producer/ClassicLocaleScope.h"
#include "producer/ObjectNodeIndex.h"
#include "producer/SideFileIndex.h"
#include "producer/StoreNeeds.h"
#include "producer/XMLProducerImpl.h"
#include "producer/XMLProducerOptions.h"
#include "readers/Ignored.h"
#include "structure/XMLUniverse.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

struct Scan
{
    UTF16String const& sceneFilePath;
    XMLProducerImpl& producer;
};

// A loader's answer is ignored: the scan goes on with what reached the index.
void LoadVitreolAssets(Scan const& scan, DOMNode const* node)
{
    VitreolBlobExternalFileReader reader(XMLUtils::GetFilePath(node, scan.sceneFilePath));
    Ignored(reader.LoadVitreolFromExternalFile(scan.producer.sideFileIndex->vitreolAssets));
}

void LoadSubObjectPersistentIds(Scan const& scan, DOMNode const* node)
{
    UTF16String path;
    XMLUtils::GetNodeAttribute(node, Names::Path, path);
    // Kept: through narrow text and back, which makes U+FFFD of a lone surrogate.
    UTF16String const fullPath{UTF8String(ResolveSideFilePath(scan.sceneFilePath, path))};
    SubObjectPersistentIdReader reader;
    Ignored(reader.LoadSubObjectPersistentIds(fullPath, scan.producer.sideFileIndex->subObjectPersistentIds));
}

UTF16String PathText(DOMNode const* node)
{
    UTF16String path;
    XMLUtils::GetNodeAttribute(node, Names::Path, path);
    return path;
}

void LoadKernelStore(Scan const& scan, DOMNode const* node)
{
    UTF16String const path = PathText(node);
    if (path.IsEmpty())
        return;
    SideFileIndex& index = *scan.producer.sideFileIndex;
    KernelStoreContext const context{scan.sceneFilePath, scan.producer};
    Ignored(RestoreKernelStore(context, path, index.curveEntities, index.bodyEntities));
}

template <bool kGeometryInfoLayout>
void LoadMeshStore(Scan const& scan, DOMNode const* node)
{
    SideFileIndex& index = *scan.producer.sideFileIndex;
    SideStoreReader reader(scan.sceneFilePath, &scan.producer, kGeometryInfoLayout);
    Ignored(reader.ReadMeshStore(PathText(node), index.meshStore, index.curveStore));
}

void LoadMeshSegmentStore(Scan const& scan, DOMNode const* node)
{
    UTF16String const fullPath{UTF8String(ResolveSideFilePath(scan.sceneFilePath, PathText(node)))};
    SideStoreReader reader(scan.sceneFilePath, &scan.producer, false);
    Ignored(reader.ReadMeshSegmentStore(fullPath, scan.producer.sideFileIndex->meshStore));
}

struct InfoRow
{
    InfoSection const& section;
    void (*load)(Scan const& scan, DOMNode const* node);
    bool StoreNeeds::*isNeeded;
};

constexpr InfoRow kInfoRows[] = {
    {InfoSections::kKernelStore, &LoadKernelStore, &StoreNeeds::geometry},
    {InfoSections::kGeometryStore, &LoadMeshStore<true>, &StoreNeeds::geometry},
    {InfoSections::kSegmentStore, &LoadMeshSegmentStore, &StoreNeeds::segments},
    {InfoSections::kMeshStore, &LoadMeshStore<false>, &StoreNeeds::geometry},
    {InfoSections::kAssets, &LoadVitreolAssets, &StoreNeeds::assets},
    {InfoSections::kPersistentIds, &LoadSubObjectPersistentIds, &StoreNeeds::persistentIds},
};

// The path that the row's loader opens.
UTF16String FullPath(Scan const& scan, DOMNode const* node, InfoRow const& row)
{
    // Kept: of the assets an absolute path stands as it is.
    return row.load == &LoadVitreolAssets ? XMLUtils::GetFilePath(node, scan.sceneFilePath)
                                          : ResolveSideFilePath(scan.sceneFilePath, PathText(node));
}

void TellIfUnread(Scan const& scan, DOMNode const* node, InfoRow const& row)
{
    XMLProducerOptions const* const options = scan.producer.options;
    if (!options || !options->UnreadSideFileHandler() || PathText(node).IsEmpty())
        return;
    UTF16String const path = FullPath(scan, node, row);
    if (!FilePtr(UTF8String(path), "rb"))
        options->UnreadSideFileHandler()(path);
}

bool IsOn(DOMNode const* node, InfoRow const& row)
{
    auto const& attribute = row.section.switchAttribute;
    if (!attribute)
        return true;
    XMLCh const* const text = AttributeText(node, *attribute);
    return text && ToldBoolean(text, [](XMLCh const* word) { return Equals(word, InfoSections::kSwitchedOn); });
}

void TellSection(ReadObserver& observer, Scan const& scan, DOMNode const* node, InfoRow const& row, bool isOn)
{
    bool const hasPath = !PathText(node).IsEmpty();
    SectionState const state = !isOn ? SectionState::kOff : hasPath ? SectionState::kRead : SectionState::kNoPath;
    observer.SectionMet(node, hasPath ? FullPath(scan, node, row) : UTF16String(), state);
}

// Tells an observer which names are known under the root, and what the universe's is.
void TellNamesUnderRoot(ReadObserver& observer, DOMNode const* node)
{
    std::vector<std::u16string_view> names;
    for (InfoRow const& row : kInfoRows)
        names.emplace_back(row.section.name);
    names.emplace_back(Names::IUniverse);
    for (ElementName const& name : ObjectNodeIndex::ObjectNames())
        names.emplace_back(name);
    auto const matched = std::find_if(names.begin(), names.end(),
                                      [&](std::u16string_view name) { return Equals(node->getNodeName(), name); });
    observer.NamesTried(node, names, static_cast<std::size_t>(matched - names.begin()));
}

// What is not needed stays unread, as far as it decides nothing about which objects there are.
void LoadIfNeeded(Scan const& scan, DOMNode const* node, InfoRow const& row)
{
    StoreNeeds const& needs = StoreNeeds::Of(scan.producer.options);
    if (needs.*row.isNeeded)
        return row.load(scan, node);
    if (row.isNeeded != &StoreNeeds::geometry)
        return;
    bool const hasMeshes = row.load != &LoadKernelStore;
    if (hasMeshes && !(needs.isWhole && needs.isWhole(FullPath(scan, node, row))))
        return row.load(scan, node);
    SideFileIndex& index = *scan.producer.sideFileIndex;
    index.hasUnreadMeshes = index.hasUnreadMeshes || hasMeshes;
    index.deferredStores.emplace_back([scan, node, &row] { row.load(scan, node); });
}

bool ReadInfoSection(Scan const& scan, DOMNode const* node, XMLCh const* name)
{
    for (InfoRow const& row : kInfoRows)
    {
        if (!Equals(name, row.section.name))
            continue;
        bool const isOn = IsOn(node, row);
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            TellSection(*observer, scan, node, row, isOn);
        if (isOn && AttributeText(node, Names::Path))
        {
            TellIfUnread(scan, node, row);
            LoadIfNeeded(scan, node, row);
        }
        return true;
    }
    return false;
}

// The last universe wins; the former ones stay for hosts that hold them.
void ReadUniverse(Scan const& scan, DOMNode* node)
{
    auto universe = std::make_unique<XMLUniverse>(scan.sceneFilePath);
    Ignored(universe->ReadFromXML(node));
    auto& current = scan.producer.universe;
    if (current)
        scan.producer.formerUniverses.push_back(std::move(current));
    current = std::move(universe);
}

}  // namespace

bool ScanDocument(xercesc::XercesDOMParser const* parser, UTF16String const& sceneFilePath, XMLProducerImpl& producer)
{
    ClassicLocaleScope const classicLocale;
    // What an earlier reading of the scene took belongs to its objects, and may be gone with them.
    producer.sideFileIndex->bodyEntities.clear();
    producer.sideFileIndex->curveEntities.clear();
    Scan const scan{sceneFilePath, producer};
    xercesc::DOMDocument const* const document = const_cast<xercesc::XercesDOMParser*>(parser)->getDocument();
    for (DOMNode* const node : Children(document->getDocumentElement()))
    {
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            TellNamesUnderRoot(*observer, node);
        XMLCh const* const name = node->getNodeName();
        if (ReadInfoSection(scan, node, name))
            continue;
        if (Equals(name, Names::IUniverse))
            ReadUniverse(scan, node);
        else if (ObjectNodeIndex::IsObjectName(name))
            producer.objectNodeIndex->AddNode(node);
    }
    producer.objectNodeIndex->ReadAllNodes(&producer);
    // The document may go.
    producer.sideFileIndex->deferredStores.clear();
    return true;
}

}  // namespace KVR
