#pragma once

namespace KVR
{

struct DumpContext;
class IAnnotationCallout;
class IAnnotationCalloutElement;

// Annotation. Each writes the members of one object; the caller opens and closes it.

void DumpAnnotationCallout(DumpContext const& context, IAnnotationCallout const& callout);
void DumpAnnotationCalloutElement(DumpContext const& context, IAnnotationCalloutElement const& element);

}  // namespace KVR
