#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/explain/ObjectAnswers.h"
#include "inspect/explain/ReadingTrace.h"
#include "output/ScratchFolder.h"

namespace KVR
{

class ReadRecord;

/// One element of a scene with as much of the scene as it takes to read it: what it stands in, the elements that it
/// names, without what is in them, each with a twin whose id has a "~" behind it, and the stores that hold its record.
/// It can be read again and again, each time with something changed. Stands in a folder of its own for temporary files,
/// which goes with the object.
class SkeletonScene
{
public:
    /// What is different from the scene.
    struct Change
    {
        /// An attribute of an element: its text instead, nothing to leave it out.
        xercesc::DOMNode const* changed = nullptr;
        std::string attribute;
        std::optional<std::string> text;
        /// A child element, or a section, that is left out.
        xercesc::DOMNode const* child = nullptr;
        bool hasProperties = false;
    };

    SkeletonScene(std::string scenePath, xercesc::DOMNode const* root, xercesc::DOMNode const* element, std::string id,
                  ReadRecord const& record, bool restoresInsecure);
    SkeletonScene(SkeletonScene const&) = delete;
    SkeletonScene& operator=(SkeletonScene const&) = delete;

    /// How often it may be read, so that large stores do not take too long.
    std::size_t MostReads() const noexcept;

    /// The sections of the stores that may hold its records.
    std::vector<xercesc::DOMNode const*> Sections() const;

    /// What the object answers then; nothing when it is none then. With a trace, the reading is told to it, and `use`
    /// is called while the document is there.
    std::optional<std::vector<ObjectAnswer>> Read(Change const& change, ReadingTrace* trace = nullptr,
                                                  std::function<void()> const& use = {}) const;

private:
    void ChooseElements(ReadRecord const& record);
    std::string Document(Change const& change) const;
    void Put(std::string& text, xercesc::DOMNode const* element, Change const& change, unsigned depth) const;
    void PutAttributes(std::string& text, xercesc::DOMNode const* element, Change const& change,
                       bool isTwin = false) const;
    void PutChildren(std::string& text, xercesc::DOMNode const* element, Change const& change, unsigned depth) const;

    std::string m_scenePath;
    xercesc::DOMNode const* m_root;
    xercesc::DOMNode const* m_element;
    std::string m_id;
    bool m_restoresInsecure;
    /// Nothing, and an empty path, where no folder can be made.
    std::optional<ScratchFolder> m_scratch;
    std::string m_folder;
    /// The element and those around it.
    std::unordered_set<xercesc::DOMNode const*> m_chain;
    /// Children of the root, with those of which only the attributes are kept, and the sections whose paths are others.
    std::unordered_set<xercesc::DOMNode const*> m_named;
    std::vector<std::pair<xercesc::DOMNode const*, std::string>> m_sections;
    std::uintmax_t m_storeBytes = 0;
};

}  // namespace KVR
