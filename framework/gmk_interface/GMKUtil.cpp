#include "framework/gmk_interface/GMKUtil.h"

#include "framework/api/IOUtil.h"
#include "framework/kernel/entity.h"

namespace KVR
{

std::FILE* GMKUtil::OpenGmkFile(UTF8String const& path, UTF8String const& mode)
{
    return IOUtil::OpenFile(path, mode);
}

void GMKUtil::CloseGmkFile(std::FILE* file) noexcept
{
    IOUtil::CloseFile(file);
}

UTF8String GMKUtil::EntityDxid(ENTITY* entity)
{
    return entity && !entity->DataIds().empty() ? UTF8String(entity->DataIds().back()) : UTF8String();
}

}  // namespace KVR
