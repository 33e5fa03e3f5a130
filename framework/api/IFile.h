#pragma once

#include "framework/api/FileProperties.h"
#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

class Time;

/// One design file: the top of a product tree.
class KVR_API IFile : public IAttributeSets, public IObject, public IUnit
{
public:
    ~IFile() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The unit set by SetDisplayLengthUnit; not specified until then.
    IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const override;

    /// What the file says about itself, owned by the file; null when there is nothing.
    virtual KVR::FileProperties* FileProperties() const = 0;
    virtual unsigned long long ChildCount() const = 0;
    /// The child's id; empty when there is no object behind it. An index beyond ChildCount throws GeneralException.
    virtual FileChildId ChildAt(unsigned long long index) const = 0;
    /// Whether the file is the scene's root.
    virtual bool IsRoot() const = 0;
    virtual void SetDisplayLengthUnit(UnitTypeEnum unit);
    virtual IsValueSpecifiedEnum FileFullPath(UTF16String& path) const = 0;
    virtual IsValueSpecifiedEnum LastModificationTime(Time& time) const = 0;
    virtual unsigned long long RefFileCount() const = 0;
    /// Id and path of a file that this one refers to; not specified for an index at or beyond the count.
    virtual IsValueSpecifiedEnum RefFileAt(unsigned long long index, UTF8String& id, UTF16String& path) const = 0;

private:
    UnitTypeEnum m_displayLengthUnit = kUnitType_Unknown;
    bool m_hasDisplayLengthUnit = false;
};

}  // namespace KVR
