#include "organisation/XMLLayer.h"

#include <memory>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "organisation/ItemsText.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"

namespace KVR
{

XMLLayer::XMLLayer(UTF16String const& label, UTF16String description, UTF8String id, int number, bool visible,
                   ChangeKeyText changeKey)
    : ObjectState(std::move(id), label),
      m_description(std::move(description)),
      m_layerNumber(number),
      m_visible(visible)
{
    m_changeKey = std::move(changeKey);
}

XMLLayer::~XMLLayer() = default;

namespace
{

using xercesc::DOMNode;

// Kept: the word counts here and not "1", and nothing, or an empty text, means shown.
bool IsShown(XMLCh const* visibility)
{
    return *visibility == 0 || Equals(visibility, u"True");
}

// What the elements inside a layer say about it.
struct LayerFields
{
    XMLCh const* number = nullptr;
    XMLCh const* description = nullptr;
    XMLCh const* visibility = nullptr;
    XMLCh const* items = nullptr;
    ChangeKeyText changeKey;
    ExtensionDataContent extensionData;
    IdSet styles;
};

void KeepFirst(DOMNode const* node, AttributeName name, XMLCh const*& text)
{
    if (!text)
        text = AttributeText(node, name);
}

// Kept: "LayerInfo" and "GeometryItems" have one set of attributes between them, so each may state what usually stands
// in the other.
void ReadCommonAttributes(DOMNode const* node, LayerFields& fields)
{
    KeepFirst(node, Names::ID, fields.number);
    KeepFirst(node, Names::Description, fields.description);
    KeepFirst(node, Names::Visibility, fields.visibility);
    KeepFirst(node, Names::Items, fields.items);
}

void ReadLayer(XMLProducerImpl* producer, DOMNode const* node, UTF8String const& id)
{
    LayerFields fields;
    for (DOMNode* const child : Children(node))
    {
        Match(child,                                                                               //
              On(Names::LayerInfo, [&] { ReadCommonAttributes(child, fields); }),                  //
              On(Names::GeometryItems, [&] { ReadCommonAttributes(child, fields); }),              //
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, fields.changeKey)); }),      //
              On(Names::Styles, [&] { Ignored(ReadStyleRefs(producer, child, fields.styles)); }),  //
              // Kept: one content, written over by each element.
              On(Names::ExtensionData,
                 [&]
                 {
                     TellObserver(&ReadObserver::LastCounts, child);
                     Ignored(ReadExtensionData(child, fields.extensionData));
                 }));
    }
    auto layer = std::make_unique<XMLLayer>(
        XMLStrUtil::XMLStrToWStr(AttributeText(node, Names::Label)), XMLStrUtil::XMLStrToWStr(fields.description), id,
        XMLStrUtil::XMLStrToInt(fields.number), (!fields.visibility || ToldBoolean(fields.visibility, &IsShown)),
        std::move(fields.changeKey));
    if (!fields.extensionData.TypeId().IsEmpty())
        layer->AddExtensionDataContent(fields.extensionData);
    layer->SetVersionPersistentId(XMLStrUtil::XMLStrToAStr(AttributeText(node, Names::VersionPersistentId)));
    layer->SetStyles(std::move(fields.styles));
    IdSet items;
    AddItems(*producer, fields.items, items);
    layer->SetGeometryItems(std::move(items));
    Register(*producer, node, std::move(layer));
}

}  // namespace

bool ReadLayerSet(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids)
{
    for (DOMNode const* const child : Children(node))
    {
        if (!IsNamed(child, Names::ILayer))
            continue;
        UTF8String id = XMLStrUtil::XMLStrToAStr(AttributeText(child, Names::ID));
        producer->ApplyIdMapping(id);
        // Kept: a layer of an id that is taken is read and registered again.
        ids.push_back(id);
        ReadLayer(producer, child, id);
    }
    return node != nullptr;
}

}  // namespace KVR
