#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "describe/AnswerVisitor.h"
#include "describe/Tables.h"

namespace KVR
{

/// An answer as a value of its own: null, a scalar, a text, a list, or members by name in their order.
struct Answer
{
    using List = std::vector<Answer>;
    using Members = std::vector<std::pair<std::string, Answer>>;

    std::variant<std::monostate, bool, long long, unsigned long long, double, std::string, List, Members> value;

    /// A number that is none equals another one.
    friend bool operator==(Answer const& a, Answer const& b);
};

/// The value as a reader of a difference wants to see it: JSON's notation, cut at a few dozen characters.
std::string BriefText(Answer const& answer);

/// Keeps what it is told.
class AnswerKeeper final : public AnswerVisitor
{
public:
    /// What was told, "Class" of an object first; the keeper is as new afterwards.
    Answer Take();

    bool BeginMember(Row const& row) override;
    void Null() override { Put(std::monostate()); }
    void Bool(bool value) override { Put(value); }
    void Integer(long long value) override { Put(value); }
    void Unsigned(unsigned long long value) override { Put(value); }
    void Number(double value) override { Put(value); }
    void Text(std::string_view text) override { Put(std::string(text)); }
    void Bytes(void const* bytes, std::size_t size) override;
    void BeginList(Layout) override { Open(Answer{Answer::List()}); }
    void EndList() override { Close(); }
    void BeginMap() override { Open(Answer{Answer::Members()}); }
    void Key(std::string_view key) override { m_keys.back() = key; }
    void EndMap() override { Close(); }
    void BeginObject(Interface const& interface) override;
    void EndObject() override { Close(); }

private:
    template <class Value>
    void Put(Value value);
    void Open(Answer answer);
    void Close();

    // The open lists and objects, and the key of the next member of each.
    std::vector<Answer> m_open;
    std::vector<std::string> m_keys;
    Answer m_answer;
};

/// All that an object answers for the dump; null for none.
Answer AnswersOf(DescribedObject const& object, PropertyDatabase const* properties = nullptr,
                 std::span<std::string const> extensionTypeIds = {});

}  // namespace KVR
