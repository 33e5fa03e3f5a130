#include "framework/xml_util/VitreolBinaryDataExternalFileReader.h"

#include "framework/api/Exception.h"
#include "framework/api/IOUtil.h"
#include "framework/xml_util/SideFilePath.h"

namespace KVR
{

VitreolBinaryDataExternalFileReader::VitreolBinaryDataExternalFileReader(UTF16String const& sceneFilePath,
                                                                         UTF16String const& path)
    : m_fullPath(PathFromSceneFolder(sceneFilePath, path))
{
}

VitreolBinaryDataExternalFileReader::~VitreolBinaryDataExternalFileReader() = default;

void VitreolBinaryDataExternalFileReader::Fail() const
{
    FileException exception;
    exception.SetFileName(m_fullPath);
    exception.SetErrorCode(FileException::kFileErrorCode_CannotRead);
    throw FileException(exception);
}

void VitreolBinaryDataExternalFileReader::Require(unsigned long long size) const
{
    if (size == 0)
        return;
    FilePtr const file(UTF8String(m_fullPath), "rb");
    if (!file || std::fseek(file, 0, SEEK_END) != 0)
        Fail();
    long const end = std::ftell(file);
    if (end < 0 || static_cast<unsigned long long>(end) < size)
        Fail();
}

void VitreolBinaryDataExternalFileReader::Read(void* buffer, unsigned long long size) const
{
    if (size == 0)
        return;
    FilePtr const file(UTF8String(m_fullPath), "rb");
    if (!file || std::fread(buffer, 1, size, file) != size)
        Fail();
}

}  // namespace KVR
