#pragma once

#include <utility>

#include "framework/api/ILayer.h"
#include "framework/api/IdSet.h"
#include "framework/xml_util/ObjectState.h"

namespace KVR
{

/// A layer as its "ILayer" element declares it. ReadLayerSet makes it.
class XMLLayer : public ObjectState<ILayer>
{
public:
    XMLLayer(UTF16String const& label, UTF16String description, UTF8String id, int number, bool visible,
             ChangeKeyText changeKey);
    ~XMLLayer() override;

    UTF16String Description() const override { return m_description; }
    int LayerNumber() const override { return m_layerNumber; }
    IdSet const& GeometryItems() const override { return m_geometryItems; }
    IdSet const& Styles() const override { return m_styles; }
    bool IsVisible() const override { return m_visible; }

    void SetGeometryItems(IdSet items) noexcept { m_geometryItems = std::move(items); }
    void SetStyles(IdSet styles) noexcept { m_styles = std::move(styles); }

private:
    UTF16String m_description;
    int m_layerNumber;
    bool m_visible;
    IdSet m_geometryItems;
    IdSet m_styles;
};

}  // namespace KVR
