#pragma once

#include <xxhash.h>

#include <cstdint>
#include <memory>
#include <streambuf>

#include "describe/AnswerVisitor.h"
#include "inspect/Digest.h"

namespace KVR
{

class BODY;
class curve;
class IObject;

/// XXH3 with 128 bits over bytes as they pass; also as what a stream writes to.
class DigestStream final : public std::streambuf
{
public:
    DigestStream();

    void Add(void const* bytes, std::size_t count) noexcept;
    /// The digest of all that was added; the stream is as new afterwards.
    SceneDigest Take() noexcept;

protected:
    std::streamsize xsputn(char const* bytes, std::streamsize count) override;
    int_type overflow(int_type byte) override;

private:
    struct EndState
    {
        void operator()(XXH3_state_t* state) const noexcept { XXH3_freeState(state); }
    };
    std::unique_ptr<XXH3_state_t, EndState> m_state;
};

/// Digests what it is told, in a form of which no two answers have the same: each value with a byte that says what it
/// is, texts and lists with their lengths or ends. A number that is 0 has no sign, and one that is none is always the
/// same. Left out is what is measured of bodies and curves: AddShapes takes them as they are.
class AnswerDigest : public AnswerVisitor
{
public:
    /// Of all that was told.
    SceneDigest Take() noexcept { return m_stream.Take(); }
    /// Takes the body or the curves of the kernel that the object has, if any.
    void AddShapes(IObject& object);

    bool BeginMember(Row const& row) override;
    void Null() override { Mark('0'); }
    void Bool(bool value) override { Mark(value ? 't' : 'f'); }
    void Integer(long long value) override { Put('i', value); }
    void Unsigned(unsigned long long value) override { Put('i', static_cast<long long>(value)); }
    void Number(double value) override;
    void Text(std::string_view text) override { PutText('s', text); }
    void Bytes(void const* bytes, std::size_t size) override;
    void BeginList(Layout) override { Mark('['); }
    void EndList() override { Mark(']'); }
    void BeginMap() override { Mark('{'); }
    void Key(std::string_view key) override { PutText('k', key); }
    void EndMap() override { Mark('}'); }
    void BeginObject(Interface const& interface) override;
    void EndObject() override { Mark(')'); }
    void Numbers(double const* values, std::size_t count) override;

private:
    void Mark(char kind) noexcept { m_stream.Add(&kind, 1); }
    void Put(char kind, long long value) noexcept;
    void PutText(char kind, std::string_view text) noexcept;
    void AddBody(BODY const& body);
    void AddCurve(curve const& kernelCurve);

    DigestStream m_stream;
};

}  // namespace KVR
