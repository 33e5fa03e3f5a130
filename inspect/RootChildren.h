#pragma once

#include <cstdint>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

namespace KVR
{

/// Counts the elements under the root of a side file in XML, apart from the file's own reader.
class RootChildren final : public xercesc::DefaultHandler
{
public:
    void startElement(XMLCh const*, XMLCh const*, XMLCh const*, xercesc::Attributes const&) override
    {
        if (m_depth++ == 1)
            ++count;
    }
    void endElement(XMLCh const*, XMLCh const*, XMLCh const*) override { --m_depth; }

    std::uint64_t count = 0;

private:
    std::uint64_t m_depth = 0;
};

}  // namespace KVR
