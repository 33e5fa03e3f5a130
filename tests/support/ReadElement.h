#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

/// A producer without a scene, and documents whose elements are read by hand.
class ReadElement
{
public:
    XMLProducerImpl& Producer() { return m_producer; }
    SideFileIndex& Index() { return *m_producer.sideFileIndex; }
    bool Has(char const* id) const { return m_producer.Load(id) != nullptr; }

    /// The root element of a document of its own, which lives as long as this object.
    xercesc::DOMNode* Parse(std::string const& xml)
    {
        m_documents.push_back(std::make_unique<ParsedDocument>(xml));
        return m_documents.back()->Root();
    }

    /// As if a kernel store had been restored. There is no curve under the id.
    void AddKernelEntry(char const* id) { Index().curveEntities[id] = nullptr; }

    /// Reads the four stores' objects.
    template <class Object>
    bool ReadWithStores(Object& object, xercesc::DOMNode* node)
    {
        return object.ReadFromXML(node, Index().bodyEntities, Index().curveEntities, Index().meshStore,
                                  Index().curveStore);
    }

private:
    // Outlive the objects that the producer registers.
    std::vector<std::unique_ptr<ParsedDocument>> m_documents;
    XMLProducerImpl m_producer{UTF16String(), nullptr};
};

}  // namespace KVR::Test
