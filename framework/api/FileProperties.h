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

    /// The title of the design file.
    virtual IsValueSpecifiedEnum Title(UTF16String& text) const;
    /// Who made the design.
    virtual IsValueSpecifiedEnum Author(UTF16String& text) const;
    /// For whom the author works.
    virtual IsValueSpecifiedEnum Organization(UTF16String& text) const;
    /// What the design is.
    virtual IsValueSpecifiedEnum Description(UTF16String& text) const;
    /// The program that the design came from.
    virtual IsValueSpecifiedEnum SendingSystem(UTF16String& text) const;
    /// The number of the part.
    virtual IsValueSpecifiedEnum PartNumber(UTF16String& text) const;
    /// The revision of the design.
    virtual IsValueSpecifiedEnum Revision(UTF16String& text) const;
    /// The program that wrote the exchange file which the design came from.
    virtual IsValueSpecifiedEnum Preprocessor(UTF16String& text) const;
    /// When the design was made; not specified either for a text that is no time.
    virtual IsValueSpecifiedEnum CreationDate(Time& time) const;
    /// Who released the design.
    virtual IsValueSpecifiedEnum Authorisation(UTF16String& text) const;
    /// The unit of masses. Kept: a text that is no unit answers "specified" and leaves the output alone.
    virtual IsValueSpecifiedEnum MassUnit(UnitTypeEnum& unit) const;
    /// The unit of times, with the same answer for a text that is no unit.
    virtual IsValueSpecifiedEnum TimeUnit(UnitTypeEnum& unit) const;
    /// The number of properties that the file's author named; 0 here.
    virtual unsigned long long CustomPropertyCount() const;
    /// A copy of such a property, in document order; not specified for an index at or beyond the count.
    virtual IsValueSpecifiedEnum CustomPropertyAt(unsigned long long index, CustomProperty& property) const;
    /// Which way is up and which way is front. Specified when the scene gives one of the two; the other is left as it
    /// was.
    virtual IsValueSpecifiedEnum ViewDataOf(ViewData& viewData) const;
};

/// What a producer says about a scene file before any object of it exists.
class KVR_API FileQueryResult
{
public:
    FileQueryResult();
    virtual ~FileQueryResult();

    /// Whether the producer reads files of this kind: true, and specified, of every file that QueryFile is asked about,
    /// one that cannot be parsed included; not specified here.
    virtual IsValueSpecifiedEnum SupportsFile(bool& supports) const;
    /// Whether the scene is more than one lone part; false for a file that cannot be parsed. Not specified here.
    virtual IsValueSpecifiedEnum HasAssemblyStructure(bool& has) const;
    /// The version of the file's format. Not specified here, and no producer of this framework says otherwise.
    virtual IsValueSpecifiedEnum FileVersion(UTF16String& version) const;
    /// Whether the file is newer than the producer, and its version. Not specified here, and no producer of this
    /// framework says otherwise.
    virtual IsValueSpecifiedEnum FutureFileVersion(bool& isFuture, UTF16String& version) const;
};

}  // namespace KVR
