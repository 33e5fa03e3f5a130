#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace KVR
{

/// A parameter of an entity.
struct Part21Parameter
{
    enum class Kind
    {
        /// "$" and "*".
        kNone,
        kNumber,
        kText,
        /// A word between points: ".T.".
        kWord,
        kReference,
        /// A list, or with a text the value of a type: "LENGTH_MEASURE(1.)".
        kList
    };

    Kind kind = Kind::kNone;
    double number = 0.0;
    /// Of a reference: the number of the entity.
    std::uint64_t reference = 0;
    /// UTF-8, as the file means it.
    std::string text;
    std::vector<Part21Parameter> items;
};

/// The entities of a STEP file (ISO 10303-21) as they stand in it, whether any reader knows their types or not. Counts,
/// numbers and references are the file's: an entity that is referred to may be missing.
class Part21File
{
public:
    using Number = std::uint64_t;
    using Values = std::vector<Part21Parameter>;

    struct Entity
    {
        Number number = 0;
        /// What stands behind the equals sign, without the semicolon.
        std::string_view text;
        /// The place of its type in Types().
        std::uint32_t type = 0;
        /// What it refers to: a piece of References().
        std::uint32_t firstReference = 0;
        std::uint32_t referenceCount = 0;
    };

    /// The bytes of a file.
    struct Bytes
    {
        std::string bytes;
    };

    /// Reads a file, by the path; one that cannot be read has no entities.
    explicit Part21File(std::string const& path);
    explicit Part21File(Bytes content);
    Part21File(Part21File const&) = delete;
    Part21File& operator=(Part21File const&) = delete;

    /// What stands in front of the first entity; empty for a file without any, or without a head.
    std::string_view Head() const { return std::string_view(m_bytes).substr(0, m_headSize); }
    /// In the order of the file.
    std::vector<Entity> const& Entities() const noexcept { return m_entities; }
    /// "PRODUCT"; of an entity of several types all of them with blanks between them.
    std::vector<std::string> const& Types() const noexcept { return m_types; }
    std::string const& TypeOf(Entity const& entity) const { return m_types[entity.type]; }
    std::vector<Number> const& References() const noexcept { return m_references; }

    /// The place of an entity in Entities(); their number for one that is missing. Of two of one number the first.
    std::size_t PlaceOf(Number number) const;
    /// Null for one that is missing.
    Entity const* Find(Number number) const;

    /// Whether an entity is of the type, by itself or among others.
    bool Is(Entity const& entity, std::string_view type) const;
    /// The parameters of an entity; of one of several types, those of the type. Empty for another type. What is damaged
    /// ends the list.
    Values ParametersOf(Entity const& entity, std::string_view type) const;

private:
    void Scan();
    std::size_t ScanEntity(std::size_t at);
    std::size_t SkipBlanks(std::size_t at) const;
    std::size_t SkipText(std::size_t at) const;
    std::uint32_t InternType(std::string_view text);

    std::string m_bytes;
    std::size_t m_headSize = 0;
    std::vector<Entity> m_entities;
    std::vector<Number> m_references;
    std::vector<std::string> m_types;
    std::unordered_map<std::string, std::uint32_t> m_typePlaces;
    /// The places of entities by their numbers, where these do not ascend in the file; else empty.
    std::vector<std::uint32_t> m_order;
};

}  // namespace KVR
