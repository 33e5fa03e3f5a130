#include <memory>
#include <utility>

#include "appearance/StyleReader.h"
#include "framework/api/ObjectCollector.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStyle.h"
#include "framework/xml_util/XMLUtils.h"
#include "framework/xml_util/XMLVitreolStyle.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/RegisterObject.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// Takes the style's asset out of the table; null when there is none.
std::unique_ptr<VitreolSerializedAsset> TakeAsset(VitreolAssets& vitreolAssets, VitreolAssets::iterator found)
{
    if (found == vitreolAssets.end())
        return nullptr;
    std::unique_ptr<VitreolSerializedAsset> asset(found->second);
    vitreolAssets.erase(found);
    return asset;
}

// An asset, or a word of the library, makes a style of the material library. The asset goes to the first style of its
// id.
std::unique_ptr<IObject> BuildStyle(DOMNode* node, UTF8String const& id, UTF16String const& label,
                                    VitreolAssets& vitreolAssets)
{
    auto const found = vitreolAssets.find(id);
    if (found == vitreolAssets.end() && !HasVitreolStyleInfo(node))
    {
        auto style = std::make_unique<XMLStyle>(id, label);
        ReadStyle(node, *style);
        return style;
    }
    auto style = std::make_unique<XMLVitreolStyle>(id, label);
    style->SetSerializedAsset(TakeAsset(vitreolAssets, found).release());
    ReadVitreolStyle(node, *style);
    return style;
}

}  // namespace

bool ReadStyleSet(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids, VitreolAssets& vitreolAssets)
{
    // Kept: a style without "Label" takes the label of the one before it in the set.
    UTF16String label;
    for (DOMNode* const child : Children(node))
    {
        if (!IsNamed(child, Names::IRenderStyle))
            continue;
        UTF8String id;
        XMLUtils::GetNodeAttribute(child, Names::ID, id);
        producer->ApplyIdMapping(id);
        ids.push_back(id);
        XMLUtils::GetNodeAttribute(child, Names::Label, label);
        Register(*producer, child, BuildStyle(child, id, label, vitreolAssets));
    }
    return node != nullptr;
}

}  // namespace KVR
