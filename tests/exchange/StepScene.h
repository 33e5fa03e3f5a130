#pragma once

#include <string>
#include <vector>

#include "authoring/KernelStoreWriter.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

class TopoDS_Shape;

namespace KVR::Test
{

/// A scene with bodies that is written to a folder of its own and exported from there.
class StepScene
{
public:
    StepScene() : m_store(m_folder.PathOf("scene.sat"), Authoring::KernelStoreForm::kText) {}

    /// The body of an "IBrep" of that id, with the data ids of its faces and edges by their places.
    StepScene& Body(char const* id, TopoDS_Shape const& shape, std::vector<Authoring::SubEntityId> const& faces = {},
                    std::vector<Authoring::SubEntityId> const& edges = {})
    {
        m_store.Body(id, shape, faces, edges);
        return *this;
    }
    /// The edge that a "GMKEntity" of that id names.
    StepScene& Edge(char const* id, TopoDS_Shape const& edge)
    {
        m_store.Edge(id, edge);
        return *this;
    }
    /// Finishes the store and writes the document: what stands in the scene beside the store's name.
    StepScene& Write(std::string const& content)
    {
        m_store.Finish();
        m_folder.Write("scene.xml", "<S><SatInfo Path='scene.sat'/>" + content + "</S>");
        return *this;
    }

    ToolRun Export(std::string const& name, std::vector<std::string> options = {}) const
    {
        options.insert(options.begin(), {"export", m_folder.NarrowPathOf("scene.xml"), PathOf(name)});
        return RunTool(options);
    }
    std::string PathOf(std::string const& name) const { return m_folder.NarrowPathOf(name); }
    TempFolder const& Folder() const { return m_folder; }

private:
    TempFolder m_folder;
    Authoring::KernelStoreWriter m_store;
};

}  // namespace KVR::Test
