#pragma once

namespace KVR
{

/// The axes of a model or scene.
enum class UpAxis
{
    kX,
    kY,
    kZ
};

}  // namespace KVR
