#include "describe/Row.h"

#include <algorithm>
#include <stdexcept>

#include "describe/AnswerVisitor.h"
#include "framework/api/Exception.h"

namespace KVR
{

namespace
{

// What an interface may throw for an index that a list does not have. Called inside a handler.
bool IsRefusedIndex()
{
    try
    {
        throw;
    }
    catch (std::out_of_range const&)
    {
        return true;
    }
    catch (GeneralException const&)
    {
        return true;
    }
    catch (...)
    {
        return false;
    }
}

}  // namespace

void Telling::OnThrow() const
{
    if (everything && !(isBeyond && IsRefusedIndex()))
        throw;
}

bool IsA(Interface const& interface, Interface const& base)
{
    if (&interface == &base)
        return true;
    return std::any_of(interface.rows.begin(), interface.rows.end(),
                       [&](Row const& row) { return row.base && IsA(*row.base, base); });
}

void TellMembers(Interface const& interface, void const* object, Telling const& telling)
{
    for (Row const& row : interface.rows)
    {
        if (row.base)
        {
            TellMembers(*row.base, row.toBase(object), telling);
            continue;
        }
        if ((row.isInDump || telling.everything) && telling.to.BeginMember(row))
        {
            row.tell(object, telling);
            telling.to.EndMember();
        }
        if (telling.everything && row.tellBeyond && telling.to.BeginBeyond(row))
        {
            row.tellBeyond(object, telling);
            telling.to.EndMember();
        }
    }
}

void TellObject(Interface const& interface, void const* object, Telling const& telling)
{
    telling.to.BeginObject(interface);
    TellMembers(interface, object, telling);
    telling.to.EndObject();
}

}  // namespace KVR
