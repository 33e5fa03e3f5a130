#include "framework/xml_util/FileInputSource.h"

#include <cstdio>
#include <memory>
#include <xercesc/util/BinInputStream.hpp>

#include "framework/api/IOUtil.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/XStr.h"

namespace KVR
{

namespace
{

class FileStream final : public xercesc::BinInputStream
{
public:
    explicit FileStream(UTF8String const& path) : m_file(path, "rb") {}

    bool IsOpen() const { return m_file != nullptr; }
    XMLFilePos curPos() const override { return m_position; }
    XMLSize_t readBytes(XMLByte* const buffer, XMLSize_t const count) override
    {
        XMLSize_t const got = std::fread(buffer, 1, count, m_file);
        m_position += got;
        return got;
    }
    XMLCh const* getContentType() const override { return nullptr; }

private:
    FilePtr m_file;
    XMLFilePos m_position = 0;
};

}  // namespace

FileInputSource::FileInputSource(UTF16String const& path) : m_path(path)
{
    XStr const systemId(UTF8String(AbsolutePath(path)).Value());
    setSystemId(systemId.unicodeForm());
}

FileInputSource::~FileInputSource() = default;

xercesc::BinInputStream* FileInputSource::makeStream() const
{
    auto stream = std::make_unique<FileStream>(UTF8String(m_path));
    return stream->IsOpen() ? stream.release() : nullptr;
}

}  // namespace KVR
