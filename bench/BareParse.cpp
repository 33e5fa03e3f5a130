#include "bench/BareParse.h"

#include <stdexcept>

namespace KVR::Bench
{

void ParseBare(xercesc::XercesDOMParser& parser, std::filesystem::path const& scene)
{
    parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
    parser.setDoNamespaces(true);
    parser.setDoSchema(true);
    parser.setCreateEntityReferenceNodes(true);
    parser.parse(scene.c_str());
    if (parser.getErrorCount() != 0)
        throw std::runtime_error("The scene did not parse");
}

}  // namespace KVR::Bench
