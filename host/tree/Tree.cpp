#include "host/tree/Tree.h"

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/api/IProducer.h"
#include "host/tree/GeometryFacts.h"
#include "host/tree/JsonTreeWriter.h"
#include "host/tree/ProductNode.h"
#include "host/tree/ProductTotals.h"
#include "host/tree/StyleColors.h"
#include "host/tree/TextTreeWriter.h"
#include "host/tree/TreeOptions.h"

namespace KVR
{

namespace
{

class Walk
{
public:
    Walk(IProducer& producer, TreeOptions const& options, TreeWriter& writer)
        : m_producer(producer), m_options(options), m_writer(writer)
    {
    }

    bool From(UTF8String const& rootId)
    {
        bool isWhole = Enter(rootId, true);
        while (!m_stack.empty())
        {
            Frame& frame = m_stack.back();
            if (isWhole && frame.next < frame.count)
            {
                unsigned long long const index = frame.next++;
                isWhole = Enter(frame.node.ChildIdAt(index), index + 1 == frame.count);
                continue;
            }
            m_path.erase(frame.node.ownerId);
            m_writer.End();
            m_stack.pop_back();
        }
        return isWhole;
    }

private:
    struct Frame
    {
        ProductNode node;
        unsigned long long next = 0;
        unsigned long long count = 0;
    };

    // Writes the node and, when there is something to show beneath it, goes down; false when no more may be written.
    bool Enter(UTF8String const& id, bool isLast)
    {
        if (m_written++ == m_options.maxOccurrences)
            return false;
        ProductNode node = ProductNode::Of(m_producer, id);
        bool const isCycle = node.HasOwner() && m_path.contains(node.ownerId);
        std::vector<StyleColor> styles;
        if (m_options.styles)
            styles = StylesOf(m_producer, id);
        m_writer.Begin(node, {isLast, isCycle, m_options.styles ? &styles : nullptr, FactsOf(node)});
        bool const isDeepEnough = m_options.depth && m_stack.size() >= *m_options.depth;
        if (!node.HasOwner() || isCycle || isDeepEnough)
        {
            m_writer.End();
            return true;
        }
        m_path.insert(node.ownerId);
        unsigned long long const count = node.ChildCount();
        m_stack.push_back({std::move(node), 0, count});
        return true;
    }

    // Geometry that stands in many places is looked at once.
    GeometryFacts const* FactsOf(ProductNode const& node)
    {
        if (!node.HasGeometry())
            return nullptr;
        auto const [place, isNew] = m_facts.try_emplace(node.id);
        if (isNew)
            place->second = GeometryFacts::Of(*m_producer.Load(node.id));
        return &place->second;
    }

    IProducer& m_producer;
    TreeOptions const& m_options;
    TreeWriter& m_writer;
    std::unordered_map<UTF8String, GeometryFacts> m_facts;
    std::vector<Frame> m_stack;
    /// The owners on the way from the root to here.
    std::unordered_set<UTF8String> m_path;
    unsigned long long m_written = 0;
};

}  // namespace

bool WriteTree(IProducer& producer, UTF8String const& rootId, TreeOptions const& options, Output& out)
{
    std::unique_ptr<TreeWriter> writer;
    if (options.json)
        writer = std::make_unique<JsonTreeWriter>(out);
    else
        writer = std::make_unique<TextTreeWriter>(out, options);
    bool const isWhole = Walk(producer, options, *writer).From(rootId);
    writer->Finish(ProductTotals::Of(producer, rootId));
    return isWhole;
}

}  // namespace KVR
