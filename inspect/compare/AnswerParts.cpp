#include "inspect/compare/AnswerParts.h"

#include <unordered_set>
#include <utility>
#include <variant>

namespace KVR
{

namespace
{

Answer const* FindMember(Answer const& answer, std::string_view name)
{
    if (auto const* const members = std::get_if<Answer::Members>(&answer.value))
        for (auto const& [key, value] : *members)
            if (key == name)
                return &value;
    return nullptr;
}

std::unordered_set<std::string> TextsOf(Answer const& list)
{
    std::unordered_set<std::string> texts;
    if (auto const* const items = std::get_if<Answer::List>(&list.value))
        for (Answer const& item : *items)
            if (auto const* const text = std::get_if<std::string>(&item.value))
                texts.insert(*text);
    return texts;
}

}  // namespace

Answer const& MemberOf(Answer const& answer, std::string_view name)
{
    static Answer const none;
    Answer const* const found = FindMember(answer, name);
    return found ? *found : none;
}

Answer Common(Answer const& list, Answer const& other)
{
    std::unordered_set<std::string> const texts = TextsOf(other);
    Answer::List common;
    if (auto const* const items = std::get_if<Answer::List>(&list.value))
        for (Answer const& item : *items)
            if (auto const* const text = std::get_if<std::string>(&item.value); text && texts.contains(*text))
                common.push_back(item);
    return {std::move(common)};
}

std::map<std::string, Answer const*> ByKey(Answer const& list, std::string_view key)
{
    std::map<std::string, Answer const*> records;
    if (auto const* const items = std::get_if<Answer::List>(&list.value))
        for (Answer const& item : *items)
        {
            if (!std::holds_alternative<Answer::Members>(item.value))
                continue;
            Answer const& name = MemberOf(item, key);
            auto const* const text = std::get_if<std::string>(&name.value);
            std::string const base = text ? *text : BriefText(name);
            std::string unique = base;
            for (std::size_t n = 2; !records.emplace(unique, &item).second; ++n)
                unique = base + " (" + std::to_string(n) + ")";
        }
    return records;
}

Answer RestOf(Answer const* record, std::string_view key)
{
    if (!record)
        return {};
    auto const* const members = std::get_if<Answer::Members>(&record->value);
    if (!members)
        return *record;
    Answer::Members rest;
    for (auto const& member : *members)
        if (member.first != key && member.first != "Id" && member.first != "Class" && member.first != "Type")
            rest.push_back(member);
    // A single value stands for itself.
    return rest.size() == 1 ? rest.front().second : Answer{std::move(rest)};
}

bool IsTrue(Answer const& answer)
{
    auto const* const value = std::get_if<bool>(&answer.value);
    return value && *value;
}

std::optional<Matrix> MatrixOf(Answer const& answer)
{
    auto const* const items = std::get_if<Answer::List>(&answer.value);
    Matrix matrix = kIdentity;
    if (!items)
        return std::holds_alternative<std::monostate>(answer.value) ? std::optional(matrix) : std::nullopt;
    if (items->size() != matrix.size())
        return std::nullopt;
    for (std::size_t i = 0; i < matrix.size(); ++i)
    {
        auto const* const number = std::get_if<double>(&(*items)[i].value);
        if (!number)
            return std::nullopt;
        matrix[i] = *number;
    }
    return matrix;
}

}  // namespace KVR
