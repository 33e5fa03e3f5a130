#pragma once

#include <map>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/CustomProperty.h"
#include "framework/api/FileProperties.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

/// Keeps the children of a "FileProperties" element as text and converts one when it is asked for.
class XMLFileProperties : public FileProperties
{
public:
    /// Reads the element at once; null gives an object without properties.
    explicit XMLFileProperties(xercesc::DOMNode* node);
    ~XMLFileProperties() override;

    IsValueSpecifiedEnum Title(UTF16String& text) const override;
    IsValueSpecifiedEnum Author(UTF16String& text) const override;
    IsValueSpecifiedEnum Organization(UTF16String& text) const override;
    IsValueSpecifiedEnum Description(UTF16String& text) const override;
    IsValueSpecifiedEnum SendingSystem(UTF16String& text) const override;
    IsValueSpecifiedEnum PartNumber(UTF16String& text) const override;
    IsValueSpecifiedEnum Revision(UTF16String& text) const override;
    IsValueSpecifiedEnum Preprocessor(UTF16String& text) const override;
    /// Not specified for a text that is no time.
    IsValueSpecifiedEnum CreationDate(Time& time) const override;
    IsValueSpecifiedEnum Authorisation(UTF16String& text) const override;
    /// Specified whenever the element is there; a text that is no unit leaves the output alone.
    IsValueSpecifiedEnum MassUnit(UnitTypeEnum& unit) const override;
    IsValueSpecifiedEnum TimeUnit(UnitTypeEnum& unit) const override;
    unsigned long long CustomPropertyCount() const override { return m_customProperties.size(); }
    IsValueSpecifiedEnum CustomPropertyAt(unsigned long long index, CustomProperty& property) const override;
    /// Specified when at least one of the two vectors is good; the other one is then left alone.
    IsValueSpecifiedEnum ViewDataOf(ViewData& viewData) const override;

private:
    void Read(xercesc::DOMNode* node);
    void ReadCustomProperties(xercesc::DOMNode const* node);
    void ReadFileViewData(xercesc::DOMNode const* node);
    /// Tells an observer whether the text of an entry is what it should be.
    using TellEntry = void(ReadObserver& observer, XMLCh const* text);
    /// Keeps the element's text unless an entry of its name is there; null tells nothing.
    void KeepEntry(xercesc::DOMNode* element, TellEntry* tell);

    IsValueSpecifiedEnum TextOf(ElementName key, UTF16String& text) const;
    IsValueSpecifiedEnum UnitOf(ElementName key, UnitTypeEnum& unit) const;

    /// Text content by element name, of the names that somebody can ask for; the first element of a name stays.
    std::map<UTF8String, UTF16String> m_entries;
    std::vector<CustomProperty> m_customProperties;
};

}  // namespace KVR
