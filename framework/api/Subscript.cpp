#include "framework/api/Subscript.h"

#include <stdexcept>

namespace KVR
{

void ThrowInvalidSubscript()
{
    throw std::out_of_range("invalid vector<T> subscript");
}
void ThrowTooLong()
{
    throw std::length_error("vector<T> too long");
}

}  // namespace KVR
