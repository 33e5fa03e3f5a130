#pragma once

// What the readers' sources see when they are built with mistakes in them.

#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/DomWalk.h"

// The tests' program has these; libraries that it uses take them from there.
#pragma GCC visibility push(default)

/// Whether the mistake of that number is to be made: the one that the environment names in KVR_MUTANT.
bool kvr_mutant(int number);

namespace KVR
{

/// The producer that scans a document, as mistakes in mapping want it; null before.
extern void* mutantProducer;
/// Maps an id as that producer does.
void MutantMapId(UTF8String& id);
/// The id, mapped.
UTF8String MutantMapped(UTF8String id);
/// The ids, each mapped.
IdSet MutantMapped(IdSet const& ids);

/// A row that matches in any case, or exactly.
struct MutantOn
{
    bool anyCase;
    template <class Action>
    MatchRow<Action> operator()(ElementName name, Action action) const
    {
        return {name, anyCase, action};
    }
};

/// A comparison in any case, or an exact one.
struct MutantEquals
{
    bool anyCase;
    bool operator()(XMLCh const* text, std::u16string_view name) const
    {
        return anyCase ? EqualsAnyCase(text, name) : Equals(text, name);
    }
};

/// One of two, for what wants either: two functions of an object may be those of different bases.
template <class Other, class Own>
struct MutantEither
{
    MutantEither(bool isOther, Other other, Own own) : m_isOther(isOther), m_other(other), m_own(own) {}

    template <class Wanted>
    operator Wanted() const
    {
        return m_isOther ? static_cast<Wanted>(m_other) : static_cast<Wanted>(m_own);
    }

private:
    bool m_isOther;
    Other m_other;
    Own m_own;
};

}  // namespace KVR

#pragma GCC visibility pop
