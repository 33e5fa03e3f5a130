#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "producer/ClassicLocaleScope.h"
#include "producer/ElementReaders.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

DOMNode* FirstNamed(DOMNode const* parent, ElementName name)
{
    for (DOMNode* const child : Children(parent))
    {
        if (IsNamed(child, name))
            return child;
    }
    return nullptr;
}

// The first file that is flagged as root, or else the last file.
DOMNode* RootFile(DOMNode const* root)
{
    DOMNode* file = nullptr;
    for (DOMNode* const child : Children(root))
    {
        if (!IsNamed(child, Names::IFile))
            continue;
        file = child;
        if (Equals(AttributeText(child, Names::IsRoot), u"1"))
            break;
    }
    return file;
}

}  // namespace

bool ClassifyStructure(xercesc::XercesDOMParser const* parser)
{
    ClassicLocaleScope const classicLocale;
    xercesc::DOMDocument const* const document = const_cast<xercesc::XercesDOMParser*>(parser)->getDocument();
    if (!document)
        return false;
    DOMNode const* const file = RootFile(document->getDocumentElement());
    unsigned long long count = 0;
    bool hasAssembly = false;
    bool hasPart = false;
    for (DOMNode const* const child : Children(FirstNamed(file, Names::ChildSet)))
    {
        ++count;
        XMLCh const* const type = AttributeText(child, Names::Type);
        hasAssembly = hasAssembly || Equals(type, Names::IAssembly) || Equals(type, Names::IInstance);
        hasPart = hasPart || Equals(type, Names::IPart);
    }
    // A part with any sibling makes an assembly, whichever of the two comes first.
    return hasAssembly || (hasPart && count >= 2);
}

}  // namespace KVR
