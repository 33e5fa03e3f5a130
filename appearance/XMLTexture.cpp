#include "appearance/XMLTexture.h"

#include <cstddef>
#include <cstdio>

#include "framework/api/IOUtil.h"

namespace KVR
{

XMLTexture::XMLTexture(UTF8String const& id, UTF16String const& label) : ObjectState(id, label) {}
XMLTexture::~XMLTexture() = default;

IsValueSpecifiedEnum XMLTexture::EmbeddedTextureImage(int size, void* buffer) const
{
    UTF8String const* const path = m_imageFilePath.Find();
    if (!path)
        return kIsValueSpecified_No;
    FilePtr const file(*path, "rb");
    // Kept: a file that cannot be opened counts as an image, although nothing is read.
    if (!file)
        return kIsValueSpecified_Yes;
    if (size == 0)
        return kIsValueSpecified_Yes;
    if (size < 0 || !buffer)
        return kIsValueSpecified_No;
    std::size_t const wanted = static_cast<std::size_t>(size);
    return std::fread(buffer, 1, wanted, file) == wanted ? kIsValueSpecified_Yes : kIsValueSpecified_No;
}

}  // namespace KVR
