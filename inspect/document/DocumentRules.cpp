#include "inspect/document/DocumentRules.h"

namespace KVR
{

namespace
{

using namespace DocumentRule;

constexpr Rule kRules[] = {
    kUnreadable,
    kElementUnread,
    kElementMisspelt,
    kAttributeUnread,
    kAttributeMisspelt,
    kElementPassedOver,
    kElementDropped,
    kSetEnded,
    kIdTwice,
    kReferenceMissing,
    kReferenceKind,
    kCycle,
    kTooDeep,
    kUnreached,
    kNoRoot,
    kFileProperty,
    kPathAstray,
    kBoolean,
    kUnit,
    kEnumeration,
    kNumber,
    kDecimalComma,
    kTransform,
    kFlat,
    kMirror,
    kShear,
    kVector,
    kTime,
};

}  // namespace

std::span<Rule const> DocumentRules()
{
    return kRules;
}

}  // namespace KVR
