#include "host/dump/FilePropertiesDump.h"

#include "framework/api/CustomProperty.h"
#include "framework/api/FileProperties.h"
#include "framework/api/Time.h"
#include "framework/api/UTF16String.h"
#include "framework/api/ViewingData.h"
#include "host/dump/DumpContext.h"
#include "host/dump/Members.h"

namespace KVR
{

namespace
{

void DumpCustomProperty(DumpContext const& context, FileProperties const& properties, unsigned long long index)
{
    CustomProperty property;
    if (Members<FileProperties>::Asked([&] { return properties.CustomPropertyAt(index, property); }))
        WriteValue(context.json, property);
    else
        context.json.Null();
}

}  // namespace

void DumpFileProperties(DumpContext const& context, FileProperties const& properties)
{
    context.json.BeginObject();
    Members(context.json, properties)
        .Optional("Title", &FileProperties::Title)
        .Optional("Author", &FileProperties::Author)
        .Optional("Organization", &FileProperties::Organization)
        .Optional("Description", &FileProperties::Description)
        .Optional("SendingSystem", &FileProperties::SendingSystem)
        .Optional("PartNumber", &FileProperties::PartNumber)
        .Optional("Revision", &FileProperties::Revision)
        .Optional("Preprocessor", &FileProperties::Preprocessor)
        .Optional("CreationDate", &FileProperties::CreationDate)
        .Optional("Authorisation", &FileProperties::Authorisation)
        .Optional("MassUnit", &FileProperties::MassUnit)
        .Optional("TimeUnit", &FileProperties::TimeUnit)
        .List("CustomProperties", &FileProperties::CustomPropertyCount,
              [&](unsigned long long i) { DumpCustomProperty(context, properties, i); })
        .Optional("ViewDataOf", &FileProperties::ViewDataOf);
    context.json.EndObject();
}

}  // namespace KVR
