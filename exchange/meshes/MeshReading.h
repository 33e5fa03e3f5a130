#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "exchange/meshes/MeshModel.h"
#include "exchange/model/ModelError.h"
#include "exchange/model/ModelFormat.h"

namespace KVR
{

enum class Axis
{
    kX,
    kY,
    kZ
};

struct MeshReadOptions
{
    /// The unit of a model that states none.
    UnitTypeEnum unit = kUnitType_Millimeter;
    /// Which of the file's axes points up: the model is turned so that it is z. For glTF y, unless given.
    std::optional<Axis> up;
    /// The greatest angle, in degrees, between triangles that share a normal where the file has none.
    double creaseAngle = 30.0;
    /// Whether what is there is taken of a file that is damaged.
    bool isLenient = false;
    /// The folder of the files that the model names; that of the model, if it is a file, when empty.
    std::string folder;
    /// Told how much has been read, from 0 to 1, where there is one.
    std::function<void(double fraction)> progress;
};

/// Reads a file of meshes, whose format is STL, OBJ, PLY or glTF. Throws ModelError with what is wrong and where, also,
/// unless the reading is lenient, for a file that is cut short, holds more or less than it announces, or names what it
/// does not have. Counts of a file are held against its size before anything is made of them.
MeshModel ReadMeshes(std::string const& path, ModelFormat format, MeshReadOptions const& options);

/// The same of the bytes of a file, whose name without extension is `name`.
MeshModel ReadMeshes(std::string_view bytes, std::string const& name, ModelFormat format,
                     MeshReadOptions const& options);

/// What readers of one format share: where the model goes, and what a damage means.
class MeshReading
{
public:
    MeshReading(MeshModel& result, MeshReadOptions const& settings) : model(result), options(settings) {}

    MeshModel& model;
    MeshReadOptions const& options;

    /// Something is wrong: throws ModelError unless the reading is lenient, and notes the first sentence of a file.
    void Damage(std::string const& cause);
    /// So many of what was announced are there: a damage of the whole if there are fewer.
    void Short(unsigned long long taken, unsigned long long announced, char const* kind);
    /// Tells how far it is in the file.
    void Tell(std::size_t place, std::size_t size);

private:
    bool m_isDamaged = false;
    int m_percent = -1;
};

/// "59,162".
std::string WithCommas(unsigned long long number);

/// Text of unknown encoding as UTF-8: what is not UTF-8 is taken for Latin-1.
std::string TextOfBytes(std::string_view bytes);

/// The readers. `bytes` is the whole file.
void ReadStlMeshes(MeshReading& reading, std::string_view bytes);
void ReadPlyMeshes(MeshReading& reading, std::string_view bytes);
void ReadObjMeshes(MeshReading& reading, std::string_view bytes);
void ReadGltfMeshes(MeshReading& reading, std::string_view bytes);

}  // namespace KVR
