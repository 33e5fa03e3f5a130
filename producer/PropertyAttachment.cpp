#include "producer/PropertyAttachment.h"

#include "framework/api/IBrep.h"
#include "framework/api/IGeometricSet.h"
#include "framework/api/IInstance.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IProperty.h"
#include "framework/api/ObjectVisitor.h"
#include "framework/api/PropertyDatabase.h"
#include "framework/xml_util/PropertyStream.h"
#include "framework/xml_util/XMLObject.h"
#include "producer/ClassicLocaleScope.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

namespace
{

// Finds the state of an object that holds properties. Kept: meshes, instances, sets and bodies alone do.
class HolderFinder final : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;
    void Visit(IPolygonMesh* object) override { Take(object); }
    void Visit(IInstance* object) override { Take(object); }
    void Visit(IGeometricSet* object) override { Take(object); }
    void Visit(IBrep* object) override { Take(object); }

    // Null for an object of any other kind.
    XMLObject* Holder() const noexcept { return m_holder; }

private:
    template <class Interface>
    void Take(Interface* object)
    {
        m_holder = dynamic_cast<XMLObject*>(object);
    }

    XMLObject* m_holder = nullptr;
};

class Attachment final : public PropertyReceiver
{
public:
    explicit Attachment(XMLProducerImpl const& producer) : m_producer(producer) {}

    // Kept: the object is looked up by the id as the file has it, also when ids are mapped.
    void Receive(IProperty* property, UTF8String const& objectId) override
    {
        if (!property)
            return;
        if (!m_isSearched || !(objectId == m_objectId))
            Search(objectId);
        if (!m_holder)
            return;
        m_holder->AppendProperty(property);
        AddPropertyToDatabase(property, &m_producer);
    }

private:
    void Search(UTF8String const& objectId)
    {
        HolderFinder finder;
        if (IObject* const object = m_producer.Load(objectId))
            object->AcceptVisitor(&finder);
        m_holder = finder.Holder();
        m_objectId = objectId;
        m_isSearched = true;
    }

    XMLProducerImpl const& m_producer;
    // What was found for the object asked for last: the properties of an object mostly stand together.
    UTF8String m_objectId;
    XMLObject* m_holder = nullptr;
    bool m_isSearched = false;
};

}  // namespace

void AttachProperties(UTF16String const& sceneFilePath, XMLProducerImpl& producer)
{
    if (!producer.objectCollector)
        return;
    ClassicLocaleScope const classicLocale;
    Attachment attachment(producer);
    StreamProperties(sceneFilePath, attachment);
}

void AddPropertyToDatabase(IProperty const* property, XMLProducerImpl const* producer)
{
    if (!property || !producer)
        return;
    IUniverse const* const universe = producer->LoadUniverse();
    PropertyDatabase* const database = universe ? universe->PropertyDatabaseOf() : nullptr;
    if (database)
        database->AddProperty(property);
}

}  // namespace KVR
