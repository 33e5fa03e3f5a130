#include "exchange/meshes/MeshReading.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "exchange/meshes/CreaseNormals.h"
#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/MeshParts.h"

namespace KVR
{

namespace
{

// Of the transform that turns an axis up, by the place that a coordinate goes to, and its sign.
struct Turn
{
    std::array<std::size_t, 3> from;
    std::array<double, 3> sign;
};
constexpr Turn kTurns[] = {{{2, 1, 0}, {-1.0, 1.0, 1.0}}, {{0, 2, 1}, {1.0, -1.0, 1.0}}, {{0, 1, 2}, {1.0, 1.0, 1.0}}};

Turn const& TurnOf(Axis up)
{
    return kTurns[static_cast<std::size_t>(up)];
}

template <class Triples>
void TurnAll(Triples& list, Turn const& turn)
{
    for (std::size_t i = 0; i + 2 < list.size(); i += 3)
    {
        std::array<double, 3> const was{list[i], list[i + 1], list[i + 2]};
        for (std::size_t axis = 0; axis < 3; ++axis)
            // Adding 0 turns -0 into 0.
            list[i + axis] = turn.sign[axis] * was[turn.from[axis]] + 0.0;
    }
}

// An assembly is turned by what it places, so that what its parts say of themselves stays; a lone part by its points.
void TurnUp(MeshModel& model, Axis up)
{
    Turn const& turn = TurnOf(up);
    if (up == Axis::kZ || model.components.empty())
        return;
    for (MeshModel::Camera& camera : model.cameras)
        for (auto* const triple : {&camera.position, &camera.direction, &camera.up})
            TurnAll(*triple, turn);
    MeshModel::Component& root = model.components.front();
    for (MeshModel::Placement& placement : root.placements)
    {
        Matrix3d turned;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 4; ++column)
                turned.SetElement(row, column,
                                  turn.sign[static_cast<std::size_t>(row)] *
                                          placement.transform.Element(
                                              static_cast<int>(turn.from[static_cast<std::size_t>(row)]), column) +
                                      0.0);
        placement.transform = turned;
    }
    for (std::size_t const mesh : root.meshes)
    {
        TurnAll(model.meshes[mesh].points, turn);
        TurnAll(model.meshes[mesh].normals, turn);
    }
}

// A root that places a single assembly where it is says nothing.
void DropIdleRoot(MeshModel& model)
{
    if (model.components.empty())
        return;
    MeshModel::Component const& root = model.components.front();
    if (root.placements.size() != 1 || !root.placements.front().transform.IsIdentity() ||
        !root.placements.front().isVisible || !root.placements.front().properties.empty())
        return;
    std::size_t const only = root.placements.front().component;
    if (only != 1 || !model.components[only].isAssembly)
        return;
    if (model.components[only].name.empty())
        model.components[only].name = root.placements.front().name;
    model.components.erase(model.components.begin());
    for (MeshModel::Component& component : model.components)
        for (MeshModel::Placement& placement : component.placements)
            --placement.component;
}

}  // namespace

std::string WithCommas(unsigned long long number)
{
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3;)
        text.insert(place -= 3, ",");
    return text;
}

std::string TextOfBytes(std::string_view bytes)
{
    if (IsUtf8(bytes))
        return std::string(bytes);
    std::string text;
    for (char const c : bytes)
    {
        auto const code = static_cast<unsigned char>(c);
        if (code < 0x80)
            text += c;
        else
            text += {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))};
    }
    return text;
}

void MeshReading::Damage(std::string const& cause)
{
    if (!options.isLenient)
        throw ModelError(cause);
    if (!m_isDamaged)
        model.remarks.push_back("it is damaged, and taken as far as it goes: " + cause);
    m_isDamaged = true;
}

void MeshReading::Short(unsigned long long taken, unsigned long long announced, char const* kind)
{
    if (taken >= announced)
        return;
    std::string const counts = WithCommas(taken) + " of " + WithCommas(announced) + ' ' + kind;
    if (!options.isLenient)
        throw ModelError("it holds " + counts);
    model.remarks.push_back("taken: " + counts);
    model.losses.AddOf(std::string(kind) + " that the file announces and does not hold",
                       "the file's " + WithCommas(announced), announced - taken);
}

void MeshReading::Tell(std::size_t place, std::size_t size)
{
    int const percent = static_cast<int>(100.0 * static_cast<double>(place) / static_cast<double>(size + 1));
    if (!options.progress || percent == m_percent)
        return;
    m_percent = percent;
    options.progress(percent / 100.0);
}

MeshModel ReadMeshes(std::string const& path, ModelFormat format, MeshReadOptions const& options)
{
    std::filesystem::path const file = std::filesystem::absolute(path);
    MeshReadOptions complete = options;
    if (complete.folder.empty())
        complete.folder = file.parent_path().string();
    return ReadMeshes(BytesOfFile(file.string()), file.stem().string(), format, complete);
}

MeshModel ReadMeshes(std::string_view bytes, std::string const& name, ModelFormat format,
                     MeshReadOptions const& options)
{
    MeshModel model;
    model.unit = options.unit;
    MeshReading reading(model, options);
    switch (format)
    {
        case ModelFormat::kStl:
            ReadStlMeshes(reading, bytes);
            break;
        case ModelFormat::kPly:
            ReadPlyMeshes(reading, bytes);
            break;
        case ModelFormat::kObj:
            ReadObjMeshes(reading, bytes);
            break;
        case ModelFormat::kGltf:
            ReadGltfMeshes(reading, bytes);
            break;
        default:
            throw ModelError("its format has no meshes alone");
    }
    if (model.components.empty())
        MakePartsOfMeshes(model, name);
    bool const isEmpty = std::all_of(model.meshes.begin(), model.meshes.end(),
                                     [](MeshModel::Mesh const& mesh) { return mesh.IsEmpty(); });
    if (isEmpty && model.cameras.empty())
        throw ModelError("it holds no triangles");
    if (model.components.front().name.empty())
        model.components.front().name = TextOfBytes(name);
    for (MeshModel::Mesh& mesh : model.meshes)
        AddCreaseNormals(mesh, options.creaseAngle);
    FoldColors(model);
    TurnUp(model, options.up.value_or(format == ModelFormat::kGltf ? Axis::kY : Axis::kZ));
    DropIdleRoot(model);
    return model;
}

}  // namespace KVR
