#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/meshes/MeshReading.h"

namespace KVR
{

/// A glTF document with its buffers. Its JSON is not trusted: members may be missing or of another kind.
class GltfFile
{
public:
    using Json = nlohmann::json;

    /// Reads a file in either form, and the buffers that it names. Throws ModelError.
    GltfFile(MeshReading& reading, std::string_view bytes);

    MeshReading& Reading() const noexcept { return m_reading; }

    /// The list of a name in the document; empty for none.
    Json const& List(char const* name) const;
    /// The entry of a list that a member names; null for none. One that is not there is a damage.
    Json const* Entry(char const* list, Json const& object, char const* member);
    /// The bytes of a view, as far as they are there.
    std::string_view View(std::size_t index);
    Json const& Root() const noexcept { return m_root; }
    /// How many bytes there are in all buffers, once they are unpacked.
    std::size_t Size() const;
    /// What tells an entry of a list: "meshes 3 \"wheel\"".
    std::string NameOf(char const* list, std::size_t index) const;

    /// Members of an object; nothing, or what is given, for those of another kind.
    static std::optional<double> Number(Json const& object, char const* name);
    static std::optional<std::size_t> Index(Json const& object, char const* name);
    static std::string Text(Json const& object, char const* name);
    /// A member that is an object; an empty one for none.
    static Json const& Object(Json const& object, char const* name);
    static Json const& Extension(Json const& object, char const* name);
    /// So many numbers; nothing for any other list.
    static std::optional<std::vector<double>> Numbers(Json const& object, char const* name, std::size_t count);

    /// The bytes behind "data:...;base64,"; nothing for another text.
    static std::optional<std::string> DataOf(std::string const& uri);
    /// The path that a relative URI stands for.
    static std::string PathOf(std::string const& uri);

private:
    void ReadContainer(std::string_view bytes, std::string_view& json);
    void Parse(std::string_view json);
    void ReadBuffers(std::string_view bytes);
    void Decompress();
    std::string_view Bytes(Json const& part, std::string const& name);
    void RefuseExtensions();

    MeshReading& m_reading;
    Json m_root;
    std::string_view m_binary;
    bool m_hasBinary = false;
    std::vector<std::string> m_loaded;
    std::vector<std::string_view> m_buffers;
    /// What is compressed, by the index of the view.
    std::map<std::size_t, std::string> m_decompressed;
};

/// The numbers of an accessor, where they are in its buffer.
class GltfAccessor
{
public:
    /// Of the accessor of that index, with so many numbers in each element. What reaches beyond its buffer, is of
    /// another kind or makes no sense is a damage; what is there counts.
    GltfAccessor(GltfFile& file, std::size_t index, std::initializer_list<char const*> types);

    std::size_t Count() const noexcept { return m_count; }
    /// How many the file announces.
    std::size_t Announced() const noexcept { return m_announced; }
    std::size_t Width() const noexcept { return m_width; }
    /// A number of an element below Count: of integers that stand for fractions the fraction.
    double At(std::size_t element, std::size_t number) const;
    /// A whole number; the largest for what is none.
    std::uint32_t IndexAt(std::size_t element) const
    {
        constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
        double const number = Raw(element, 0);
        return number >= 0.0 && number < kNone ? static_cast<std::uint32_t>(number) : kNone;
    }

private:
    double Raw(std::size_t element, std::size_t number) const;
    double RawAt(std::string_view bytes, std::size_t place) const;
    void ReadSparse(GltfFile& file, GltfFile::Json const& sparse);

    std::string_view m_bytes;
    std::size_t m_count = 0;
    std::size_t m_announced = 0;
    std::size_t m_width = 1;
    std::size_t m_stride = 0;
    int m_type = 0;
    bool m_isNormalized = false;
    // Elements that have numbers of their own, in order, and where those stand.
    std::vector<std::uint32_t> m_sparse;
    std::string_view m_sparseBytes;
};

}  // namespace KVR
