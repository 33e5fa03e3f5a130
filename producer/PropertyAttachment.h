#pragma once

#include "framework/api/UTF16String.h"

namespace KVR
{

class XMLProducerImpl;

/// Hands each property of the file beside the scene to its object, which lists the id, and to the universe's database,
/// which shares the property. One for an unknown id, or for an object that holds no properties, is dropped.
void AttachProperties(UTF16String const& sceneFilePath, XMLProducerImpl& producer);

}  // namespace KVR
