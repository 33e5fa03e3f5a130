#include "framework/api/BaseOptions.h"

namespace KVR
{

BaseOptions::BaseOptions() = default;
BaseOptions::~BaseOptions() = default;
FilterOptions::FilterOptions() = default;
FilterOptions::~FilterOptions() = default;

}  // namespace KVR
