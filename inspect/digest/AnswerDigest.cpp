#include "inspect/digest/AnswerDigest.h"

#include <BinTools_CurveSet.hxx>
#include <BinTools_OStream.hxx>
#include <BinTools_ShapeSet.hxx>
#include <Geom_Curve.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <locale>
#include <new>
#include <ostream>

#include "describe/Row.h"
#include "framework/api/IBrep.h"
#include "framework/api/ICurve.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/gmk_array.h"

namespace KVR
{

namespace
{

// A number without what makes no difference to whoever reads it.
double Plain(double value) noexcept
{
    if (std::isnan(value))
        return std::numeric_limits<double>::quiet_NaN();
    return value == 0.0 ? 0.0 : value;
}

// What Open CASCADE cannot write counts as far as it came: the same for the same shape.
template <class Write>
void WriteShape(DigestStream& to, Write write)
{
    MemoryWatch const watch;
    std::ostream out(&to);
    out.imbue(std::locale::classic());
    try
    {
        write(out);
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
    }
}

}  // namespace

DigestStream::DigestStream() : m_state(XXH3_createState())
{
    if (!m_state)
        throw std::bad_alloc();
    XXH3_128bits_reset(m_state.get());
}

void DigestStream::Add(void const* bytes, std::size_t count) noexcept
{
    XXH3_128bits_update(m_state.get(), bytes, count);
}

SceneDigest DigestStream::Take() noexcept
{
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(m_state.get()));
    XXH3_128bits_reset(m_state.get());
    SceneDigest digest;
    std::copy(std::begin(canonical.digest), std::end(canonical.digest), digest.bytes.begin());
    return digest;
}

std::streamsize DigestStream::xsputn(char const* bytes, std::streamsize count)
{
    Add(bytes, static_cast<std::size_t>(count));
    return count;
}

DigestStream::int_type DigestStream::overflow(int_type byte)
{
    if (!traits_type::eq_int_type(byte, traits_type::eof()))
    {
        char const value = traits_type::to_char_type(byte);
        Add(&value, 1);
    }
    return traits_type::not_eof(byte);
}

bool AnswerDigest::BeginMember(Row const& row)
{
    if (row.isMass || row.isMeasured)
        return false;
    PutText('m', row.name);
    return true;
}

void AnswerDigest::Number(double value)
{
    Mark('d');
    double const plain = Plain(value);
    m_stream.Add(&plain, sizeof(plain));
}

void AnswerDigest::Bytes(void const* bytes, std::size_t size)
{
    Put('b', static_cast<long long>(size));
    m_stream.Add(bytes, size);
}

void AnswerDigest::BeginObject(Interface const& interface)
{
    PutText('(', interface.name);
}

void AnswerDigest::Numbers(double const* values, std::size_t count)
{
    Put('n', static_cast<long long>(count));
    std::array<double, 64> block;
    for (std::size_t done = 0; done < count;)
    {
        std::size_t const part = std::min(count - done, block.size());
        std::transform(values + done, values + done + part, block.begin(), &Plain);
        m_stream.Add(block.data(), part * sizeof(double));
        done += part;
    }
}

void AnswerDigest::Put(char kind, long long value) noexcept
{
    Mark(kind);
    m_stream.Add(&value, sizeof(value));
}

void AnswerDigest::PutText(char kind, std::string_view text) noexcept
{
    Put(kind, static_cast<long long>(text.size()));
    m_stream.Add(text.data(), text.size());
}

void AnswerDigest::AddShapes(IObject& object)
{
    if (auto const* const brep = dynamic_cast<IBrep const*>(&object))
    {
        if (BODY const* const body = brep->Body())
            AddBody(*body);
    }
    else if (auto const* const geometry = dynamic_cast<ICurve const*>(&object))
    {
        for (curve const* const kernelCurve : geometry->KernelCurves())
            if (kernelCurve && !kernelCurve->IsDestroyed())
                AddCurve(*kernelCurve);
    }
}

void AnswerDigest::AddBody(BODY const& body)
{
    Mark('B');
    WriteShape(m_stream,
               [&](std::ostream& out)
               {
                   BinTools_ShapeSet set;
                   set.SetWithTriangles(Standard_False);
                   set.Add(body.Shape());
                   set.Write(out);
                   set.Write(body.Shape(), out);
               });
}

void AnswerDigest::AddCurve(curve const& kernelCurve)
{
    Mark('C');
    Number(kernelCurve.First());
    Number(kernelCurve.Last());
    WriteShape(m_stream,
               [&](std::ostream& out)
               {
                   BinTools_OStream stream(out);
                   BinTools_CurveSet::WriteCurve(kernelCurve.Geometry(), stream);
               });
}

}  // namespace KVR
