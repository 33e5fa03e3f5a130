#include "organisation/XMLSectionCamera.h"

#include <utility>

#include "framework/api/Subscript.h"

namespace KVR
{

XMLSectionCamera::XMLSectionCamera(UTF8String id, UTF16String const& label, std::unique_ptr<XMLCamera> camera)
    : ObjectState(std::move(id), label), m_camera(std::move(camera))
{
}

XMLSectionCamera::~XMLSectionCamera() = default;

Plane XMLSectionCamera::SectionPlaneAt(unsigned long long index) const
{
    return CheckedAt(m_sectionPlanes, index);
}

}  // namespace KVR
