#pragma once

#include <vector>

#include "framework/api/UTF8String.h"

namespace KVR
{

class IProducer;
struct NotesOptions;
class Output;

/// Writes every annotation callout that the walk from these ids reaches, each once, in the order of a dump, and then
/// their number.
void WriteNotes(IProducer& producer, std::vector<UTF8String> const& ids, NotesOptions const& options, Output& out);

}  // namespace KVR
