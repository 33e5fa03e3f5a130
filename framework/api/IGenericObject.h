#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

/// An object of a kind that the framework has no interface for. This producer serves none.
class KVR_API IGenericObject : public IObject
{
public:
    ~IGenericObject() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
};

/// A coordinate system. This producer serves none.
class KVR_API ICoordSys : public IObject
{
public:
    ~ICoordSys() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
};

}  // namespace KVR
