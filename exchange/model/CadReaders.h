#pragma once

#include <Message_ProgressRange.hxx>
#include <string>

namespace KVR
{

struct ModelDocument;
struct ModelReadOptions;

/// Read a STEP or IGES file, by an absolute path, into the model's document. They throw ModelError and what Open
/// CASCADE throws.
void ReadStep(ModelDocument& model, std::string const& path, ModelReadOptions const& options,
              Message_ProgressRange const& progress);
void ReadIges(ModelDocument& model, std::string const& path, Message_ProgressRange const& progress);

}  // namespace KVR
