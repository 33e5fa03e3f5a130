#pragma once

#include <memory>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IFile.h"
#include "framework/api/Time.h"
#include "framework/xml_util/ObjectState.h"
#include "readers/AttributeSetsState.h"
#include "structure/FilePropertiesHolder.h"

namespace KVR
{

class XMLProducerImpl;

/// A design file. It keeps the ids of its children alone; the objects are looked up at each question.
class XMLFile : public AttributeSetsState<ObjectState<IFile>>
{
public:
    /// The path is of no use to a scene: the dispatcher gives none.
    XMLFile(UTF16String const& path, XMLProducerImpl* producer);
    ~XMLFile() override;

    KVR::FileProperties* FileProperties() const override { return m_fileProperties.Get(); }
    unsigned long long ChildCount() const override { return m_childIds.size(); }
    FileChildId ChildAt(unsigned long long index) const override;
    bool IsRoot() const override { return m_isRoot; }
    IsValueSpecifiedEnum FileFullPath(UTF16String& path) const override;
    IsValueSpecifiedEnum LastModificationTime(Time& time) const override;
    unsigned long long RefFileCount() const override { return m_refFiles.size(); }
    IsValueSpecifiedEnum RefFileAt(unsigned long long index, UTF8String& id, UTF16String& path) const override;

    /// Fills the object from an "IFile" element, and reads the elements that its children name. False for a null node
    /// and for one that is no element.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

    void SetRoot() noexcept { m_isRoot = true; }
    std::vector<UTF8String> const& ChildIds() const noexcept { return m_childIds; }

private:
    struct RefFile
    {
        UTF8String id;
        UTF16String path;
    };

    void ReadAttributes(xercesc::DOMNode const* node);
    void ReadChildSet(xercesc::DOMNode const* node);
    void ReadRefFiles(xercesc::DOMNode const* node);
    void ReadDisplayLengthUnit(xercesc::DOMNode const* node);

    FilePropertiesHolder m_fileProperties;
    UTF16String m_fileFullPath;
    Time m_lastModificationTime;
    bool m_hasLastModificationTime = false;
    XMLProducerImpl* m_producer;
    std::vector<UTF8String> m_childIds;
    std::vector<RefFile> m_refFiles;
    bool m_isRoot = false;
};

}  // namespace KVR
