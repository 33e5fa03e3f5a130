#include "describe/Tell.h"

#include "framework/api/Blob.h"
#include "framework/api/Color.h"
#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/ICurveData.h"
#include "framework/api/IdSetSet.h"
#include "framework/api/IndexSets.h"
#include "framework/api/OccurrencePathCollection.h"
#include "framework/api/SegmentInfo.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "framework/api/Time.h"
#include "framework/api/TypesafeId.h"
#include "framework/api/Variant.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"

namespace KVR
{

namespace
{

// Composites are read to 1,000 levels; whoever serves deeper ones must not end the walk either.
constexpr unsigned kDeepestNesting = 1001;

template <class Sets>
void TellSets(Telling const& telling, Sets const& sets)
{
    telling.to.BeginList(AnswerVisitor::Layout::Lines);
    for (unsigned long long i = 0; i < sets.Size(); ++i)
        Tell(telling, sets.At(i));
    telling.to.EndList();
}

}  // namespace

void Tell(Telling const& telling, UnitTypeEnum unit)
{
    telling.to.Unit(unit);
}

void Tell(Telling const& telling, UTF8String const& text)
{
    telling.to.Text(text.View());
}

void Tell(Telling const& telling, UTF16String const& text)
{
    telling.to.Text(UTF8String(text).View());
}

void Tell(Telling const& telling, TypesafeId const& id)
{
    telling.to.Text(id.Id().View());
}

void Tell(Telling const& telling, IdSet const& ids)
{
    telling.to.BeginList(AnswerVisitor::Layout::Row);
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        Tell(telling, ids.At(i));
    telling.to.EndList();
}

void Tell(Telling const& telling, IdSetSet const& sets)
{
    TellSets(telling, sets);
}

void Tell(Telling const& telling, OccurrencePathCollection const& paths)
{
    TellSets(telling, paths);
}

void Tell(Telling const& telling, Matrix3d const& matrix)
{
    telling.to.Numbers(matrix.Elements().data(), matrix.Elements().size());
}

void Tell(Telling const& telling, Position const& position)
{
    Tell(telling, std::array{position.X(), position.Y(), position.Z()});
}

void Tell(Telling const& telling, Vector const& vector)
{
    Tell(telling, std::array{vector[0], vector[1], vector[2]});
}

void Tell(Telling const& telling, Color const& color)
{
    Tell(telling, std::array{color.Red(), color.Green(), color.Blue(), color.Alpha()});
}

void Tell(Telling const& telling, Interval const& interval)
{
    Tell(telling, std::array{interval.Lower(), interval.Upper()});
}

void Tell(Telling const& telling, Time const& time)
{
    telling.to.Time(time.Value());
}

void Tell(Telling const& telling, std::tm const& time)
{
    telling.to.Time(time);
}

void Tell(Telling const& telling, Variant const& value)
{
    if (auto const* text = value.AStringValue())
        Tell(telling, *text);
    else if (auto const* ids = value.IdSetValue())
        Tell(telling, *ids);
    else
        Tell(telling, value.BlobValue());
}

void Tell(Telling const& telling, PolygonIndexSet const& indices)
{
    telling.to.Indices(indices.Indices().data(), indices.Indices().size());
}

void Tell(Telling const& telling, VertexIndexSet const& indices)
{
    telling.to.Indices(indices.Indices().data(), indices.Indices().size());
}

void Tell(Telling const& telling, EdgeSegmentInfo const& segment)
{
    Tell(telling, segment.VertexIndices());
}

void Tell(Telling const& telling, EditablePolygon::IndexList const& indices)
{
    if (indices.data)
        telling.to.Indices(indices.data, static_cast<std::size_t>(indices.count));
    else
        telling.to.Null();
}

void Tell(Telling const& telling, SubEntityToStylesMap const& styles)
{
    telling.to.BeginMap();
    for (unsigned long long i = 0; i < styles.Size(); ++i)
    {
        telling.to.Key(styles.DataIdAt(i).View());
        Tell(telling, styles.StylesAt(i));
    }
    telling.to.EndMap();
}

void Tell(Telling const& telling, DataIdToPersistentIdMap const& ids)
{
    telling.to.BeginMap();
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        telling.to.Key(ids.DataIdAt(i).View());
        Tell(telling, ids.PersistentIdAt(i));
    }
    telling.to.EndMap();
}

void Tell(Telling const& telling, curve& kernelCurve)
{
    if (kernelCurve.IsDestroyed())
        telling.to.Null();
    else
        TellObject(TableOf<curve>::kTable, &kernelCurve, telling);
}

void Tell(Telling const& telling, ICurveData& data)
{
    DescribedObject const described = DescribedObject::Of(data);
    if (!described.interface || telling.depth > kDeepestNesting)
        return telling.to.Null();
    Telling deeper = telling;
    ++deeper.depth;
    TellObject(*described.interface, described.object, deeper);
}

}  // namespace KVR
