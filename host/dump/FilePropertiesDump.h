#pragma once

namespace KVR
{

struct DumpContext;
class FileProperties;

/// Writes the object that stands for the properties of a file.
void DumpFileProperties(DumpContext const& context, FileProperties const& properties);

}  // namespace KVR
