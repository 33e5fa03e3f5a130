#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

class CustomProperty;
class Time;
class UTF16String;
class ViewData;

/// What a design file says about itself. Every getter answers "not specified", with its output left alone, unless a
/// derived class says otherwise.
class KVR_API FileProperties
{
public:
    FileProperties();
    virtual ~FileProperties();

    virtual IsValueSpecifiedEnum Title(UTF16String& text) const;
    virtual IsValueSpecifiedEnum Author(UTF16String& text) const;
    virtual IsValueSpecifiedEnum Organization(UTF16String& text) const;
    virtual IsValueSpecifiedEnum Description(UTF16String& text) const;
    virtual IsValueSpecifiedEnum SendingSystem(UTF16String& text) const;
    virtual IsValueSpecifiedEnum PartNumber(UTF16String& text) const;
    virtual IsValueSpecifiedEnum Revision(UTF16String& text) const;
    virtual IsValueSpecifiedEnum Preprocessor(UTF16String& text) const;
    virtual IsValueSpecifiedEnum CreationDate(Time& time) const;
    virtual IsValueSpecifiedEnum Authorisation(UTF16String& text) const;
    virtual IsValueSpecifiedEnum MassUnit(UnitTypeEnum& unit) const;
    virtual IsValueSpecifiedEnum TimeUnit(UnitTypeEnum& unit) const;
    /// 0 here.
    virtual unsigned long long CustomPropertyCount() const;
    /// Not specified for an index at or beyond the count.
    virtual IsValueSpecifiedEnum CustomPropertyAt(unsigned long long index, CustomProperty& property) const;
    virtual IsValueSpecifiedEnum ViewDataOf(ViewData& viewData) const;
};

/// What a producer says about a scene file before any object of it exists.
class KVR_API FileQueryResult
{
public:
    FileQueryResult();
    virtual ~FileQueryResult();

    /// Whether the producer reads files of this kind; not specified here.
    virtual IsValueSpecifiedEnum SupportsFile(bool& supports) const;
    /// Whether the scene is more than one lone part; not specified here.
    virtual IsValueSpecifiedEnum HasAssemblyStructure(bool& has) const;
    /// Not specified here.
    virtual IsValueSpecifiedEnum FileVersion(UTF16String& version) const;
    /// Not specified here.
    virtual IsValueSpecifiedEnum FutureFileVersion(bool& isFuture, UTF16String& version) const;
};

}  // namespace KVR
