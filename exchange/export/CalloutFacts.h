#pragma once

#include <string>
#include <vector>

#include "exchange/conventions/AnnotationDetails.h"

namespace KVR
{

class IAnnotationCallout;

/// What extension data of a callout tells of the annotation that it is.
/// "dimension", "tolerance" or "datum"; empty for a callout that is none.
std::string KindOf(IAnnotationCallout const& callout);
/// The ids of what it speaks of.
std::vector<std::string> ReferencesOf(IAnnotationCallout const& callout);
AnnotationDetails DetailsOf(IAnnotationCallout const& callout);

}  // namespace KVR
