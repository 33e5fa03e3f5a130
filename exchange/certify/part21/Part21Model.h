#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace KVR::Certification
{

/// A parameter of an entity in a Part 21 file.
struct Part21Parameter
{
    enum class Kind : unsigned char
    {
        /// "$", "*", and what cannot be read.
        kNothing,
        kReference,
        kNumber,
        kText,
        /// ".T.": the text without the dots.
        kEnumeration,
        kList,
        /// LENGTH_MEASURE(5.): the type as text, its parameters as list.
        kTyped
    };
    Kind kind = Kind::kNothing;
    /// Of a reference the entity, 0 for other kinds.
    unsigned long long reference = 0;
    double number = 0.0;
    /// UTF-8.
    std::string text;
    std::vector<Part21Parameter> list;

    /// Its number, or that of the only parameter of a typed one.
    double Number() const;
    /// The entities that it names, in lists as well.
    std::vector<unsigned long long> References() const;
};

/// The data section of a Part 21 file: entities by their numbers, with parameters that are read when they are asked
/// for. Entities of several types have each of them with its own parameters.
class Part21Model
{
public:
    using Id = unsigned long long;

    /// Throws std::runtime_error for a text that is no exchange structure or ends early.
    explicit Part21Model(std::string text);
    /// Reads a file; throws std::runtime_error as well when it cannot be read.
    static Part21Model Read(std::string const& path);
    // Types are views of the text.
    Part21Model(Part21Model const&) = delete;
    Part21Model& operator=(Part21Model const&) = delete;

    /// The entities of exactly that type, or with a part of it, in the order of the file.
    std::vector<Id> const& Of(std::string_view type) const;
    bool Has(Id id) const { return m_entities.count(id) != 0; }
    bool Is(Id id, std::string_view type) const;
    /// The types of an entity; none for an unknown one.
    std::vector<std::string_view> TypesOf(Id id) const;
    /// The parameters of that part of an entity, or of its first for an empty type; none when it has no such part.
    std::vector<Part21Parameter> Parameters(Id id, std::string_view type = {}) const;
    /// One of them; nothing for a place behind the last.
    Part21Parameter Parameter(Id id, std::size_t place, std::string_view type = {}) const;

private:
    struct Record
    {
        std::string_view type;
        std::size_t begin;
    };
    struct Entity
    {
        std::size_t firstRecord;
        std::size_t recordCount;
    };
    void ReadEntity();
    void ReadRecord();
    void SkipSpace();
    void Expect(char sign);
    unsigned long long ReadNumber();
    std::string_view ReadName();
    void SkipList();

    std::string m_text;
    std::size_t m_place = 0;
    std::vector<Record> m_records;
    std::unordered_map<Id, Entity> m_entities;
    std::unordered_map<std::string_view, std::vector<Id>> m_ofType;
};

}  // namespace KVR::Certification
