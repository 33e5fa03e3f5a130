#include "framework/api/FileProperties.h"

namespace KVR
{

FileProperties::FileProperties() = default;
FileProperties::~FileProperties() = default;

IsValueSpecifiedEnum FileProperties::Title(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::Author(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::Organization(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::Description(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::SendingSystem(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::PartNumber(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::Revision(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::Preprocessor(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::CreationDate(Time&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::Authorisation(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::MassUnit(UnitTypeEnum&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::TimeUnit(UnitTypeEnum&) const
{
    return kIsValueSpecified_No;
}
unsigned long long FileProperties::CustomPropertyCount() const
{
    return 0;
}
IsValueSpecifiedEnum FileProperties::CustomPropertyAt(unsigned long long, CustomProperty&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileProperties::ViewDataOf(ViewData&) const
{
    return kIsValueSpecified_No;
}

FileQueryResult::FileQueryResult() = default;
FileQueryResult::~FileQueryResult() = default;

IsValueSpecifiedEnum FileQueryResult::SupportsFile(bool&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileQueryResult::HasAssemblyStructure(bool&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileQueryResult::FileVersion(UTF16String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum FileQueryResult::FutureFileVersion(bool&, UTF16String&) const
{
    return kIsValueSpecified_No;
}

}  // namespace KVR
