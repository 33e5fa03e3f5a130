#include "tests/exchange/ExportScene.h"

#include <filesystem>

namespace KVR::Test
{

ExportScene::ExportScene()
    : m_store(std::make_unique<Authoring::MeshStoreWriter>(m_folder.PathOf("s.mesh"),
                                                           Authoring::MeshStoreLayout::kMeshInfo))
{
}

ExportScene& ExportScene::Mesh(std::string const& id, std::vector<double> const& vertices,
                               std::vector<std::vector<std::uint64_t>> const& polygons)
{
    Authoring::MeshHead head;
    head.vertexCount = vertices.size() / 3;
    head.polygonCount = polygons.size();
    m_store->BeginMesh(UTF8String(id), head);
    m_store->Vertices(vertices);
    for (std::vector<std::uint64_t> const& corners : polygons)
    {
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners;
        m_store->Polygon(polygon);
    }
    m_store->EndMesh();
    return *this;
}

ExportScene& ExportScene::Triangle(std::string const& id)
{
    return Mesh(id, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {{0, 1, 2}});
}

ToolRun ExportScene::Export(std::string const& text, std::string const& name, std::vector<std::string> const& options)
{
    if (m_store)
        m_store->Finish();
    m_store.reset();
    std::string sections;
    if (std::filesystem::exists(PathOf("s.mesh")))
        sections = R"(<MeshInfo GenerateMesh="True" Path="s.mesh"/>)";
    if (std::filesystem::exists(PathOf("s.seg")))
        sections += R"(<MeshSegmentInfo GenerateMeshSegment="True" Path="s.seg"/>)";
    m_folder.Write("scene.xml", "<Scene>" + sections + text + "</Scene>");
    std::vector<std::string> arguments{"export", PathOf("scene.xml"), PathOf(name)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunTool(arguments);
}

std::string UnderTop(std::string const& instances, std::string const& crossLevel, std::string const& declared)
{
    return R"(<IFile ID="f" Label="file" IsRoot="1"><Unit LengthUnit="kUnitType_Millimeter"/><AttributeSet>)" +
           declared + R"(</AttributeSet><ChildSet><Child ID="top" Type="IAssembly"/></ChildSet></IFile>
<IAssembly ID="top" Label="Top"><Unit LengthUnit="kUnitType_Millimeter"/><CrossLevelAttributes>)" +
           crossLevel + "</CrossLevelAttributes><ChildSet>" + instances + "</ChildSet></IAssembly>";
}

std::string PartOfMesh(std::string const& meshContent, std::string const& partContent)
{
    return R"(<IPart ID="p" Label="Part"><UnitAndTolerance LengthUnit="kUnitType_Millimeter"/>)" + partContent +
           R"(<ChildSet><IPolygonMesh ID="m" Label="Mesh" Visibility="1">)" + meshContent +
           "</IPolygonMesh></ChildSet></IPart>";
}

std::string Instance(std::string const& id, std::string const& target, std::string const& transform,
                     std::string const& more)
{
    return "<IInstance ID=\"" + id + "\" Label=\"" + id + "\" Visibility=\"1\"><Child ID=\"" + target +
           "\" Transformation=\"" + transform + "\"/>" + more + "</IInstance>";
}

}  // namespace KVR::Test
