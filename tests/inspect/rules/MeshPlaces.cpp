#include "tests/inspect/rules/MeshPlaces.h"

#include <cstdint>
#include <cstring>

namespace KVR::Test
{

namespace
{

constexpr std::size_t kWord = sizeof(std::uint64_t);

class Walk
{
public:
    explicit Walk(std::string const& store) : m_store(store) {}

    std::vector<MeshPlaces> Meshes()
    {
        m_at = kWord;
        std::size_t const count = Next();
        m_at += kWord;
        std::vector<MeshPlaces> meshes;
        for (std::size_t i = 0; i < count; ++i)
        {
            MeshPlaces mesh;
            mesh.begin = m_at;
            m_at += kWord;
            bool const isMesh = Next() == 0;
            std::size_t const length = Next();
            mesh.id = m_store.substr(m_at, length);
            m_at += length;
            if (!isMesh || !Read(mesh))
                break;
            mesh.end = m_at;
            meshes.push_back(std::move(mesh));
        }
        return meshes;
    }

    std::vector<SegmentPlaces> Segments()
    {
        std::vector<SegmentPlaces> all(Next());
        for (SegmentPlaces& mesh : all)
        {
            mesh.begin = m_at;
            std::size_t const length = Next();
            mesh.id = m_store.substr(m_at, length);
            m_at += length;
            mesh.faces.resize(Next());
            mesh.edges.resize(Next());
            std::size_t const flags = Next();
            m_at += flags;
            for (auto* const lists : {&mesh.faces, &mesh.edges})
                for (std::vector<std::size_t>& list : *lists)
                    list = List(Next());
            mesh.end = m_at;
        }
        return all;
    }

private:
    std::size_t Next()
    {
        m_at += kWord;
        return WordAt(m_store, m_at - kWord);
    }

    bool Read(MeshPlaces& mesh)
    {
        mesh.vertexCount = Next();
        mesh.normalCount = Next();
        mesh.polygons.resize(Next());
        m_at += kWord;
        if (Next() != 0)
            return false;
        mesh.vertices = m_at;
        mesh.normals = mesh.vertices + 3 * kWord * mesh.vertexCount;
        m_at = mesh.normals + 3 * kWord * mesh.normalCount;
        for (PolygonPlaces& polygon : mesh.polygons)
        {
            std::size_t const corners = Next();
            polygon.vertices = List(corners);
            if (m_store[m_at++] != 0)
                m_at += kWord;
            if (mesh.normalCount > 0 && m_store[m_at++] != 0)
                polygon.normals = List(corners);
        }
        return true;
    }

    std::vector<std::size_t> List(std::size_t count)
    {
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < count; ++i, m_at += kWord)
            places.push_back(m_at);
        return places;
    }

    std::string const& m_store;
    std::size_t m_at = 0;
};

}  // namespace

std::vector<MeshPlaces> MeshPlaces::Of(std::string const& store)
{
    return Walk(store).Meshes();
}

std::vector<SegmentPlaces> SegmentPlaces::Of(std::string const& store)
{
    return Walk(store).Segments();
}

double NumberAt(std::string const& store, std::size_t place)
{
    double number = 0.0;
    std::memcpy(&number, store.data() + place, sizeof number);
    return number;
}

std::size_t WordAt(std::string const& store, std::size_t place)
{
    std::uint64_t word = 0;
    std::memcpy(&word, store.data() + place, sizeof word);
    return word;
}

void PutNumber(std::string& store, std::size_t place, double number)
{
    std::memcpy(store.data() + place, &number, sizeof number);
}

void PutWord(std::string& store, std::size_t place, std::size_t word)
{
    std::uint64_t const number = word;
    std::memcpy(store.data() + place, &number, sizeof number);
}

}  // namespace KVR::Test
