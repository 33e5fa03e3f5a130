#pragma once

#include "framework/api/Export.h"

namespace KVR
{

/// Base of a producer's options.
class KVR_API BaseOptions
{
public:
    BaseOptions();
    virtual ~BaseOptions();
};

/// What a host would leave out of a scene; the producer takes the pointer and reads everything all the same.
class KVR_API FilterOptions
{
public:
    FilterOptions();
    virtual ~FilterOptions();
};

}  // namespace KVR
