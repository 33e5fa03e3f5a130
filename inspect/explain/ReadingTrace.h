#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

/// Listens to how texts of the document were understood while a scene is read, and which element an object was made of.
class ReadingTrace final : public ReadObserver
{
public:
    /// How a text was read.
    struct Reading
    {
        TextForm form = TextForm::kInteger;
        bool isUnderstood = true;
        bool value = false;
        bool (*test)(XMLCh const* text) = nullptr;
        std::vector<std::string> texts;
    };

    explicit ReadingTrace(UTF8String id) : m_id(std::move(id)) {}

    /// The element of the object of that id; null when none was registered.
    xercesc::DOMNode const* Element() const noexcept { return m_element; }
    /// The last of the ways in which a text was read, by its address; null when it was left as it stands.
    Reading const* ReadingOf(XMLCh const* text) const;

    void TextRead(TextReading const& reading) override;
    void ObjectRegistered(xercesc::DOMNode const* element, IObject const& object, bool isSecond) override;

private:
    UTF8String m_id;
    xercesc::DOMNode const* m_element = nullptr;
    std::unordered_map<XMLCh const*, Reading> m_readings;
};

/// As what a text was read: "a boolean, read as true".
std::string UnderstandingOf(ReadingTrace::Reading const& reading);

/// Texts that would be read as something else than this one, the likeliest first; for null any texts.
std::vector<std::string> OtherTexts(ReadingTrace::Reading const* reading, std::string const& text);

}  // namespace KVR
