#include "framework/gmk_interface/GMKBrep.h"

#include <utility>

#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"
#include "framework/kernel/body_type.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/history_stream.h"

namespace KVR
{

GMKBrep::GMKBrep() = default;

GMKBrep::~GMKBrep()
{
    GMKGlobalDataSaveRestore const guard;
    delete m_body;
}

BODY* GMKBrep::GiveBody() noexcept
{
    BODY* const body = std::exchange(m_body, nullptr);
    if (body && body->Stream())
        body->Stream()->Remove(body);
    return body;
}

IBrep::BrepTypeEnum GMKBrep::BrepType_ex() const
{
    if (!m_body)
        return kBrepType_Unknown;
    switch (gki_body_type(*m_body))
    {
        case kBodyType_Solid:
            return kBrepType_Solid;
        case kBodyType_Sheet:
            return kBrepType_Sheet;
        case kBodyType_Wire:
            return kBrepType_Wire;
        case kBodyType_Mixed:
            return kBrepType_Mixed;
        case kBodyType_Empty:
            break;
    }
    return kBrepType_Unknown;
}

void GMKBrep::AppendStylesToMap(SubEntityToStylesMap const& styles)
{
    for (unsigned long long i = 0; i < styles.Size(); ++i)
        m_stylesMap.SetStyles(styles.DataIdAt(i), styles.StylesAt(i));
}

void GMKBrep::AppendPersistentIDsToMap(EditableDataIdToPersistentIdMap const& ids)
{
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        m_persistentIds.Add(ids.DataIdAt(i), ids.PersistentIdAt(i));
}

void GMKBrep::SetTransform(Matrix3d&& transform)
{
    SetTransform(std::as_const(transform));
}

void GMKBrep::SetTransform(Matrix3d const& transform)
{
    m_transform = transform.IsIdentity() ? nullptr : std::make_unique<Matrix3d>(transform);
}

}  // namespace KVR
