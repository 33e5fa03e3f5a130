#pragma once

#include "framework/api/FileProperties.h"
#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

class Time;

/// One design file: the top of a product tree. Of its units it reports the one in which to show lengths alone.
class KVR_API IFile : public IAttributeSets, public IObject, public IUnit
{
public:
    ~IFile() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The unit that SetDisplayLengthUnit was given, which for a scene is that of its "Unit"; not specified until then.
    IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const override;

    /// What the file says about itself, owned by the file; null when there is nothing.
    virtual KVR::FileProperties* FileProperties() const = 0;
    /// The number of children, those without an object behind them included.
    virtual unsigned long long ChildCount() const = 0;
    /// The child's id; empty when there is no object behind it. An index beyond ChildCount throws GeneralException,
    /// ChildCount itself std::out_of_range.
    virtual FileChildId ChildAt(unsigned long long index) const = 0;
    /// Whether the file is the scene's root: it said so, or it was chosen because none did.
    virtual bool IsRoot() const = 0;
    /// Sets what DisplayLengthUnit answers.
    virtual void SetDisplayLengthUnit(UnitTypeEnum unit);
    /// The path of the design file as the scene has it, whether there is such a file or not; not specified when it is
    /// absent or empty.
    virtual IsValueSpecifiedEnum FileFullPath(UTF16String& path) const = 0;
    /// When the design file was last changed; not specified when it is absent or no time.
    virtual IsValueSpecifiedEnum LastModificationTime(Time& time) const = 0;
    /// The number of files that this one refers to; 0 when there are none.
    virtual unsigned long long RefFileCount() const = 0;
    /// Id and path of a file that this one refers to, both as the scene has them; not specified, with the outputs left
    /// alone, for an index at or beyond the count.
    virtual IsValueSpecifiedEnum RefFileAt(unsigned long long index, UTF8String& id, UTF16String& path) const = 0;

private:
    UnitTypeEnum m_displayLengthUnit = kUnitType_Unknown;
    bool m_hasDisplayLengthUnit = false;
};

}  // namespace KVR
