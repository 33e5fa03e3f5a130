#pragma once

namespace KVR
{

class IProducer;
class Output;
struct TreeOptions;
class UTF8String;

/// Writes the product tree below a root, node by node: nothing of the text is kept, and a deep tree takes no stack.
/// False when the tree has more nodes than the options allow: it is then cut, and ends with the totals all the same.
bool WriteTree(IProducer& producer, UTF8String const& rootId, TreeOptions const& options, Output& out);

}  // namespace KVR
