#pragma once

#include "framework/gmk_interface/GMKBrep.h"

namespace KVR
{

/// A boundary representation whose body a host may take away.
class KVR_GMK_INTERFACE_API DetachableGMKBrep : public GMKBrep
{
public:
    ~DetachableGMKBrep() override;

    /// Gives the body to the caller, who deletes it; null when there was none or it was taken before. The object
    /// answers no body from here on.
    virtual BODY* DetachBody();
    /// Whether a body was taken away.
    virtual bool IsBodyDetached() const { return m_isDetached; }
    /// The same as DetachBody.
    virtual BODY* DetachGMKBody() { return DetachBody(); }

protected:
    DetachableGMKBrep();

private:
    bool m_isDetached = false;
};

}  // namespace KVR
