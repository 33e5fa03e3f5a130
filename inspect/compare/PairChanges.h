#pragma once

#include <string>
#include <vector>

#include "describe/Answer.h"
#include "inspect/Compare.h"
#include "inspect/compare/ComparedScene.h"

namespace KVR
{

/// Tells what changed of objects that match. Both scenes must outlive it, with their matches.
class PairChanges
{
public:
    /// `isById` says whether all that match have the same id. Changes are added to the list.
    PairChanges(ComparedScene const& first, ComparedScene const& second, bool isById,
                std::vector<SceneChange>& changes);

    /// Of two objects that match.
    void Tell(std::size_t a, std::size_t b);
    /// Of the scenes as a whole.
    void TellWhole(Answer const& first, Answer const& second);

    /// A change of an object that either or both scenes have.
    SceneChange Of(ChangeKind kind, std::size_t a, std::size_t b) const;

private:
    struct Pair
    {
        std::size_t a;
        std::size_t b;
    };

    ComparedObject const& First(Pair const& pair) const { return m_first.Objects()[pair.a]; }
    ComparedObject const& Second(Pair const& pair) const { return m_second.Objects()[pair.b]; }
    bool SaysTheSame(Pair const& pair) const;
    Answer AnswersOf(ComparedScene const& scene, std::size_t index) const;
    void Ask(ComparedScene const& scene, std::size_t index, AnswerVisitor& to) const;
    void TellShape(Pair const& pair);
    void TellOwner(Pair const& pair);
    void TellMember(Pair const& pair, std::string const& name, Answer const& first, Answer const& second);
    void TellMove(Pair const& pair, Answer const& first, Answer const& second);
    void TellRecords(Pair const& pair, std::string const& name, ChangeKind kind, std::string_view key,
                     Answer const& first, Answer const& second);
    void TellFileProperties(Pair const& pair, Answer const& first, Answer const& second);
    SceneChange& Add(ChangeKind kind, Pair const& pair, std::string what, Answer const& first, Answer const& second);
    std::string ValueText(Answer const& answer) const;
    std::string StyleTexts(Answer const& answer) const;

    ComparedScene const& m_first;
    ComparedScene const& m_second;
    bool m_isById;
    std::vector<SceneChange>& m_changes;
};

}  // namespace KVR
