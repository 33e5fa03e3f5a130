#pragma once

#include <cstdio>

#include "framework/api/UTF8String.h"
#include "framework/gmk_interface/Export.h"

namespace KVR
{

class ENTITY;

/// What a host of the kernel needs beside the kernel itself.
class KVR_GMK_INTERFACE_API GMKUtil
{
public:
    /// Opens a file as std::fopen does, with the mode that a store is to be read in; null when that fails. A file
    /// opened to be read must be a regular one.
    static std::FILE* OpenGmkFile(UTF8String const& path, UTF8String const& mode);
    /// Closes what OpenGmkFile gave; null has no effect.
    static void CloseGmkFile(std::FILE* file) noexcept;
    /// The data id of an entity, the one given last of several; empty when it has none, and for null.
    static UTF8String EntityDxid(ENTITY* entity);
};

}  // namespace KVR
