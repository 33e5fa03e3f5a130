#pragma once

#include <functional>
#include <optional>
#include <string>

#include "describe/AnswerVisitor.h"

namespace KVR
{

/// Passes on what an object answers, parted into its shape and all else: the shape are those answers of geometry that
/// are neither common to all objects or all geometry, nor ids of other objects. Its own id and those of its properties
/// go nowhere.
class MatchedAnswers final : public AnswerVisitor
{
public:
    /// What an id of another object is to be called; nothing for a text that is no id.
    using NameOfId = std::function<std::optional<std::string>(std::string_view id)>;

    /// Either may be null for what is not wanted. The objects must outlive this.
    MatchedAnswers(AnswerVisitor* shape, AnswerVisitor* rest, NameOfId nameOfId = {});

    /// To be called before an object is asked: whether it has a shape.
    void Begin(Interface const& interface);

    bool BeginMember(Row const& row) override;
    void EndMember() override;
    void Null() override { m_to->Null(); }
    void Bool(bool value) override { m_to->Bool(value); }
    void Integer(long long value) override { m_to->Integer(value); }
    void Unsigned(unsigned long long value) override { m_to->Unsigned(value); }
    void Number(double value) override { m_to->Number(value); }
    void Text(std::string_view text) override;
    void Bytes(void const* bytes, std::size_t size) override { m_to->Bytes(bytes, size); }
    void BeginList(Layout layout) override { m_to->BeginList(layout); }
    void EndList() override { m_to->EndList(); }
    void BeginMap() override { m_to->BeginMap(); }
    void Key(std::string_view key) override { m_to->Key(key); }
    void EndMap() override { m_to->EndMap(); }
    void BeginObject(Interface const& interface) override;
    void EndObject() override;
    void Unit(UnitTypeEnum unit) override { m_to->Unit(unit); }
    void Time(struct tm const& time) override { m_to->Time(time); }
    void Numbers(double const* values, std::size_t count) override { m_to->Numbers(values, count); }
    void Indices(int const* values, std::size_t count) override { m_to->Indices(values, count); }
    void Indices(unsigned int const* values, std::size_t count) override { m_to->Indices(values, count); }

private:
    AnswerVisitor* m_shape;
    AnswerVisitor* m_rest;
    NameOfId m_nameOfId;
    AnswerVisitor* m_to;
    bool m_hasShape = false;
    /// Whether the current member has ids of other objects in it.
    bool m_hasIds = false;
    unsigned m_depth = 0;
};

}  // namespace KVR
