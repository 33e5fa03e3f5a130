#include "structure/XMLFile.h"

#include <utility>

#include "framework/api/Exception.h"
#include "framework/api/ObjectCollector.h"
#include "framework/api/Subscript.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/ObjectNodeIndex.h"
#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"
#include "readers/UnitReader.h"
#include "structure/ObjectSetsReader.h"

namespace KVR
{

XMLFile::XMLFile(UTF16String const&, XMLProducerImpl* producer)
    : AttributeSetsState(UTF8String(), UTF16String()), m_producer(producer)
{
}

XMLFile::~XMLFile() = default;

FileChildId XMLFile::ChildAt(unsigned long long index) const
{
    // Kept: the count itself passes this test, unlike an assembly's, and meets the one of the list.
    if (index > m_childIds.size())
        throw GeneralException("Invalid index to child of XMLFile.");
    return FileChildId::Create(m_producer->Load(CheckedAt(m_childIds, index)));
}

IsValueSpecifiedEnum XMLFile::FileFullPath(UTF16String& path) const
{
    if (m_fileFullPath.IsEmpty())
        return kIsValueSpecified_No;
    path = m_fileFullPath;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFile::LastModificationTime(Time& time) const
{
    if (!m_hasLastModificationTime)
        return kIsValueSpecified_No;
    time = m_lastModificationTime;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFile::RefFileAt(unsigned long long index, UTF8String& id, UTF16String& path) const
{
    if (index >= m_refFiles.size())
        return kIsValueSpecified_No;
    id = m_refFiles[index].id;
    path = m_refFiles[index].path;
    return kIsValueSpecified_Yes;
}

void XMLFile::ReadAttributes(xercesc::DOMNode const* node)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    m_producer->ApplyIdMapping(m_id);
    XMLUtils::GetNodeAttribute(node, Names::FileFullPath, m_fileFullPath);
    XMLCh const* const time = AttributeOrEmpty(node, Names::LastModificationTime);
    m_hasLastModificationTime =
        ToldText(time, TextForm::kTime, Time::FromString(XMLStrUtil::XMLStrToAStr(time), m_lastModificationTime));
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    XMLUtils::GetNodeAttribute(node, Names::IsRoot, m_isRoot);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
}

bool XMLFile::ReadFromXML(xercesc::DOMNode* node)
{
    if (!IsElement(node))
        return false;
    ReadAttributes(node);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,                                                                      //
              On(Names::ChildSet, [&] { ReadChildSet(child); }),                          //
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),  //
              On(Names::Unit, [&] { ReadDisplayLengthUnit(child); }),                     //
              On(Names::AttributeSet,
                 [&] {
                     Ignored(ReadObjectSetsWithViews(m_producer, child, m_attributeSets,
                                                     m_producer->sideFileIndex->vitreolAssets));
                 }),
              On(Names::FileProperties, [&] { m_fileProperties.Read(child); }),   //
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),  //
              On(Names::RefFiles, [&] { ReadRefFiles(child); }));
    }
    return true;
}

// Kept: of the three units only the one for showing lengths reaches a file.
void XMLFile::ReadDisplayLengthUnit(xercesc::DOMNode const* node)
{
    UnitTypeEnum length = kUnitType_Unknown;
    UnitTypeEnum displayAngle = kUnitType_Unknown;
    UnitTypeEnum displayLength = kUnitType_Unknown;
    Ignored(ReadUnit(node, length, displayAngle, displayLength));
    SetDisplayLengthUnit(displayLength);
}

// An id without an element stays listed; one whose element gave no object does not.
void XMLFile::ReadChildSet(xercesc::DOMNode const* node)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        UTF8String const writtenId = XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(child, Names::ID));
        UTF8String id = writtenId;
        m_producer->ApplyIdMapping(id);
        bool const isListed =
            m_producer->objectCollector->HasObject(id) || m_producer->objectNodeIndex->ReadNodeById(writtenId);
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            observer->ReferenceMet(child, writtenId, m_producer->objectCollector->HasObject(id));
        if (isListed)
            m_childIds.push_back(std::move(id));
    }
}

void XMLFile::ReadRefFiles(xercesc::DOMNode const* node)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        RefFile refFile;
        if (XMLUtils::GetNodeAttribute(child, Names::RefId, refFile.id) &&
            XMLUtils::GetNodeAttribute(child, Names::RefPath, refFile.path))
            m_refFiles.push_back(std::move(refFile));
    }
}

}  // namespace KVR
