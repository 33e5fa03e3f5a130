#pragma once

#include <TopoDS_Shape.hxx>

#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/kernel/entity.h"

namespace KVR::Test
{

/// A boundary representation that is nothing but that.
class PlainBrep : public DetachableGMKBrep
{
public:
    PlainBrep() = default;
    /// Owns the body.
    explicit PlainBrep(BODY* body) { TakeBody(body); }

    UTF8String Id() const override { return "b"; }
    UTF16String Label() const override { return {}; }
    IsValueSpecifiedEnum ChangeKey(SnapshotVersionEnum, UTF8String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum VersionPersistentId(UTF8String&) const override { return kIsValueSpecified_No; }
};

}  // namespace KVR::Test
