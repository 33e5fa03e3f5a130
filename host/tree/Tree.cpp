#include "host/tree/Tree.h"

#include <limits>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/Mixins.h"
#include "framework/api/UTF8String.h"
#include "host/tree/GeometryFacts.h"
#include "host/tree/JsonTreeWriter.h"
#include "host/tree/StyleColors.h"
#include "host/tree/TextTreeWriter.h"
#include "host/tree/TreeNode.h"
#include "host/tree/TreeOptions.h"
#include "scene/OccurrenceWalk.h"
#include "scene/Scene.h"
#include "scene/SceneObjectRef.h"
#include "scene/SceneTotals.h"

namespace KVR
{

namespace
{

// Turns the occurrences of a scene into nodes, and puts what is no occurrence where its owner lists it.
class TreeLines
{
public:
    TreeLines(IProducer& producer, Scene const& scene, TreeOptions const& options, TreeWriter& writer)
        : m_producer(producer), m_scene(scene), m_options(options), m_writer(writer)
    {
    }

    // False when the tree has more lines than may be written.
    bool Write()
    {
        OccurrenceWalk walk(m_scene);
        while (!m_isCut && walk.Next())
        {
            std::size_t const depth = walk.Depth();
            CloseDownTo(depth);
            bool const isLast = depth > 0 && WriteChildren(m_levels.back(), walk.Placement());
            if (!BeginOccurrence(walk.Placement(), walk.Component(), isLast))
                break;
            if (m_options.depth && depth >= *m_options.depth)
            {
                walk.SkipBelow();
                m_writer.End();
            }
            else
            {
                m_levels.push_back({&walk.Component(), 0});
            }
        }
        CloseDownTo(0);
        return !m_isCut;
    }

    // A node that stands alone, for a root that is no component.
    bool WriteAlone(SceneChild const& root)
    {
        WriteChild(root, nullptr, false);
        return !m_isCut;
    }

private:
    // An occurrence whose children are being written.
    struct Level
    {
        SceneComponent const* component;
        std::size_t next;
    };

    void CloseDownTo(std::size_t depth)
    {
        for (; m_levels.size() > depth; m_levels.pop_back())
        {
            WriteChildren(m_levels.back(), nullptr);
            m_writer.End();
        }
    }

    // Writes the children that are not entered up to a placement that is, or to the end; whether that placement is the
    // last child.
    bool WriteChildren(Level& level, ScenePlacement const* entered)
    {
        std::vector<SceneChild> const& children = level.component->children;
        while (!m_isCut && level.next < children.size())
        {
            SceneChild const& child = children[level.next++];
            bool const isLast = level.next == children.size();
            ScenePlacement const* const placement =
                child.placement == kNoIndex ? nullptr : &level.component->placements[child.placement];
            if (placement && placement == entered)
                return isLast;
            WriteChild(child, placement, isLast);
        }
        return false;
    }

    // What is not entered: it is no component, or cut, or was entered where it was listed first.
    void WriteChild(SceneChild const& child, ScenePlacement const* placement, bool isLast)
    {
        TreeNode node;
        UTF8String const label = child.object ? UTF8String(child.object->Label()) : UTF8String();
        node.kind = child.object ? SceneObjectRef::KindOf(*child.object) : "missing";
        node.label = label.View();
        node.id = child.id;
        if (auto const* const visible = dynamic_cast<IVisible const*>(child.object))
            node.isVisible = visible->IsVisible();
        node.isLast = isLast;
        if (placement && placement->target != kNoIndex)
        {
            node.isInstance = placement->object != nullptr;
            node.owner = &m_scene.Components()[placement->target];
            node.isCycle = placement->cut == SceneCut::kCycle;
            node.isRepeated = placement->IsEntered();
        }
        else if (child.object)
        {
            node.geometry = FactsOf(*child.object);
        }
        if (Begin(node, child.object))
            m_writer.End();
    }

    bool BeginOccurrence(ScenePlacement const* placement, SceneComponent const& component, bool isLast)
    {
        TreeNode node;
        node.owner = &component;
        node.isLast = isLast;
        node.isInstance = placement && placement->object;
        node.kind = node.isInstance ? "IInstance" : KindOf(component);
        node.label = node.isInstance ? placement->label : component.label;
        node.id = node.isInstance ? placement->id : component.id;
        if (node.isInstance)
            node.isVisible = placement->isVisible;
        return Begin(node, node.isInstance ? placement->object : component.object);
    }

    // False when no more may be written.
    bool Begin(TreeNode& node, IObject* object)
    {
        m_isCut = m_written++ == m_options.maxOccurrences;
        if (m_isCut)
            return false;
        if (m_options.styles)
        {
            m_styles = object ? StylesOf(m_producer, *object) : std::vector<StyleColor>();
            node.styles = &m_styles;
        }
        m_writer.Begin(node);
        return true;
    }

    // Geometry that stands in many places is looked at once; null for what is none.
    GeometryFacts const* FactsOf(IObject& object)
    {
        auto const known = m_facts.find(&object);
        if (known != m_facts.end())
            return &known->second;
        std::optional<GeometryFacts> facts = GeometryFacts::Of(object);
        return facts ? &m_facts.emplace(&object, std::move(*facts)).first->second : nullptr;
    }

    IProducer& m_producer;
    Scene const& m_scene;
    TreeOptions const& m_options;
    TreeWriter& m_writer;
    std::unordered_map<IObject const*, GeometryFacts> m_facts;
    std::vector<Level> m_levels;
    std::vector<StyleColor> m_styles;
    unsigned long long m_written = 0;
    bool m_isCut = false;
};

}  // namespace

bool WriteTree(IProducer& producer, UTF8String const& rootId, TreeOptions const& options, Output& out)
{
    SceneFilter whole;
    whole.mostLevels = std::numeric_limits<std::size_t>::max();
    Scene const scene(producer, rootId, whole);
    std::unique_ptr<TreeWriter> writer;
    if (options.json)
        writer = std::make_unique<JsonTreeWriter>(out);
    else
        writer = std::make_unique<TextTreeWriter>(out, options);
    TreeLines lines(producer, scene, options, *writer);
    bool const isWhole =
        scene.Root() == kNoIndex ? lines.WriteAlone({producer.Load(rootId), rootId.View(), kNoIndex}) : lines.Write();
    writer->Finish(SceneTotals::Of(scene));
    return isWhole;
}

}  // namespace KVR
