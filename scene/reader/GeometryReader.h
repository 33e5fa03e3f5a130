#pragma once

#include <cstddef>
#include <vector>

#include "scene/SceneComponent.h"

namespace KVR
{

class IProducer;
class IGeometry;
class StyleReader;
class UTF8String;
struct SceneContent;

/// Reads the geometry of components into a scene.
class GeometryReader
{
public:
    GeometryReader(SceneContent& content, IProducer& producer, StyleReader& styles)
        : m_content(content), m_producer(producer), m_styles(styles)
    {
    }

    /// Adds the object to the list, or all that is in it when it is a set of geometry; nothing for what is neither.
    /// False when sets within sets are so deep or many that some were left out.
    bool Read(IObject& object, std::vector<SceneGeometry>& list);
    /// Finds the bodies that meshes of the same component belong to.
    static void Join(std::vector<SceneGeometry>& list);

private:
    struct Set
    {
        IGeometry const* object = nullptr;
        /// The id of a child, by the set's own interface.
        UTF8String (*childIdAt)(IGeometry const& object, unsigned long long index) = nullptr;
        unsigned long long count = 0;
        unsigned long long next = 0;
        Matrix place = kIdentity;
        bool isVisible = true;
    };

    class SetFinder;

    /// Whether it was a set, which is entered now.
    bool Enter(IObject& object, Matrix const& place, bool isVisible);
    void Add(IObject& object, Matrix const& place, bool isVisible, std::vector<SceneGeometry>& list);
    void ReadStylesWithin(SceneGeometry const& geometry);

    SceneContent& m_content;
    IProducer& m_producer;
    StyleReader& m_styles;
    std::vector<Set> m_path;
    std::size_t m_entered = 0;
    bool m_isWhole = true;
};

}  // namespace KVR
