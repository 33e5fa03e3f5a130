#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inspect/estimate/DocumentCensus.h"

namespace KVR
{

/// A file beside a scene that its reading would open.
struct SideFileCensus
{
    enum class Kind
    {
        kKernelStore,
        kGeometryStore,
        kSegmentStore,
        kMeshStore,
        kAssets,
        kPersistentIds,
        kBlob,
        kProperties
    };

    Kind kind = Kind::kBlob;
    /// As the document has it; of properties the name of the file.
    std::string name;
    /// In bytes; absent for a file that cannot be opened.
    std::optional<std::uint64_t> size;
    /// What the head of a store claims to hold: meshes and curves, segments of so many meshes, bodies and edges; of
    /// properties an estimate from the first of them. Absent for the others, and for a damaged head.
    std::optional<std::uint64_t> records;
    /// The bytes that a reader reads, of a blob fewer than there are.
    std::uint64_t read = 0;
    /// Of properties the share that belongs to objects of the document, estimated from the first of them.
    double kept = 0.0;
    /// Of a kernel store, whether it is in text form.
    bool isText = false;
};

/// The kind as it is shown: "mesh store".
char const* NameOf(SideFileCensus::Kind kind) noexcept;

/// What reading a scene takes, estimated from what it consists of with factors that were measured on scenes of many
/// kinds. Models that hosts build of what they read come on top.
struct ReadingCost
{
    /// What the peak of resident memory grows by, in bytes.
    double bytes = 0.0;
    /// Processor time, on the machine that the documents name.
    double seconds = 0.0;
};

/// What reading so many bytes of a side file of a kind, with so many records, takes.
ReadingCost CostOf(SideFileCensus::Kind kind, std::uint64_t bytes, std::uint64_t records);

/// What a scene consists of, without reading it: one pass over the document, the heads of the stores, the beginning of
/// the property file.
struct SceneCensus
{
    std::uint64_t documentBytes = 0;
    DocumentCensus::Problem problem = DocumentCensus::Problem::kNone;
    /// The system's error number when the document cannot be opened or read.
    int systemError = 0;
    DocumentCensus document;
    /// In the document's order, each path once; the property file last.
    std::vector<SideFileCensus> sideFiles;

    /// Never fails: what could not be counted is left out, and `problem` says why.
    static SceneCensus Of(std::string const& scenePath);

    ReadingCost Cost() const;
};

}  // namespace KVR
