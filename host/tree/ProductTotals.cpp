#include "host/tree/ProductTotals.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/tree/ProductNode.h"

namespace KVR
{

namespace
{

unsigned long long Sum(unsigned long long a, unsigned long long b)
{
    unsigned long long sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? ~0ULL : sum;
}

// What is known of an owner: what one occurrence of it holds, itself included.
struct OwnerTotals
{
    bool isOpen = true;
    unsigned long long occurrences = 0;
    unsigned long long partOccurrences = 0;
    /// Levels of assemblies and parts, its own included.
    unsigned long long levels = 0;
};

struct Frame
{
    ProductNode node;
    unsigned long long next = 0;
    unsigned long long count = 0;
    OwnerTotals* totals = nullptr;
    unsigned long long levelsBelow = 0;
};

class Counting
{
public:
    explicit Counting(IProducer& producer) : m_producer(producer) {}

    ProductTotals Of(UTF8String const& rootId)
    {
        Enter(ProductNode::Of(m_producer, rootId));
        while (!m_stack.empty())
        {
            Frame& frame = m_stack.back();
            if (frame.next < frame.count)
                Enter(ProductNode::Of(m_producer, frame.node.ChildIdAt(frame.next++)));
            else
                Leave();
        }
        return m_totals;
    }

private:
    void Enter(ProductNode node)
    {
        if (node.isInstance && m_instances.insert(node.id).second)
            ++m_totals.instances;
        if (!node.HasOwner())
            return;
        auto const [place, isNew] = m_owners.try_emplace(node.ownerId);
        if (!isNew)
        {
            // Known already, or on the way from the root to here: that one adds nothing.
            if (!place->second.isOpen)
                AddTo(place->second);
            return;
        }
        m_totals.files += node.IsFile() ? 1 : 0;
        m_totals.assemblies += node.IsAssembly() ? 1 : 0;
        m_totals.parts += node.IsPart() ? 1 : 0;
        place->second.occurrences = node.IsFile() ? 0 : 1;
        place->second.partOccurrences = node.IsPart() ? 1 : 0;
        unsigned long long const count = node.ChildCount();
        m_stack.push_back({std::move(node), 0, count, &place->second, 0});
    }

    void Leave()
    {
        Frame const& frame = m_stack.back();
        OwnerTotals& totals = *frame.totals;
        totals.isOpen = false;
        totals.levels = frame.levelsBelow + (frame.node.IsFile() ? 0 : 1);
        m_stack.pop_back();
        AddTo(totals);
    }

    // Adds an occurrence of an owner to the one that it stands in, or to the whole.
    void AddTo(OwnerTotals const& totals)
    {
        if (m_stack.empty())
        {
            m_totals.occurrences = totals.occurrences;
            m_totals.partOccurrences = totals.partOccurrences;
            m_totals.deepestLevel = totals.levels;
            return;
        }
        Frame& frame = m_stack.back();
        frame.totals->occurrences = Sum(frame.totals->occurrences, totals.occurrences);
        frame.totals->partOccurrences = Sum(frame.totals->partOccurrences, totals.partOccurrences);
        frame.levelsBelow = std::max(frame.levelsBelow, totals.levels);
    }

    IProducer& m_producer;
    ProductTotals m_totals;
    std::unordered_map<UTF8String, OwnerTotals> m_owners;
    std::unordered_set<UTF8String> m_instances;
    std::vector<Frame> m_stack;
};

}  // namespace

ProductTotals ProductTotals::Of(IProducer& producer, UTF8String const& rootId)
{
    return Counting(producer).Of(rootId);
}

}  // namespace KVR
