#pragma once

#include <string_view>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/Export.h"

namespace KVR
{

class IObject;
class IProducer;

/// An object that another one names, as far as a reader wants to know of it. Nothing of it belongs to the producer.
struct KVR_SCENE_API SceneObjectRef
{
    /// The object of that id, which is asked for its label; a label that it does not tell is empty.
    static SceneObjectRef Of(IProducer& producer, UTF8String const& id);

    /// The interface's name, such as "IPart"; empty for an object of no kind that is known. A section camera is an
    /// "ICamera".
    static std::string_view KindOf(IObject& object);

    /// What KindOf says; "missing" for an id without an object.
    std::string_view kind;
    UTF8String id;
    UTF16String label;
};

}  // namespace KVR
