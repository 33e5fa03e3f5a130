#pragma once

#include "framework/api/IdSet.h"

namespace KVR
{

/// The ids of the objects declared under a file or component, by kind.
struct AttributeSetIds
{
    IdSet styles;
    IdSet textures;
    IdSet layers;
    IdSet groups;
    IdSet lods;
    IdSet cameras;
    IdSet views;
};

/// A base with IAttributeSets in it, and the operations of that interface.
template <class Base>
class AttributeSetsState : public Base
{
public:
    using Base::Base;

    IdSet StyleSet() const override { return m_attributeSets.styles; }
    IdSet TextureSet() const override { return m_attributeSets.textures; }
    IdSet LayerSet() const override { return m_attributeSets.layers; }
    IdSet GroupSet() const override { return m_attributeSets.groups; }
    IdSet LodSet() const override { return m_attributeSets.lods; }
    IdSet CameraSet() const override { return m_attributeSets.cameras; }
    IdSet ViewSet() const override { return m_attributeSets.views; }

protected:
    AttributeSetIds m_attributeSets;
};

}  // namespace KVR
