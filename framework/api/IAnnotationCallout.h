#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

class IText;

/// A note placed in the model: text, the plane it lies in, and what it is drawn with or points at.
class KVR_API IAnnotationCallout : public IObject, public IVisible
{
public:
    ~IAnnotationCallout() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The number of children, each id once: what the note points at, and the elements that it is drawn with.
    virtual unsigned long long ChildCount() const = 0;
    /// The child's id; empty when there is no object behind it. An index beyond the count throws GeneralException, the
    /// count itself std::out_of_range.
    virtual AnnotationCalloutChildId ChildAt(unsigned long long index) const = 0;
    /// The id of the work plane that the note lies in; not specified when there is none.
    virtual IsValueSpecifiedEnum AnnotationPlaneId(UTF8String& id) const = 0;
    /// The text, owned by the callout; null when there is none.
    virtual IText* Text() const = 0;
};

/// Geometry that a callout is drawn with.
class KVR_API IAnnotationCalloutElement : public IObject
{
public:
    ~IAnnotationCalloutElement() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The number of children, each id once: curves, points and meshes.
    virtual unsigned long long ChildCount() const = 0;
    /// The child's id; empty when there is no object behind it. An index beyond the count throws GeneralException, the
    /// count itself std::out_of_range.
    virtual AnnotationCalloutElementChildId ChildAt(unsigned long long index) const = 0;
    /// The ids of the styles that the element is drawn with, in document order; empty when there are none.
    virtual IdSet Styles() const = 0;
};

}  // namespace KVR
