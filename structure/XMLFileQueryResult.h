#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/FileProperties.h"

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace KVR
{

class XMLFileQueryResult : public FileQueryResult
{
public:
    IsValueSpecifiedEnum SupportsFile(bool& supports) const override;
    IsValueSpecifiedEnum HasAssemblyStructure(bool& has) const override;

    /// Takes the answers from a parsed document; null has no effect.
    void Fill(xercesc::XercesDOMParser const* parser);

private:
    bool m_isAssembly = false;
};

}  // namespace KVR
