#pragma once

namespace KVR
{

class Output;
struct ShapeDocument;

/// Writes the shapes of a document as one compound in the text form of Open CASCADE, each once with its places. What
/// else the document holds stays behind. Throws std::runtime_error when there is no shape, OutputError when the output
/// does, and Standard_Failure.
void WriteBrepFile(ShapeDocument const& document, Output& out);

}  // namespace KVR
