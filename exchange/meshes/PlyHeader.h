#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace KVR
{

/// The head of a PLY file: what stands behind it, in which order and form.
struct PlyHeader
{
    enum class Form
    {
        kText,
        kLittleEndian,
        kBigEndian
    };
    enum class Type
    {
        kInt8,
        kUint8,
        kInt16,
        kUint16,
        kInt32,
        kUint32,
        kFloat32,
        kFloat64
    };
    struct Property
    {
        std::string name;
        Type type = Type::kFloat32;
        bool isList = false;
        Type countType = Type::kUint8;
    };
    struct Element
    {
        std::string name;
        unsigned long long count = 0;
        std::vector<Property> properties;

        /// The fewest bytes that one takes.
        std::size_t LeastSize(Form given) const;
    };

    Form form = Form::kText;
    std::vector<Element> elements;
    /// The image that the comments name; empty for none.
    std::string texture;
    /// Where the content begins, and how many lines are in front of it.
    std::size_t size = 0;
    std::size_t lines = 0;

    /// Throws ModelError with the line for a head that is cut short or makes no sense.
    static PlyHeader Of(std::string_view bytes);
    static std::size_t SizeOf(Type type);
};

}  // namespace KVR
