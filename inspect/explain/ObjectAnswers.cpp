#include "inspect/explain/ObjectAnswers.h"

#include <algorithm>
#include <iterator>

#include "describe/Ask.h"
#include "describe/SilentAnswers.h"
#include "describe/Tables.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"

namespace KVR
{

namespace
{

void Append(std::vector<ObjectAnswer>& answers, Interface const& interface, void const* object, Telling const& telling,
            AnswerKeeper& keeper, bool isOwn)
{
    for (Row const& row : interface.rows)
    {
        if (row.base)
        {
            Append(answers, *row.base, row.toBase(object), telling, keeper, false);
            continue;
        }
        if (!row.isInDump || row.isLong || row.isMeasured)
            continue;
        row.tell(object, telling);
        answers.push_back({row.name, keeper.Take(), isOwn});
    }
}

// Members that hold occurrence paths, and those in which these stand: no reference that a walk would follow, and they
// name objects all the same.
bool LeadsAlongPaths(std::string_view name)
{
    constexpr std::string_view kNames[] = {"BaseOccPaths", "CrossLevelVisibilities", "CrossLevelTransforms",
                                           "OccurrencePath", "Path"};
    return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

// Keeps the object's own members in which the id stands as a reference, or on an occurrence path.
class NamingMembers final : public SilentAnswers
{
public:
    explicit NamingMembers(std::string_view id) : m_id(id) {}

    bool BeginMember(Row const& row) override
    {
        if (row.refers == Refers::Nothing && !LeadsAlongPaths(row.name))
            return false;
        if (m_depth++ == 0)
            m_member = row.name;
        return true;
    }
    void EndMember() override { --m_depth; }
    void Text(std::string_view id) override
    {
        if (id == m_id && (members.empty() || members.back() != m_member))
            members.emplace_back(m_member);
    }

    std::vector<std::string> members;

private:
    std::string_view m_id;
    std::string_view m_member;
    unsigned m_depth = 0;
};

}  // namespace

std::vector<ObjectAnswer> AnswersOf(IObject& object, IProducer& producer)
{
    std::vector<ObjectAnswer> answers;
    DescribedObject const described = DescribedObject::Of(object);
    if (!described.interface)
        return answers;
    AnswerKeeper keeper;
    IUniverse const* const universe = Ask([&] { return producer.LoadUniverse(); }).value_or(nullptr);
    Telling const telling{.to = keeper, .properties = universe ? universe->PropertyDatabaseOf() : nullptr};
    Append(answers, *described.interface, described.object, telling, keeper, true);
    return answers;
}

std::vector<std::string> OperationsNaming(IObject& object, std::string_view id)
{
    DescribedObject const described = DescribedObject::Of(object);
    if (!described.interface)
        return {};
    NamingMembers naming(id);
    TellMembers(*described.interface, described.object, Telling{naming});
    return std::move(naming.members);
}

}  // namespace KVR
