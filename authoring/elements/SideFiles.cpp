#include "authoring/elements/SideFiles.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include "authoring/StoreFile.h"
#include "authoring/XmlFile.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

namespace
{

constexpr char kSegmentEnding[] = ".seg";
constexpr char kPersistentIdEnding[] = ".ids.xml";
constexpr char kAssetEnding[] = ".assets";

}  // namespace

SideFiles::SideFiles(UTF16String const& scenePath, SceneWriterOptions const& options)
    : m_options(options), m_stem(UTF8String(scenePath).View())
{
    m_stem.resize(m_stem.size() - boost::filesystem::path(m_stem).extension().string().size());
}

SideFiles::~SideFiles()
{
    boost::system::error_code ignored;
    for (UTF16String const& path : m_standing)
        boost::filesystem::remove(UTF8String(path).Value(), ignored);
}

UTF16String SideFiles::Beside(std::string_view ending) const
{
    return UTF16String(UTF8String(m_stem + std::string(ending)));
}

// As the scene names a file beside it.
std::string SideFiles::NameOf(std::string_view ending) const
{
    return boost::filesystem::path(m_stem).filename().string() + std::string(ending);
}

char const* SideFiles::MeshEnding() const noexcept
{
    return m_options.meshLayout == MeshStoreLayout::kMeshInfo ? ".mesh" : ".geometry";
}

char const* SideFiles::KernelEnding() const noexcept
{
    return m_options.kernelForm == KernelStoreForm::kBinary ? ".sab" : ".sat";
}

MeshStoreWriter& SideFiles::Meshes()
{
    if (!m_meshes)
        m_meshes.emplace(Beside(MeshEnding()), m_options.meshLayout);
    return *m_meshes;
}

SegmentStoreWriter& SideFiles::Segments()
{
    if (!m_segments)
        m_segments.emplace(Beside(kSegmentEnding));
    return *m_segments;
}

KernelStoreWriter& SideFiles::Kernel()
{
    if (!m_kernel)
        m_kernel.emplace(Beside(KernelEnding()), m_options.kernelForm);
    return *m_kernel;
}

SubObjectPersistentIdWriter& SideFiles::PersistentIds()
{
    if (!m_persistentIds)
        m_persistentIds.emplace(Beside(kPersistentIdEnding));
    return *m_persistentIds;
}

VitreolAssetWriter& SideFiles::Assets()
{
    if (!m_assets)
        m_assets.emplace(Beside(kAssetEnding));
    return *m_assets;
}

PropertyWriter& SideFiles::Properties()
{
    if (!m_properties)
        m_properties.emplace(Beside(kPropertyFileExtension));
    return *m_properties;
}

UTF8String SideFiles::Blob(void const* bytes, std::size_t size)
{
    std::string const ending = ".blob" + std::to_string(++m_blobCount);
    StoreFile file(Beside(ending));
    file.Bytes(bytes, size);
    file.Commit();
    m_standing.push_back(Beside(ending));
    return UTF8String(NameOf(ending));
}

void SideFiles::WriteSection(XmlFile& document, ElementName name, std::optional<AttributeName> condition,
                             std::string_view ending) const
{
    document.Begin(name);
    if (condition)
        document.Attribute(*condition, "True");
    document.Attribute(Names::Path, std::string_view(NameOf(ending)));
    document.End();
}

void SideFiles::WriteSections(XmlFile& document) const
{
    if (m_kernel)
        WriteSection(document, Names::SatInfo, std::nullopt, KernelEnding());
    if (m_meshes && m_options.meshLayout == MeshStoreLayout::kMeshInfo)
        WriteSection(document, Names::MeshInfo, Names::GenerateMesh, MeshEnding());
    else if (m_meshes)
        WriteSection(document, Names::GeometryInfo, Names::GenerateGeometry, MeshEnding());
    // Behind the meshes: a reader takes segments only for meshes that it knows.
    if (m_segments)
        WriteSection(document, Names::MeshSegmentInfo, Names::GenerateMeshSegment, kSegmentEnding);
    if (m_assets)
        WriteSection(document, Names::VitreolMaterialInfo, Names::GenerateSerializedVitreol, kAssetEnding);
    if (m_persistentIds)
        WriteSection(document, Names::SubObjectPersistentIdInfo, Names::GenerateSubObjectPersistentId,
                     kPersistentIdEnding);
}

template <class Writer>
void SideFiles::Finish(std::optional<Writer>& writer, std::string_view ending)
{
    if (!writer)
        return;
    writer->Finish();
    m_standing.push_back(Beside(ending));
}

void SideFiles::Finish()
{
    Finish(m_kernel, KernelEnding());
    Finish(m_meshes, MeshEnding());
    Finish(m_segments, kSegmentEnding);
    Finish(m_assets, kAssetEnding);
    Finish(m_persistentIds, kPersistentIdEnding);
    Finish(m_properties, kPropertyFileExtension);
    if (m_properties)
        return;
    boost::system::error_code ignored;
    boost::filesystem::remove(UTF8String(Beside(kPropertyFileExtension)).Value(), ignored);
}

}  // namespace KVR::Authoring
