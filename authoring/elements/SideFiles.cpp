#include "authoring/elements/SideFiles.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include "authoring/StoreFile.h"
#include "authoring/XmlFile.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

namespace
{

// None ends as a scene does.
constexpr char const* kMeshEndings[] = {".mesh", ".geometry"};
constexpr char const* kKernelEndings[] = {".sab", ".sat"};
constexpr char kSegmentEnding[] = ".seg";
constexpr char kPersistentIdEnding[] = ".ids";
constexpr char kAssetEnding[] = ".assets";

using Path = boost::filesystem::path;

// A reader finds it by this name alone.
std::string PropertyFileOf(std::string const& sceneName)
{
    return Path(sceneName).replace_extension(kPropertyFileExtension.Narrow()).string();
}

}  // namespace

SideFiles::SideFiles(UTF16String const& scenePath, SceneWriterOptions const& options)
    : m_options(options), m_scenePath(scenePath), m_sceneName(Path(m_scenePath.Value()).filename().string())
{
}

SideFiles::~SideFiles()
{
    boost::system::error_code ignored;
    for (std::string const& name : m_standing)
        boost::filesystem::remove(PathOf(name).Value(), ignored);
}

UTF8String SideFiles::PathOf(std::string const& name) const
{
    return UTF8String((Path(m_scenePath.Value()).parent_path() / name).string());
}

char const* SideFiles::MeshEnding() const noexcept
{
    return m_options.meshLayout == MeshStoreLayout::kMeshInfo ? kMeshEndings[0] : kMeshEndings[1];
}

char const* SideFiles::KernelEnding() const noexcept
{
    return m_options.kernelForm == KernelStoreForm::kBinary ? kKernelEndings[0] : kKernelEndings[1];
}

MeshStoreWriter& SideFiles::Meshes()
{
    if (!m_meshes)
        m_meshes.emplace(UTF16String(PathOf(NameOf(MeshEnding()))), m_options.meshLayout);
    return *m_meshes;
}

SegmentStoreWriter& SideFiles::Segments()
{
    if (!m_segments)
        m_segments.emplace(UTF16String(PathOf(NameOf(kSegmentEnding))));
    return *m_segments;
}

KernelStoreWriter& SideFiles::Kernel()
{
    if (!m_kernel)
        m_kernel.emplace(UTF16String(PathOf(NameOf(KernelEnding()))), m_options.kernelForm);
    return *m_kernel;
}

SubObjectPersistentIdWriter& SideFiles::PersistentIds()
{
    if (!m_persistentIds)
        m_persistentIds.emplace(UTF16String(PathOf(NameOf(kPersistentIdEnding))));
    return *m_persistentIds;
}

VitreolAssetWriter& SideFiles::Assets()
{
    if (!m_assets)
        m_assets.emplace(UTF16String(PathOf(NameOf(kAssetEnding))));
    return *m_assets;
}

PropertyWriter& SideFiles::Properties()
{
    if (!m_properties)
        m_properties.emplace(UTF16String(PathOf(PropertyFileOf(m_sceneName))));
    return *m_properties;
}

UTF8String SideFiles::Blob(void const* bytes, std::size_t size)
{
    std::string const name = NameOf(".blob" + std::to_string(++m_blobCount));
    StoreFile file(UTF16String(PathOf(name)));
    file.Bytes(bytes, size);
    file.Commit();
    m_standing.push_back(name);
    return UTF8String(name);
}

std::vector<std::string> SceneWriter::SideFileNames(std::string const& sceneName)
{
    return SideFiles::NamesFor(sceneName);
}

std::vector<std::string> SideFiles::NamesFor(std::string const& sceneName)
{
    std::vector<std::string> names = {PropertyFileOf(sceneName)};
    for (char const* const ending : {kMeshEndings[0], kMeshEndings[1], kKernelEndings[0], kKernelEndings[1],
                                     kSegmentEnding, kPersistentIdEnding, kAssetEnding})
        names.push_back(sceneName + ending);
    return names;
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
void SideFiles::Finish(std::optional<Writer>& writer, std::string const& name)
{
    if (!writer)
        return;
    writer->Finish();
    m_standing.push_back(name);
}

void SideFiles::Finish()
{
    Finish(m_kernel, NameOf(KernelEnding()));
    Finish(m_meshes, NameOf(MeshEnding()));
    Finish(m_segments, NameOf(kSegmentEnding));
    Finish(m_assets, NameOf(kAssetEnding));
    Finish(m_persistentIds, NameOf(kPersistentIdEnding));
    Finish(m_properties, PropertyFileOf(m_sceneName));
    if (m_properties)
        return;
    boost::system::error_code ignored;
    boost::filesystem::remove(PathOf(PropertyFileOf(m_sceneName)).Value(), ignored);
}

std::vector<SideFileNote> SideFiles::Notes() const
{
    std::vector<std::string> names = m_standing;
    for (UTF8String const& name : m_added)
        names.emplace_back(name.View());
    std::vector<SideFileNote> notes;
    for (std::string const& name : names)
    {
        UTF8String const path = PathOf(name);
        std::optional<FileDigest> const digest = FileDigest::Of(path);
        if (!digest)
        {
            FileException exception;
            exception.SetFileName(UTF16String(path));
            throw FileException(exception);
        }
        notes.push_back({name, *digest});
    }
    return notes;
}

}  // namespace KVR::Authoring
