#include "tests/inspect/rules/LoneMesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "tests/inspect/rules/SeededScene.h"

namespace KVR::Test
{

namespace
{

constexpr char kStore[] = "lone.mesh";
constexpr char kSegments[] = "lone.seg";
constexpr char kElement[] = "<IPolygonMesh ID=\"";

std::string Words(std::vector<std::uint64_t> const& words)
{
    std::string bytes(words.size() * sizeof(std::uint64_t), '\0');
    std::memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

std::string DocumentOf(std::string const& mesh)
{
    return "<Scene>\n<MeshInfo GenerateMesh=\"True\" Path=\"lone.mesh\"/>\n"
           "<MeshSegmentInfo GenerateMeshSegment=\"True\" Path=\"lone.seg\"/>\n"
           "<IFile ID=\"the file\" IsRoot=\"1\"><ChildSet><Child ID=\"the part\"/></ChildSet></IFile>\n"
           "<IPart ID=\"the part\" Label=\"\"><Unit LengthUnit=\"kUnitType_Millimeter\"/><ChildSet>\n" +
           (kElement + mesh) + "\" Label=\"\" Type=\"kPolygonMeshType_Triangular\" Visibility=\"1\"/>\n" +
           "</ChildSet></IPart>\n</Scene>\n";
}

bool IsInPlace(MeshMistake const& mistake)
{
    return std::all_of(mistake.changes.begin(), mistake.changes.end(),
                       [](MeshMistake::Change const& change)
                       { return change.bytes.size() == change.end - change.begin; });
}

}  // namespace

MeshMistake::Change WordChange(std::size_t place, std::uint64_t word)
{
    return {place, place + sizeof word, Words({word})};
}

MeshMistake::Change NumberChange(std::size_t place, double number)
{
    std::uint64_t word = 0;
    std::memcpy(&word, &number, sizeof word);
    return WordChange(place, word);
}

LoneMesh::LoneMesh(std::string const& store, MeshPlaces const& mesh, std::string const& segments,
                   SegmentPlaces const* places)
    : m_store(Words({0, 1, 0}) + store.substr(mesh.begin, mesh.end - mesh.begin)),
      m_segments(places ? Words({1}) + segments.substr(places->begin, places->end - places->begin) : Words({0})),
      m_mesh(MeshPlaces::Of(m_store).at(0)),
      m_path(m_folder.NarrowPathOf("lone.xml"))
{
    if (places)
        m_places = SegmentPlaces::Of(m_segments).at(0);
    std::string const document = DocumentOf(m_mesh.id);
    m_line = LineOf(document, document.find(kElement));
    m_folder.Write("lone.xml", document);
    m_folder.Write(kStore, m_store);
    m_folder.Write(kSegments, m_segments);
    EXPECT_TRUE(CheckScene(m_path).findings.empty()) << m_mesh.id;
}

std::string LoneMesh::FaultWith(MeshMistake const& mistake) const
{
    Put(mistake);
    std::string const fault = FaultIn(CheckScene(m_path).findings, mistake);
    TakeBack(mistake);
    return fault;
}

std::string LoneMesh::FaultIn(std::vector<Finding> const& findings, MeshMistake const& mistake) const
{
    std::string fault;
    if (findings.empty())
        fault = " nothing";
    for (Finding const& finding : findings)
    {
        bool const isIt = finding.rule->id == mistake.rule && finding.found == mistake.found &&
                          finding.file == m_path && finding.line == m_line && finding.objectId == m_mesh.id;
        if (findings.size() > 1 || !isIt)
            fault += " " + std::string(finding.rule->id) + " at " + std::to_string(finding.line) + ": " +
                     finding.found + ", " + finding.readAs;
    }
    return fault;
}

void LoneMesh::Put(MeshMistake const& mistake) const
{
    char const* const name = mistake.isInSegments ? kSegments : kStore;
    if (!IsInPlace(mistake))
    {
        std::string bytes = mistake.isInSegments ? m_segments : m_store;
        for (auto change = mistake.changes.rbegin(); change != mistake.changes.rend(); ++change)
            bytes.replace(change->begin, change->end - change->begin, change->bytes);
        m_folder.Write(name, bytes);
        return;
    }
    std::fstream file(m_folder.NarrowPathOf(name), std::ios::in | std::ios::out | std::ios::binary);
    for (MeshMistake::Change const& change : mistake.changes)
        file.seekp(static_cast<std::streamoff>(change.begin)).write(change.bytes.data(), change.bytes.size());
    ASSERT_TRUE(file.flush()) << name;
}

void LoneMesh::TakeBack(MeshMistake const& mistake) const
{
    std::string const& bytes = mistake.isInSegments ? m_segments : m_store;
    if (!IsInPlace(mistake))
    {
        m_folder.Write(mistake.isInSegments ? kSegments : kStore, bytes);
        return;
    }
    MeshMistake former = mistake;
    for (MeshMistake::Change& change : former.changes)
        change.bytes = bytes.substr(change.begin, change.end - change.begin);
    Put(former);
}

}  // namespace KVR::Test
