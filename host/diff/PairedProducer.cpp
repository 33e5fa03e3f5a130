#include "host/diff/PairedProducer.h"

#include "framework/api/IObject.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

IObject* PairedProducer::Load(UTF8String const& id)
{
    if (id.View().starts_with(kWas))
        return m_was.Load(id);
    return id.View().starts_with(kFrame) ? m_frame.Load(id) : m_is.Load(id);
}

}  // namespace KVR
