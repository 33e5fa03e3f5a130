#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace KVR
{

class Output;

/// Writes one JSON value piece by piece, indented, and keeps nothing of it but a byte per open list or object. The
/// caller balances Begin and End and writes a Key before each member of an object; every operation may throw
/// OutputError.
class JsonWriter
{
public:
    /// Lines gives each element a line of its own; Row keeps a list or object, and all that is in it, on one line.
    enum class Layout : unsigned char
    {
        Lines,
        Row
    };

    /// Writes to `out`, which must outlive the writer.
    explicit JsonWriter(Output& out);

    void BeginObject(Layout layout = Layout::Lines);
    void EndObject();
    void BeginList(Layout layout = Layout::Lines);
    void EndList();
    void Key(std::string_view name);

    void Null();
    void Bool(bool value);
    void Integer(long long value);
    void Unsigned(unsigned long long value);
    /// The shortest text that reads back as the same number; null for what JSON cannot hold.
    void Number(double value);
    /// Lists of numbers in a row.
    void Row(std::span<double const> values);
    void Row(std::span<int const> values);
    void Row(std::span<unsigned int const> values);
    /// Bytes that are not UTF-8 become U+FFFD.
    void String(std::string_view text);
    /// The bytes as text in base 64.
    void Base64(void const* bytes, std::size_t size);
    /// Ends the document with a line end.
    void EndDocument();

private:
    struct Level
    {
        bool isRow;
        bool isEmpty;
    };

    template <class Value>
    void PutRow(std::span<Value const> values);
    /// Room behind what parts the next value or key from what stands before it.
    char* Separated(std::size_t room);
    char* PutLine(char* place) const;
    void Begin(char bracket, Layout layout);
    void End(char bracket);

    Output& m_out;
    std::vector<Level> m_levels;
    bool m_hasKey = false;
};

}  // namespace KVR
