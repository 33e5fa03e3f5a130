#include "framework/xml_util/XMLPlatform.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KVR
{

bool XMLPlatform::Acquire() noexcept
{
    try
    {
        xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale);
        return true;
    }
    catch (...)
    {
        return false;
    }
}

void XMLPlatform::Release() noexcept
{
    xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace KVR
