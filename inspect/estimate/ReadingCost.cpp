#include "inspect/estimate/SceneCensus.h"

#include <algorithm>

namespace KVR
{

namespace
{

// What one of a thing costs. kvr_bench_estimate measures scenes of many kinds; these are the factors that come nearest
// to all of them. Elements and attributes include the runs of white space and the objects that mostly come with them.
struct Factor
{
    double bytes;
    double seconds;
};

constexpr Factor kScene{0.5e6, 0.5e-3};
constexpr Factor kElement{456.0, 0.8e-6};
constexpr Factor kAttribute{329.0, 0.36e-6};
constexpr Factor kTextByte{5.2, 10.5e-9};
// The parser's buffers grow by doubling, and hold the longest text several times.
constexpr Factor kLongestTextByte{11.6, 9.0e-9};
constexpr Factor kListByte{4.6, 1.3e-9};

constexpr Factor kKernel{3.6e6, 0.0};
constexpr Factor kKernelByte{3.9, 3.2e-9};
constexpr Factor kKernelTextByte{3.9, 4.0e-9};
constexpr Factor kKernelEntity{0.0, 1.0e-6};
constexpr Factor kMeshByte{0.53, 0.165e-9};
constexpr Factor kMeshRecord{1071.0, 0.6e-6};
// Of polygons that follow one another nothing is kept, of other indices half the bytes.
constexpr Factor kSegmentByte{0.3, 0.1e-9};
constexpr Factor kAssetByte{1.0, 0.15e-9};
constexpr Factor kPersistentIdByte{2.0, 2.7e-9};
constexpr Factor kPropertyByte{0.0, 1.8e-9};
constexpr Factor kKeptPropertyByte{1.5, 0.66e-9};

// The fewest bytes of a record: heads are claims, and a file holds no more than this allows.
constexpr std::uint64_t kFewestBytes = 16;

void Add(ReadingCost& cost, Factor const& factor, double count)
{
    cost.bytes += factor.bytes * count;
    cost.seconds += factor.seconds * count;
}

double Number(std::uint64_t count)
{
    return static_cast<double>(count);
}

void AddDocument(ReadingCost& cost, DocumentCensus const& document)
{
    Add(cost, kElement, Number(document.elements));
    Add(cost, kAttribute, Number(document.attributes));
    Add(cost, kTextByte, Number(document.attributeBytes - document.longestAttribute + document.textBytes));
    Add(cost, kLongestTextByte, Number(document.longestAttribute));
    Add(cost, kListByte, Number(document.listBytes));
}

void AddSideFile(ReadingCost& cost, SideFileCensus const& side)
{
    double const read = Number(side.read);
    double const records = Number(std::min(side.records.value_or(0), side.read / kFewestBytes));
    switch (side.kind)
    {
        case SideFileCensus::Kind::kKernelStore:
            Add(cost, side.isText ? kKernelTextByte : kKernelByte, read);
            Add(cost, kKernelEntity, records);
            break;
        case SideFileCensus::Kind::kGeometryStore:
        case SideFileCensus::Kind::kMeshStore:
            Add(cost, kMeshRecord, records);
            Add(cost, kMeshByte, read);
            break;
        case SideFileCensus::Kind::kSegmentStore:
            Add(cost, kSegmentByte, read);
            break;
        case SideFileCensus::Kind::kAssets:
        case SideFileCensus::Kind::kBlob:
            Add(cost, kAssetByte, read);
            break;
        case SideFileCensus::Kind::kPersistentIds:
            Add(cost, kPersistentIdByte, read);
            break;
        case SideFileCensus::Kind::kProperties:
            Add(cost, kPropertyByte, read);
            Add(cost, kKeptPropertyByte, read * side.kept);
            break;
    }
}

}  // namespace

ReadingCost CostOf(SideFileCensus::Kind kind, std::uint64_t bytes, std::uint64_t records)
{
    SideFileCensus side;
    side.kind = kind;
    side.records = records;
    side.read = bytes;
    ReadingCost cost;
    AddSideFile(cost, side);
    return cost;
}

ReadingCost SceneCensus::Cost() const
{
    ReadingCost cost;
    Add(cost, kScene, 1.0);
    AddDocument(cost, document);
    bool hasKernel = false;
    for (SideFileCensus const& side : sideFiles)
    {
        AddSideFile(cost, side);
        hasKernel = hasKernel || (side.kind == SideFileCensus::Kind::kKernelStore && side.read > 0);
    }
    if (hasKernel)
        Add(cost, kKernel, 1.0);
    return cost;
}

}  // namespace KVR
