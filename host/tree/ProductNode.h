#pragma once

#include <optional>
#include <string_view>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IAssembly;
class IFile;
class IInstance;
class IObject;
class IPart;
class IProducer;

/// One object of the product structure, as the tree shows it: an instance together with what it places.
class ProductNode
{
public:
    /// The object of that id, and for an instance its target.
    static ProductNode Of(IProducer& producer, UTF8String const& id);

    /// The interface's name; "missing" for an id without an object.
    std::string_view kind;
    UTF8String id;
    UTF16String label;
    /// Whether an object that can be hidden is shown.
    std::optional<bool> visible;

    bool isInstance = false;
    /// The file, assembly or part whose children stand beneath the node: of an instance, what it places. Its kind, id
    /// and label; the kind is empty for a node that has none.
    std::string_view ownerKind;
    UTF8String ownerId;
    UTF16String ownerLabel;

    bool HasOwner() const noexcept { return !ownerKind.empty(); }
    bool IsPart() const noexcept { return m_part != nullptr; }
    bool IsAssembly() const noexcept { return m_assembly != nullptr; }
    bool IsFile() const noexcept { return m_file != nullptr; }
    /// Whether the tree has facts to tell of the object's geometry.
    bool HasGeometry() const noexcept { return m_hasGeometry; }
    unsigned long long ChildCount() const;
    /// Empty when there is no object behind the child.
    UTF8String ChildIdAt(unsigned long long index) const;

private:
    IFile const* m_file = nullptr;
    IAssembly const* m_assembly = nullptr;
    IPart const* m_part = nullptr;
    bool m_hasGeometry = false;

    friend class NodeMaker;
};

}  // namespace KVR
