#pragma once

#include "scene/Scene.h"

namespace KVR
{

/// A scene of which a filter's names may be expressions, too (Query::IsExpression tells which): those of `only` stand
/// for what they ask for with all above and below it, and those of `hide` for that with all below it. They are asked of
/// the scene without what names hide. Throws what the scene's constructor does, and QueryError for a text that begins
/// as an expression and is none, and for one that nothing fits.
Scene FilteredScene(IProducer& producer, UTF8String const& rootId, SceneFilter const& filter);

}  // namespace KVR
