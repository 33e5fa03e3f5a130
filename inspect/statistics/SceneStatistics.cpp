#include "inspect/statistics/SceneStatistics.h"

#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <unordered_map>

#include "framework/api/IBrep.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/kernel/entity.h"
#include "inspect/estimate/SceneCensus.h"
#include "inspect/statistics/ReadingMeter.h"
#include "scene/Scene.h"
#include "scene/SceneMesh.h"
#include "scene/SceneTotals.h"

namespace KVR
{

namespace
{

using Amount = SceneStatistics::Amount;

double Number(unsigned long long count)
{
    return static_cast<double>(count);
}

unsigned long long CountOf(TopoDS_Shape const& shape, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(shape, kind, parts);
    return static_cast<unsigned long long>(parts.Extent());
}

// Counts pieces of geometry, and shares stores of bodies out over them.
class Counter
{
public:
    Counter(Scene const& scene, ReadingMeter const& meter) : m_meter(meter)
    {
        for (std::size_t i = 0; i < scene.Components().size(); ++i)
        {
            auto const& pieces = scene.Components()[i].geometry;
            bool const hasBodies = std::any_of(pieces.begin(), pieces.end(),
                                               [](SceneGeometry const& piece) { return piece.body != nullptr; });
            for (SceneGeometry const& piece : pieces)
                if (auto const [place, isNew] = m_pieces.try_emplace(piece.object); isNew)
                    Count(place->second, piece, i, hasBodies);
        }
        for (auto& [object, piece] : m_pieces)
            TakeShare(piece);
    }

    struct Piece
    {
        std::size_t component = 0;
        Amount amount = {};
        /// Of a body, where it stands and how much of its store it is.
        std::size_t store = ReadingMeter::kNoStore;
        double weight = 0.0;
    };

    std::unordered_map<IObject const*, Piece> const& Pieces() const noexcept { return m_pieces; }

private:
    void Count(Piece& piece, SceneGeometry const& geometry, std::size_t component, bool hasBodies)
    {
        piece.component = component;
        Amount& amount = piece.amount;
        if (geometry.mesh)
        {
            amount.meshes = 1;
            amount.triangles = SceneMesh::Of(*geometry.mesh).TriangleCount();
            amount.vertices = geometry.mesh->VertexCount();
            amount.faces = hasBodies ? 0 : geometry.mesh->FaceSegmentCount();
        }
        else if (BODY const* const body = geometry.body ? geometry.body->Body() : nullptr)
        {
            amount.bodies = 1;
            amount.faces = CountOf(body->Shape(), TopAbs_FACE);
            piece.weight = Number(amount.faces + CountOf(body->Shape(), TopAbs_EDGE));
        }
        ReadingMeter::Record const* const record = m_meter.RecordOf(geometry.id);
        if (!record)
            return;
        amount.bytes = Number(record->bytes);
        amount.seconds = record->seconds;
        if (record->bytes > 0)
            amount.memory = CostOf(SideFileCensus::Kind::kMeshStore, record->bytes, 1).bytes;
        piece.store = record->store;
        if (piece.store != ReadingMeter::kNoStore)
            m_weights[piece.store] += piece.weight;
    }

    void TakeShare(Piece& piece) const
    {
        if (piece.store == ReadingMeter::kNoStore || m_weights.at(piece.store) <= 0.0)
            return;
        ReadingMeter::Store const& store = m_meter.StoreAt(piece.store);
        double const share = piece.weight / m_weights.at(piece.store);
        piece.amount.bytes += share * Number(store.bytes);
        piece.amount.seconds += share * store.seconds;
        piece.amount.memory += share * CostOf(SideFileCensus::Kind::kKernelStore, store.bytes, 0).bytes;
    }

    ReadingMeter const& m_meter;
    std::unordered_map<IObject const*, Piece> m_pieces;
    std::unordered_map<std::size_t, double> m_weights;
};

void ListComponents(SceneStatistics& statistics, Counter const& counter, SceneTotals const& totals)
{
    std::unordered_map<std::size_t, Amount> amounts;
    for (auto const& [object, piece] : counter.Pieces())
        amounts[piece.component].Add(piece.amount);
    for (auto const& [index, amount] : amounts)
    {
        if (amount.bodies == 0 && amount.meshes == 0 && amount.bytes <= 0.0)
            continue;
        statistics.components.push_back({index, totals.occurrencesOf[index], amount});
        statistics.all.Add(amount);
        statistics.occurring.Add(amount, Number(totals.occurrencesOf[index]));
    }
    std::sort(statistics.components.begin(), statistics.components.end(),
              [](auto const& a, auto const& b)
              { return a.own.bytes != b.own.bytes ? a.own.bytes > b.own.bytes : a.index < b.index; });
}

}  // namespace

void Amount::Add(Amount const& other, double times)
{
    auto const add = [&](unsigned long long& sum, unsigned long long count)
    { sum = static_cast<unsigned long long>(std::min(1.8e19, Number(sum) + times * Number(count))); };
    add(bodies, other.bodies);
    add(meshes, other.meshes);
    add(faces, other.faces);
    add(triangles, other.triangles);
    add(vertices, other.vertices);
    bytes += times * other.bytes;
    seconds += times * other.seconds;
    memory += times * other.memory;
}

SceneStatistics SceneStatistics::Of(Scene const& scene, ReadingMeter const& meter)
{
    SceneStatistics statistics;
    SceneTotals const totals = SceneTotals::Of(scene);
    statistics.occurrences = totals.assemblyOccurrences + totals.partOccurrences;
    statistics.seconds = meter.Seconds();
    Counter const counter(scene, meter);
    ListComponents(statistics, counter, totals);
    for (GeometryTwins& twins : GeometryTwins::Of(scene))
    {
        Duplicates entry{std::move(twins), {}};
        for (std::size_t i = 1; i < entry.twins.members.size(); ++i)
            entry.saved.Add(counter.Pieces().at(entry.twins.members[i].object).amount);
        statistics.saved.Add(entry.saved);
        statistics.duplicates.push_back(std::move(entry));
    }
    return statistics;
}

}  // namespace KVR
