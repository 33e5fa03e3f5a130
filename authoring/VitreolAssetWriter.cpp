#include "authoring/VitreolAssetWriter.h"

#include <string_view>

#include "framework/api/Exception.h"

namespace KVR::Authoring
{

namespace
{

constexpr std::string_view kMagic = "KVRASSET";
constexpr std::uint64_t kVersion = 1;
constexpr std::uint64_t kCountPosition = kMagic.size() + sizeof kVersion;

}  // namespace

VitreolAssetWriter::VitreolAssetWriter(UTF16String const& path) : m_file(path)
{
    m_file.Bytes(kMagic.data(), kMagic.size());
    m_file.U64(kVersion);
    // The count is known at the end.
    m_file.U64(0);
}

VitreolAssetWriter::~VitreolAssetWriter() = default;

void VitreolAssetWriter::Asset(UTF8String const& styleId, UTF8String const& type,
                               std::span<unsigned char const> content)
{
    if (!m_styleIds.insert(styleId).second)
        throw GeneralException("a style has one asset");
    m_file.Text(styleId);
    m_file.Text(type);
    m_file.U64(content.size());
    m_file.Bytes(content.data(), content.size());
}

void VitreolAssetWriter::Finish()
{
    m_file.PatchU64(kCountPosition, m_styleIds.size());
    m_file.Commit();
}

}  // namespace KVR::Authoring
