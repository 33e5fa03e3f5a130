#pragma once

#include <map>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

class VitreolSerializedAsset;

/// Reads a file of material assets, by the style ids they belong to.
class KVR_XML_UTIL_API VitreolBlobExternalFileReader
{
public:
    /// The file's full path; nothing is opened yet.
    explicit VitreolBlobExternalFileReader(UTF16String const& path);
    ~VitreolBlobExternalFileReader();

    /// Adds the file's assets, which the caller owns. Of two assets with one id, and before one that is there already,
    /// the first stays. False for a file that cannot be opened, has a wrong head or ends early; whole assets in front
    /// of the damage are added all the same.
    bool LoadVitreolFromExternalFile(std::map<UTF8String, VitreolSerializedAsset*>& assets);

private:
    UTF16String m_path;
};

}  // namespace KVR
