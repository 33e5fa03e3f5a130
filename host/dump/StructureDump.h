#pragma once

namespace KVR
{

struct DumpContext;
class IAssembly;
class IAssemblyFeatureOverride;
class IFile;
class IInstance;
class IPart;

// The product structure. Each writes the members of one object; the caller opens and closes it.

void DumpFile(DumpContext const& context, IFile const& file);
void DumpAssembly(DumpContext const& context, IAssembly const& assembly);
void DumpPart(DumpContext const& context, IPart const& part);
void DumpInstance(DumpContext const& context, IInstance const& instance);
void DumpAssemblyFeatureOverride(DumpContext const& context, IAssemblyFeatureOverride const& featureOverride);

}  // namespace KVR
