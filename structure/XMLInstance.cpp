#include "structure/XMLInstance.h"

#include <memory>
#include <utility>

#include "framework/api/IAssembly.h"
#include "framework/api/IFile.h"
#include "framework/api/IPart.h"
#include "framework/api/ObjectCollector.h"
#include "framework/api/ObjectVisitor.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/ElementReaders.h"
#include "producer/ObjectNodeIndex.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/HeldProperties.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"
#include "readers/UnitReader.h"

namespace KVR
{

XMLInstance::XMLInstance(UTF8String id, UTF8String label, Matrix3d const& transform, ChangeKeyText changeKey,
                         IComponent const* target, XMLProducerImpl* producer)
    : UnitState(std::move(id), std::move(label)), m_targetId(target), m_transform(transform), m_producer(producer)
{
    m_changeKey = std::move(changeKey);
}

XMLInstance::XMLInstance(UTF8String id, UTF8String label, Matrix3d const& transform, ChangeKeyText changeKey,
                         IFile const* target, XMLProducerImpl* producer)
    : UnitState(std::move(id), std::move(label)), m_targetId(target), m_transform(transform), m_producer(producer)
{
    m_changeKey = std::move(changeKey);
}

XMLInstance::~XMLInstance() = default;

void XMLInstance::AppendProperty(IProperty const* property)
{
    AddPropertyId(property, m_propertyIds);
    AddPropertyToDatabase(property, m_producer);
}

namespace
{

using xercesc::DOMNode;

// What an "IInstance" element says, with the format's defaults. It lives on the heap: reading an instance reads its
// target, and what the target places, and so on, and the stack has to hold a thousand of these readings.
struct InstanceFields
{
    UTF8String id;
    UTF8String label;
    UTF8String versionPersistentId;
    bool visible = false;
    bool netVisible = false;
    UTF8String targetId;
    Matrix3d transform;
    ChangeKeyText changeKey;
    Units units;
    IdSet styles;
    IdSet netStyles;
    ExtensionDataContent extensionData;
};

void ReadAttributes(XMLProducerImpl& producer, DOMNode const* node, InstanceFields& fields)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, fields.id);
    producer.ApplyIdMapping(fields.id);
    XMLUtils::GetNodeAttribute(node, Names::Label, fields.label);
    fields.netVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHidden);
    fields.visible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHidden);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, fields.versionPersistentId);
}

// Takes the reference and the transform, and has the target read if that was not done yet. Of several the last counts;
// the targets of all are read. Kept: a later one whose transform is no transform leaves that of the one before.
void ReadTarget(XMLProducerImpl& producer, ObjectNodeIndex& objectNodeIndex, DOMNode const* node,
                InstanceFields& fields)
{
    TellObserver(&ReadObserver::LastCounts, node);
    UTF8String const writtenId = XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, Names::ID));
    fields.targetId = writtenId;
    producer.ApplyIdMapping(fields.targetId);
    XMLStrUtil::GetTransfFromStr(AttributeOrEmpty(node, Names::Transformation), fields.transform);
    if (!producer.objectCollector->HasObject(fields.targetId))
        Ignored(objectNodeIndex.ReadNodeById(writtenId));
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        observer->ReferenceMet(node, writtenId, producer.objectCollector->HasObject(fields.targetId));
}

void ReadChildren(XMLProducerImpl& producer, ObjectNodeIndex& objectNodeIndex, DOMNode const* node,
                  InstanceFields& fields)
{
    for (DOMNode* const child : Children(node))
    {
        Match(
            child,                                                                            //
            On(Names::Child, [&] { ReadTarget(producer, objectNodeIndex, child, fields); }),  //
            On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, fields.changeKey)); }),   //
            On(Names::Unit,
               [&] {
                   Ignored(ReadUnit(child, fields.units.length, fields.units.displayAngle, fields.units.displayLength));
               }),
            On(Names::Styles, [&] { Ignored(ReadStyleRefs(&producer, child, fields.styles)); }),        //
            On(Names::NetStyles, [&] { Ignored(ReadStyleRefs(&producer, child, fields.netStyles)); }),  //
            // Kept: one content, written over by each element, where other objects add each.
            On(Names::ExtensionData,
               [&]
               {
                   TellObserver(&ReadObserver::LastCounts, child);
                   Ignored(ReadExtensionData(child, fields.extensionData));
               }));
    }
}

// Makes the instance when its target is of a kind that can be placed. The target itself says what it is: to find out by
// casts, through families of classes as deep as these, takes longer than all the rest of dressing.
class Placement : public ObjectVisitor
{
public:
    Placement(XMLProducerImpl& producer, InstanceFields& fields) : m_producer(producer), m_fields(fields) {}

    using ObjectVisitor::Visit;
    void Visit(IAssembly* assembly) override { Place(static_cast<IComponent const*>(assembly)); }
    void Visit(IPart* part) override { Place(static_cast<IComponent const*>(part)); }
    void Visit(IFile* file) override { Place(static_cast<IFile const*>(file)); }

    std::unique_ptr<XMLInstance> TakeInstance() { return std::move(m_instance); }

private:
    template <class Target>
    void Place(Target const* target)
    {
        m_instance =
            std::make_unique<XMLInstance>(std::move(m_fields.id), std::move(m_fields.label), m_fields.transform,
                                          std::move(m_fields.changeKey), target, &m_producer);
    }

    XMLProducerImpl& m_producer;
    InstanceFields& m_fields;
    std::unique_ptr<XMLInstance> m_instance;
};

// The instance for the fields; null when there is no target, or none of a kind that can be placed.
std::unique_ptr<XMLInstance> Dress(XMLProducerImpl& producer, InstanceFields& fields)
{
    Placement placement(producer, fields);
    if (IObject* const target = producer.objectCollector->QueryObject(fields.targetId))
        target->AcceptVisitor(&placement);
    std::unique_ptr<XMLInstance> instance = placement.TakeInstance();
    if (!instance)
        return nullptr;
    instance->SetDisplayAngleUnit(fields.units.displayAngle);
    instance->SetLengthUnit(fields.units.length);
    instance->SetDisplayLengthUnit(fields.units.displayLength);
    instance->SetVisible(fields.visible);
    instance->SetNetVisible(fields.netVisible);
    instance->SetStyles(std::move(fields.styles));
    instance->SetNetStyles(std::move(fields.netStyles));
    instance->SetVersionPersistentId(fields.versionPersistentId);
    if (!fields.extensionData.TypeId().IsEmpty())
        instance->AddExtensionDataContent(fields.extensionData);
    return instance;
}

}  // namespace

XMLInstance* ReadInstance(DOMNode* node, ObjectNodeIndex& objectNodeIndex)
{
    XMLProducerImpl& producer = *objectNodeIndex.Producer();
    auto const fields = std::make_unique<InstanceFields>();
    ReadAttributes(producer, node, *fields);
    ReadChildren(producer, objectNodeIndex, node, *fields);
    std::unique_ptr<XMLInstance> instance = Dress(producer, *fields);
    if (!instance)
        TellObserver(
            &ReadObserver::ElementDropped, node,
            producer.objectCollector->HasObject(fields->targetId) ? DropReason::kTargetKind : DropReason::kNoTarget);
    return Register(producer, node, std::move(instance));
}

}  // namespace KVR
