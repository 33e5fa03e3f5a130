#pragma once

namespace KVR
{

/// Says that an answer is ignored on purpose: the format goes on as if it were good.
template <class Result>
void Ignored(Result const&)
{
}

}  // namespace KVR
