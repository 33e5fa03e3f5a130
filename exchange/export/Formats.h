#pragma once

namespace KVR
{

struct ExportTask;

// The writers of the formats. They throw std::system_error when the file cannot be written, and std::runtime_error for
// what the format cannot hold at all; its message is the cause alone.
void ExportGltf(ExportTask& task);
void ExportStl(ExportTask& task);
void ExportObj(ExportTask& task);
void ExportPly(ExportTask& task);
void ExportStep(ExportTask& task);
void ExportBrep(ExportTask& task);
/// The file of the viewer; it stands in a folder of its own, exchange/view.
void ExportView(ExportTask& task);

}  // namespace KVR
