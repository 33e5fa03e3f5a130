#pragma once

#include "describe/Tell.h"
#include "output/JsonWriter.h"

namespace KVR
{

/// Writes answers as JSON: an object's members by their names, ids and texts as strings, bytes in base 64.
class JsonAnswers final : public AnswerVisitor
{
public:
    enum class Extent : unsigned char
    {
        kAll,
        /// Without the long lists.
        kSummaryWithMass,
        /// Without the long lists, and without the measures of bodies that cost much.
        kSummary
    };

    /// The writer must outlive this.
    explicit JsonAnswers(JsonWriter& json, Extent extent = Extent::kAll) : m_json(json), m_extent(extent) {}

    bool BeginMember(Row const& row) override;
    void Null() override { m_json.Null(); }
    void Bool(bool value) override { m_json.Bool(value); }
    void Integer(long long value) override { m_json.Integer(value); }
    void Unsigned(unsigned long long value) override { m_json.Unsigned(value); }
    void Number(double value) override { m_json.Number(value); }
    void Text(std::string_view text) override { m_json.String(text); }
    void Bytes(void const* bytes, std::size_t size) override { m_json.Base64(bytes, size); }
    void BeginList(Layout layout) override { m_json.BeginList(In(layout)); }
    void EndList() override { m_json.EndList(); }
    void BeginMap() override { m_json.BeginObject(); }
    void Key(std::string_view key) override { m_json.Key(key); }
    void EndMap() override { m_json.EndObject(); }
    void BeginObject(Interface const& interface) override;
    void EndObject() override { m_json.EndObject(); }
    void Numbers(double const* values, std::size_t count) override;
    void Indices(int const* values, std::size_t count) override;
    void Indices(unsigned int const* values, std::size_t count) override;

private:
    static JsonWriter::Layout In(Layout layout)
    {
        return layout == Layout::Row ? JsonWriter::Layout::Row : JsonWriter::Layout::Lines;
    }

    JsonWriter& m_json;
    Extent m_extent;
};

/// One value as it stands in a dump.
template <class T>
void WriteValue(JsonWriter& json, T const& value)
{
    JsonAnswers answers(json);
    Tell(Telling{answers}, value);
}

}  // namespace KVR
