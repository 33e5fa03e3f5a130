#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "authoring/Export.h"
#include "authoring/StoreFile.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

class TopoDS_Shape;

namespace KVR::Authoring
{

/// The two forms of a kernel store. A reader tells them apart by the file's extension: ".sab" and ".gkb" are binary,
/// all others text.
enum class KernelStoreForm
{
    kBinary,
    kText
};

/// Data ids of a body's faces or edges, by place: that in TopExp::MapShapes of the body's shape for the kind, counted
/// from 0.
struct SubEntityId
{
    std::uint32_t place = 0;
    UTF8String dataId;
};

/// Writes a kernel store. The shapes are held until Finish, since shapes that share parts share them in the store, too.
/// Operations throw FileException when the file system refuses, and GeneralException for a null shape or one that does
/// not fit and when Open CASCADE cannot write the shapes.
class KVR_AUTHORING_API KernelStoreWriter
{
public:
    KernelStoreWriter(UTF16String const& path, KernelStoreForm form);
    ~KernelStoreWriter();
    KernelStoreWriter(KernelStoreWriter const&) = delete;
    KernelStoreWriter& operator=(KernelStoreWriter const&) = delete;

    /// A body of any kind of shape, which an "IBrep" of that id takes. An empty id counts as none.
    void Body(UTF8String const& dataId, TopoDS_Shape const& shape, std::vector<SubEntityId> const& faces = {},
              std::vector<SubEntityId> const& edges = {});
    /// An edge, of which a "GMKEntity" of that id takes the curve.
    void Edge(UTF8String const& dataId, TopoDS_Shape const& edge);
    /// Writes everything; the file appears.
    void Finish();

private:
    struct Content;

    StoreFile m_file;
    KernelStoreForm m_form;
    std::unique_ptr<Content> m_content;
};

}  // namespace KVR::Authoring
