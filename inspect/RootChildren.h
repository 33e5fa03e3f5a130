#pragma once

#include <cstdint>

#include "framework/xml_util/SideFileParser.h"

namespace KVR
{

/// Counts the elements under the root of a side file in XML, apart from the file's own reader.
class RootChildren final : public SideFileReceiver
{
public:
    void Begin(SideFileElement const&) override
    {
        if (m_depth++ == 1)
            ++count;
    }
    void End() override { --m_depth; }

    std::uint64_t count = 0;

private:
    std::uint64_t m_depth = 0;
};

}  // namespace KVR
