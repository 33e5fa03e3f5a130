#include "structure/XMLFileQueryResult.h"

#include "producer/ElementReaders.h"

namespace KVR
{

IsValueSpecifiedEnum XMLFileQueryResult::SupportsFile(bool& supports) const
{
    supports = true;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFileQueryResult::HasAssemblyStructure(bool& has) const
{
    has = m_isAssembly;
    return kIsValueSpecified_Yes;
}

void XMLFileQueryResult::Fill(xercesc::XercesDOMParser const* parser)
{
    if (parser)
        m_isAssembly = ClassifyStructure(parser);
}

}  // namespace KVR
