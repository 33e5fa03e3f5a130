#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/PropertyWriter.h"
#include "authoring/SceneWriter.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFileNotes.h"

namespace KVR::Authoring
{

class XmlFile;

/// The side files of a scene that is being written, each under the scene's whole name with an ending of its own, so
/// that two scenes of a folder do not meet. Those that stand already when the scene is not finished go with this
/// object.
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
    /// Has a file noted that somebody else writes.
    void Add(UTF8String const& name) { m_added.push_back(name); }

    /// The names of all of them but blobs, in both forms of the stores.
    static std::vector<std::string> NamesFor(std::string const& sceneName);

    /// Writes the elements that name the files.
    void WriteSections(XmlFile& document) const;
    /// Gives all files their places, and takes away a property file that is not this scene's.
    void Finish();
    /// What the scene is to note of all files, which are finished by then.
    std::vector<SideFileNote> Notes() const;
    /// The scene stands: what it names stays.
    void Keep() noexcept { m_standing.clear(); }

private:
    std::string NameOf(std::string_view ending) const { return m_sceneName + std::string(ending); }
    UTF8String PathOf(std::string const& name) const;
    char const* MeshEnding() const noexcept;
    char const* KernelEnding() const noexcept;
    void WriteSection(XmlFile& document, ElementName name, std::optional<AttributeName> condition,
                      std::string_view ending) const;
    template <class Writer>
    void Finish(std::optional<Writer>& writer, std::string const& name);

    SceneWriterOptions m_options;
    UTF8String m_scenePath;
    std::string m_sceneName;
    unsigned long long m_blobCount = 0;
    std::optional<MeshStoreWriter> m_meshes;
    std::optional<SegmentStoreWriter> m_segments;
    std::optional<KernelStoreWriter> m_kernel;
    std::optional<SubObjectPersistentIdWriter> m_persistentIds;
    std::optional<VitreolAssetWriter> m_assets;
    std::optional<PropertyWriter> m_properties;
    /// The names of those that stand and go again.
    std::vector<std::string> m_standing;
    std::vector<UTF8String> m_added;
};

}  // namespace KVR::Authoring
