#pragma once

#include <cstdint>
#include <span>
#include <unordered_set>

#include "authoring/Export.h"
#include "authoring/StoreFile.h"

namespace KVR::Authoring
{

/// Writes a file of material assets, streaming. In the file: the letters "KVRASSET", version 1 (u64), the count (u64),
/// and for each asset the id of its style (string), its type (string), its size (u64) and so many bytes.
///
/// Operations throw FileException when the file system refuses, and GeneralException for a second asset of one style.
class KVR_AUTHORING_API VitreolAssetWriter
{
public:
    explicit VitreolAssetWriter(UTF16String const& path);
    /// Without a Finish nothing stays behind.
    ~VitreolAssetWriter();

    /// An asset with the id of its style, its type and its bytes, which are copied into the file at once.
    void Asset(UTF8String const& styleId, UTF8String const& type, std::span<unsigned char const> content);

    /// Writes the count; the file appears. Nothing can be written afterwards.
    void Finish();

private:
    StoreFile m_file;
    std::unordered_set<UTF8String> m_styleIds;
};

}  // namespace KVR::Authoring
