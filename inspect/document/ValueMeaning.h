#pragma once

#include <string>
#include <xercesc/dom/DOMNode.hpp>

namespace KVR
{

class Matrix3d;

/// Whether the text of a boolean is one of the usual words for the other value, or for none.
bool IsOddBoolean(XMLCh const* text, bool value);

/// The value that the text of a boolean stands for by any of the usual words; false when it is none of them.
bool MeaningOfBoolean(XMLCh const* text, bool& value);

/// The spelling of a value that the test takes for it; empty when it takes none of the usual ones.
std::string SpellingOf(bool value, bool (*test)(XMLCh const* text));

/// What is odd about a transform: an axis is lost, it mirrors, it shears or scales the axes differently.
struct TransformOddities
{
    bool isFlat = false;
    bool isMirror = false;
    bool isSheared = false;
};
TransformOddities OdditiesOf(Matrix3d const& matrix);

/// Whether all pieces between the commas are numbers.
bool HasNumbersAlone(XMLCh const* text);

/// An attribute's text, owned by the document, of which no observer is told; null when there is none.
XMLCh const* UnobservedAttribute(xercesc::DOMNode const* element, XMLCh const* name);

/// Whether an attribute of that name declares a namespace, or belongs to XML itself or to schemas, and so to no reader.
bool IsOfXml(XMLCh const* name);

}  // namespace KVR
