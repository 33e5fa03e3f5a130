#include "exchange/model/CleanText.h"

#include <TCollection_AsciiString.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_Label.hxx>
#include <TDataStd_Name.hxx>

#include "framework/api/UTF16String.h"

namespace KVR
{

UTF8String CleanText(std::string_view text)
{
    std::wstring wide(UTF16String(UTF8String(text)).View());
    for (wchar_t& c : wide)
        if (c < L' ' || c == 0x7F || c == 0xFFFE || c == 0xFFFF)
            c = L' ';
    return UTF8String(UTF16String(wide.c_str()));
}

UTF8String CleanExtendedText(TCollection_ExtendedString const& text)
{
    std::string bytes(static_cast<std::size_t>(text.LengthOfCString()) + 1, '\0');
    char* place = bytes.data();
    bytes.resize(static_cast<std::size_t>(text.ToUTF8CString(place)));
    return CleanText(bytes);
}

UTF8String NameOfLabel(TDF_Label const& label)
{
    Handle(TDataStd_Name) name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name))
        return {};
    // Open CASCADE's own name of a reference that has none.
    if (name->Get().Search("=>[") == 1)
        return {};
    return CleanExtendedText(name->Get());
}

}  // namespace KVR
