#pragma once

#include <string>

#include "tests/campaigns/Campaign.h"

namespace KVR::Campaigns
{

/// The bytes with one to four changes: bytes patched, cut out, doubled, put elsewhere; numbers and words of texts
/// replaced; the end cut off.
std::string MutatedBytes(std::string bytes, Dice& dice);

/// A scene with one to four changes by the grammar of its elements: elements swapped, nested, repeated and dropped, ids
/// paired with every other, references turned into circles, names and values replaced. A text that is no document is
/// given back as it is.
std::string MutatedScene(std::string const& document, Dice& dice);

}  // namespace KVR::Campaigns
