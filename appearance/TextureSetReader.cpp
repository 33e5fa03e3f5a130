#include <memory>

#include "appearance/XMLTexture.h"
#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ExtensionDataReader.h"
#include "readers/RegisterObject.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// Hands an attribute to the setter of its property, in the property's form; nothing for an absent attribute.

void ReadAttribute(DOMNode const* node, AttributeName name, XMLTexture& texture, void (XMLTexture::*setter)(int))
{
    if (XMLCh const* const text = AttributeText(node, name))
        (texture.*setter)(XMLStrUtil::XMLStrToInt(text));
}

void ReadAttribute(DOMNode const* node, AttributeName name, XMLTexture& texture, void (XMLTexture::*setter)(double))
{
    XMLCh const* const text = AttributeText(node, name);
    if (!text)
        return;
    double value = 0.0;
    XMLStrUtil::XMLStrToDouble(text, value);
    (texture.*setter)(value);
}

void ReadAttribute(DOMNode const* node, AttributeName name, XMLTexture& texture,
                   void (XMLTexture::*setter)(UTF16String const&))
{
    if (XMLCh const* const text = AttributeText(node, name))
        (texture.*setter)(XMLStrUtil::XMLStrToWStr(text));
}

void ReadAttribute(DOMNode const* node, AttributeName name, XMLTexture& texture,
                   void (XMLTexture::*setter)(UTF8String const&))
{
    if (XMLCh const* const text = AttributeText(node, name))
        (texture.*setter)(XMLStrUtil::XMLStrToAStr(text));
}

void ReadAttributes(DOMNode const* node, XMLTexture& texture)
{
    using T = XMLTexture;
    ReadAttribute(node, Names::TextureType, texture, &T::SetTextureType);
    ReadAttribute(node, Names::TextureFileReference, texture, &T::SetTextureFileReference);
    ReadAttribute(node, Names::EmbeddedTextureImageSize, texture, &T::SetEmbeddedTextureImageSize);
    ReadAttribute(node, Names::EmbeddedTextureImageType, texture, &T::SetEmbeddedTextureImageType);
    ReadAttribute(node, Names::RotateAngle, texture, &T::SetRotateAngle);
    ReadAttribute(node, Names::ProjectType, texture, &T::SetProjectType);
    ReadAttribute(node, Names::ProcedureU, texture, &T::SetProcedureU);
    ReadAttribute(node, Names::RepeatU, texture, &T::SetRepeatU);
    ReadAttribute(node, Names::ProcedureV, texture, &T::SetProcedureV);
    ReadAttribute(node, Names::RepeatV, texture, &T::SetRepeatV);
    ReadAttribute(node, Names::TempFilePath, texture, &T::SetImageFilePath);
    ReadAttribute(node, Names::ProceduralName, texture, &T::SetProceduralName);
    UTF8String versionPersistentId;
    if (XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, versionPersistentId))
        texture.SetVersionPersistentId(versionPersistentId);
}

// Two numbers count only together.

void ReadTextureVector(DOMNode const* node, XMLTexture& texture, void (XMLTexture::*setter)(double, double))
{
    XMLCh const* const xText = AttributeText(node, Names::X);
    XMLCh const* const yText = AttributeText(node, Names::Y);
    if (!xText || !yText)
        return;
    double x = 0.0;
    double y = 0.0;
    XMLStrUtil::XMLStrToDouble(xText, x);
    XMLStrUtil::XMLStrToDouble(yText, y);
    (texture.*setter)(x, y);
}

void ReadTextureDimensions(DOMNode const* node, XMLTexture& texture)
{
    XMLCh const* const widthText = AttributeText(node, Names::Width);
    XMLCh const* const heightText = AttributeText(node, Names::Height);
    if (widthText && heightText)
        texture.SetTextureDimensions(XMLStrUtil::XMLStrToInt(widthText), XMLStrUtil::XMLStrToInt(heightText));
}

// Kept: a texture's "ChangeKey" is not read.
void ReadChildren(DOMNode const* node, XMLTexture& texture)
{
    using T = XMLTexture;
    for (DOMNode* const child : Children(node))
    {
        Match(child,                                                                                       //
              On(Names::ExtensionData, [&] { AddExtensionData(child, texture); }),                         //
              On(Names::TextureDimensions, [&] { ReadTextureDimensions(child, texture); }),                //
              On(Names::TextureCenter, [&] { ReadTextureVector(child, texture, &T::SetTextureCenter); }),  //
              On(Names::TextureOffset, [&] { ReadTextureVector(child, texture, &T::SetTextureOffset); }),  //
              On(Names::TextureScale, [&] { ReadTextureVector(child, texture, &T::SetTextureScale); }),    //
              On(Names::TextureSizeForScale, [&] { ReadTextureVector(child, texture, &T::SetTextureSizeForScale); }));
    }
}

}  // namespace

bool ReadTextureSet(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids)
{
    // Kept: a texture without "Label" takes the label of the one before it in the set.
    UTF16String label;
    for (DOMNode* const child : Children(node))
    {
        if (!IsNamed(child, Names::IMaterialTexture))
            continue;
        UTF8String id;
        XMLUtils::GetNodeAttribute(child, Names::ID, id);
        producer->ApplyIdMapping(id);
        ids.push_back(id);
        XMLUtils::GetNodeAttribute(child, Names::Label, label);
        auto texture = std::make_unique<XMLTexture>(id, label);
        ReadAttributes(child, *texture);
        ReadChildren(child, *texture);
        Register(*producer, child, std::move(texture));
    }
    return node != nullptr;
}

}  // namespace KVR
