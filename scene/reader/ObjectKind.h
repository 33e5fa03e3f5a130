#pragma once

#include "framework/api/ObjectVisitor.h"

namespace KVR
{

class IObject;

/// What stands in the structure of a scene, told apart by one visit: one pointer is set at most.
class ObjectKind final : public ObjectVisitor
{
public:
    explicit ObjectKind(IObject& object);

    using ObjectVisitor::Visit;
    void Visit(IFile* object) override { file = object; }
    void Visit(IAssembly* object) override { assembly = object; }
    void Visit(IPart* object) override { part = object; }
    void Visit(IInstance* object) override { instance = object; }

    bool IsComponent() const noexcept { return file || assembly || part; }

    IFile* file = nullptr;
    IAssembly* assembly = nullptr;
    IPart* part = nullptr;
    IInstance* instance = nullptr;
};

}  // namespace KVR
