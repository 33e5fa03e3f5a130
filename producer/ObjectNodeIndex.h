#pragma once

#include <map>
#include <span>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

class XMLFile;
class XMLProducerImpl;
enum class ReferenceEnd;

/// The object elements under the document's root by their ids as written, and the reading of them, each once, in the
/// order of the ids or earlier when another object needs it.
class ObjectNodeIndex
{
public:
    using Nodes = std::map<UTF8String, xercesc::DOMNode*>;

    /// How deep a reference within a reference is followed: a file, a thousand components in one another, and what the
    /// innermost one places. A reference beyond is not followed; its target is still read in its own turn.
    static constexpr unsigned kDeepestReference = 1002;

    ObjectNodeIndex();
    ~ObjectNodeIndex();
    ObjectNodeIndex(ObjectNodeIndex const&) = delete;
    ObjectNodeIndex& operator=(ObjectNodeIndex const&) = delete;

    /// Whether an element of this name under the document's root is an object.
    static bool IsObjectName(XMLCh const* name);
    /// The names of the elements there that are objects.
    static std::span<ElementName const> ObjectNames() noexcept;
    /// Notes the element under its "ID". A second one of an id replaces the first; those without the attribute all
    /// fall on the empty id.
    void AddNode(xercesc::DOMNode* node);
    /// Forgets all elements, as they go with their document; a root that was found stays the root.
    void Clear() noexcept { m_nodes.clear(); }
    /// Reads every noted element and chooses the root file.
    void ReadAllNodes(XMLProducerImpl* producer);
    /// Reads an element, by its id as written, before its turn. True for an id that was never noted and for an element
    /// that was read; false for one that was read before, is being read, or failed in a way that leaves no object.
    bool ReadNodeById(UTF8String const& id);
    XMLProducerImpl* Producer() const noexcept { return m_producer; }

private:
    ReferenceEnd EndOf(Nodes::const_iterator found) const;
    bool DispatchNode(Nodes::value_type& entry);
    /// What became of an element: whether it is never to be read again, and what its reader answers.
    struct Outcome
    {
        bool isDone = true;
        bool answer = true;
    };

    Outcome ReadObject(xercesc::DOMNode* node);
    template <class Object, class... Sources>
    Outcome ReadOrKeep(xercesc::DOMNode* node, Sources&... sources);
    Outcome ReadCurve(xercesc::DOMNode* node);
    void ReadBody(xercesc::DOMNode* node);
    void ReadMesh(xercesc::DOMNode* node);
    void ReadFile(xercesc::DOMNode* node);
    void ChooseRootFile();
    void SetRoot(XMLFile* file);

    /// Files in reading order; not owned.
    std::vector<XMLFile*> m_files;
    /// A file has declared itself root.
    bool m_rootFound = false;
    /// An element's pointer turns null when its reading begins, and comes back when the reading leaves nothing.
    Nodes m_nodes;
    XMLProducerImpl* m_producer = nullptr;
    unsigned m_depth = 0;
};

}  // namespace KVR
