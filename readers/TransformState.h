#pragma once

#include <memory>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Matrix3d.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

/// A base with ITransformable in it, and a transform of which the identity is never kept.
template <class Base>
class TransformState : public Base
{
public:
    using Base::Base;

    Matrix3d const* Transform() const override { return m_transform.get(); }

protected:
    void KeepTransform(Matrix3d const& transform)
    {
        m_transform = transform.IsIdentity() ? nullptr : std::make_unique<Matrix3d>(transform);
    }

    /// Keeps the transform that a "Transform" element states, but leaves the one that is there for the identity.
    void KeepTransformButIdentity(xercesc::DOMNode* node)
    {
        // Kept: unlike above, the identity does not take an earlier transform away.
        if (Matrix3d const transform = TransformOf(node); !transform.IsIdentity())
            KeepTransform(transform);
    }

    /// Reads the text of a "Transform" element.
    static Matrix3d TransformOf(xercesc::DOMNode* node)
    {
        Matrix3d transform;
        TellObserver(&ReadObserver::LastCounts, node);
        XMLStrUtil::GetTransfFromStr(TextContent(node), transform);
        return transform;
    }

private:
    std::unique_ptr<Matrix3d> m_transform;
};

}  // namespace KVR
