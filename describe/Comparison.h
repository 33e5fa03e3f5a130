#pragma once

#include <span>
#include <string>
#include <vector>

#include "describe/Answer.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IProducer;

/// A member that two sides answer differently. Where one has no such member or item, its text is empty.
struct Difference
{
    /// "Children[2]", "FileProperties.Title"; of two scenes with the object's id and "/" in front.
    std::string path;
    std::string first;
    std::string second;

    friend bool operator==(Difference const& a, Difference const& b) = default;
};

/// Where two answers differ: the deepest members and items that do, in the order of the first answer, then of those
/// that only the second one has. Lists are compared item by item.
std::vector<Difference> Compare(Answer const& first, Answer const& second);

/// Where two objects differ.
std::vector<Difference> Compare(IObject& first, IObject& second);

/// Where what two producers serve differs: their roots, what they say of the scenes as a whole, and every object that
/// is reached from the root or from the ids given, each kept only while it is compared. An object that one side alone
/// has is one difference. Both have begun their processes, and have a root or throw for it what RootObjectId throws.
std::vector<Difference> Compare(IProducer& first, IProducer& second, std::span<UTF8String const> ids = {});

}  // namespace KVR
