#include "describe/Comparison.h"

#include <algorithm>
#include <unordered_set>

#include "describe/Ask.h"
#include "describe/ReferenceWalk.h"
#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"

namespace KVR
{

namespace
{

class Comparer
{
public:
    explicit Comparer(std::vector<Difference>& found) : m_found(found) {}

    void Compare(std::string const& path, Answer const& first, Answer const& second)
    {
        auto const* const lists = std::get_if<Answer::List>(&first.value);
        auto const* const otherLists = std::get_if<Answer::List>(&second.value);
        auto const* const members = std::get_if<Answer::Members>(&first.value);
        auto const* const otherMembers = std::get_if<Answer::Members>(&second.value);
        if (lists && otherLists)
            Lists(path, *lists, *otherLists);
        else if (members && otherMembers)
            Members(path, *members, *otherMembers);
        else if (!(first == second))
            m_found.push_back({path, BriefText(first), BriefText(second)});
    }

private:
    void Lists(std::string const& path, Answer::List const& first, Answer::List const& second)
    {
        for (std::size_t i = 0; i < std::max(first.size(), second.size()); ++i)
        {
            std::string const at = path + '[' + std::to_string(i) + ']';
            if (i >= second.size())
                m_found.push_back({at, BriefText(first[i]), {}});
            else if (i >= first.size())
                m_found.push_back({at, {}, BriefText(second[i])});
            else
                Compare(at, first[i], second[i]);
        }
    }

    static Answer const* Find(Answer::Members const& members, std::string const& name, std::size_t likely)
    {
        if (likely < members.size() && members[likely].first == name)
            return &members[likely].second;
        auto const found = std::find_if(members.begin(), members.end(), [&](auto const& m) { return m.first == name; });
        return found == members.end() ? nullptr : &found->second;
    }

    void Members(std::string const& path, Answer::Members const& first, Answer::Members const& second)
    {
        std::string const prefix = path.empty() || path.back() == '/' ? path : path + '.';
        for (std::size_t i = 0; i < first.size(); ++i)
        {
            if (Answer const* const other = Find(second, first[i].first, i))
                Compare(prefix + first[i].first, first[i].second, *other);
            else
                m_found.push_back({prefix + first[i].first, BriefText(first[i].second), {}});
        }
        for (std::size_t i = 0; i < second.size(); ++i)
        {
            if (!Find(first, second[i].first, i))
                m_found.push_back({prefix + second[i].first, {}, BriefText(second[i].second)});
        }
    }

    std::vector<Difference>& m_found;
};

// What a producer says of the scene as a whole.
struct Whole
{
    Answer root;
    Answer universe;
    PropertyDatabase const* properties = nullptr;

    explicit Whole(IProducer& producer)
    {
        root = AnswersOf({&TableOf<IProducer>::kTable, &producer});
        if (IUniverse const* const found = Ask([&] { return producer.LoadUniverse(); }).value_or(nullptr))
        {
            universe = AnswersOf({&TableOf<IUniverse>::kTable, found});
            properties = found->PropertyDatabaseOf();
        }
    }
};

Answer AnswersOf(IObject* object, PropertyDatabase const* properties)
{
    return object ? AnswersOf(DescribedObject::Of(*object), properties) : Answer();
}

// Goes to the ids that a producer reaches from its root and the ids.
void BeginAt(ReferenceWalk& walk, IProducer& producer, std::span<UTF8String const> ids)
{
    if (auto const root = Ask([&] { return producer.RootObjectId(); }))
        walk.Reach(root->Id());
    for (UTF8String const& id : ids)
        walk.Reach(id);
}

}  // namespace

std::vector<Difference> Compare(Answer const& first, Answer const& second)
{
    std::vector<Difference> found;
    Comparer(found).Compare({}, first, second);
    return found;
}

std::vector<Difference> Compare(IObject& first, IObject& second)
{
    return Compare(AnswersOf(DescribedObject::Of(first)), AnswersOf(DescribedObject::Of(second)));
}

std::vector<Difference> Compare(IProducer& first, IProducer& second, std::span<UTF8String const> ids)
{
    std::vector<Difference> found;
    Comparer comparer(found);
    Whole const one(first);
    Whole const other(second);
    comparer.Compare({}, one.root, other.root);
    comparer.Compare("Universe", one.universe, other.universe);
    std::unordered_set<UTF8String> compared;
    // What both reach is compared in the first walk.
    for (IProducer* const walked : {&first, &second})
    {
        ReferenceWalk walk(*walked);
        BeginAt(walk, *walked, ids);
        while (walk.Next())
        {
            if (!compared.insert(walk.Id()).second)
                continue;
            IObject* const object = walk.Object();
            IObject* const a = walked == &first ? object : first.Load(walk.Id());
            IObject* const b = walked == &second ? object : second.Load(walk.Id());
            comparer.Compare(std::string(walk.Id().View()) + '/', AnswersOf(a, one.properties),
                             AnswersOf(b, other.properties));
        }
    }
    return found;
}

}  // namespace KVR
