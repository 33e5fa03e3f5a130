#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/PropertyWriter.h"
#include "authoring/SceneWriter.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

class XmlFile;

/// The side files of a scene that is being written, each under the scene's name with an ending of its own. Those that
/// stand already when the scene is not finished go with this object.
class SideFiles
{
public:
    SideFiles(UTF16String const& scenePath, SceneWriterOptions const& options);
    ~SideFiles();
    SideFiles(SideFiles const&) = delete;
    SideFiles& operator=(SideFiles const&) = delete;

    MeshStoreWriter& Meshes();
    SegmentStoreWriter& Segments();
    KernelStoreWriter& Kernel();
    SubObjectPersistentIdWriter& PersistentIds();
    VitreolAssetWriter& Assets();
    PropertyWriter& Properties();
    /// The name by which the scene knows the blob.
    UTF8String Blob(void const* bytes, std::size_t size);

    /// Writes the elements that name the files.
    void WriteSections(XmlFile& document) const;
    /// Gives all files their places, and takes away a property file that is not this scene's.
    void Finish();
    /// The scene stands: what it names stays.
    void Keep() noexcept { m_standing.clear(); }

private:
    UTF16String Beside(std::string_view ending) const;
    std::string NameOf(std::string_view ending) const;
    char const* MeshEnding() const noexcept;
    char const* KernelEnding() const noexcept;
    void WriteSection(XmlFile& document, ElementName name, std::optional<AttributeName> condition,
                      std::string_view ending) const;
    template <class Writer>
    void Finish(std::optional<Writer>& writer, std::string_view ending);

    SceneWriterOptions m_options;
    /// The scene's path without its extension.
    std::string m_stem;
    unsigned long long m_blobCount = 0;
    std::optional<MeshStoreWriter> m_meshes;
    std::optional<SegmentStoreWriter> m_segments;
    std::optional<KernelStoreWriter> m_kernel;
    std::optional<SubObjectPersistentIdWriter> m_persistentIds;
    std::optional<VitreolAssetWriter> m_assets;
    std::optional<PropertyWriter> m_properties;
    std::vector<UTF16String> m_standing;
};

}  // namespace KVR::Authoring
