#include "producer/PropertyAttachment.h"

#include <variant>

#include "framework/api/ObjectVisitor.h"
#include "framework/xml_util/PropertyStream.h"
#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/XMLBrep.h"
#include "geometry/XMLGeometricSet.h"
#include "mesh/XMLPolygonMesh.h"
#include "producer/ClassicLocaleScope.h"
#include "producer/XMLProducerImpl.h"
#include "readers/HeldProperties.h"
#include "structure/XMLInstance.h"

namespace KVR
{

namespace
{

// Finds an object that holds properties. Kept: meshes, instances, sets and bodies alone do.
class HolderFinder final : public ObjectVisitor
{
public:
    using Holder = std::variant<std::monostate, XMLPolygonMesh*, XMLInstance*, XMLGeometricSet*, XMLBrep*>;

    using ObjectVisitor::Visit;
    void Visit(IPolygonMesh* object) override { Take<XMLPolygonMesh>(object); }
    void Visit(IInstance* object) override { Take<XMLInstance>(object); }
    void Visit(IGeometricSet* object) override { Take<XMLGeometricSet>(object); }
    void Visit(IBrep* object) override { Take<XMLBrep>(object); }

    // Nothing for an object of any other class.
    Holder const& Found() const noexcept { return m_found; }

private:
    template <class Class, class Interface>
    void Take(Interface* object)
    {
        if (auto* const holder = dynamic_cast<Class*>(object))
            m_found = holder;
    }

    Holder m_found;
};

// Hands a property to what holds it.
class Handover
{
public:
    Handover(IProperty const* property, XMLProducerImpl const& producer) : m_property(property), m_producer(producer) {}

    void operator()(std::monostate) const {}
    template <class Class>
    void operator()(Class* holder) const
    {
        holder->AppendProperty(m_property);
    }
    // A body does not know the producer.
    void operator()(XMLBrep* brep) const
    {
        brep->AppendProperty(m_property);
        AddPropertyToDatabase(m_property, &m_producer);
    }

private:
    IProperty const* m_property;
    XMLProducerImpl const& m_producer;
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
        TellObserver(&ReadObserver::PropertyHanded, m_isFound, !std::holds_alternative<std::monostate>(m_holder));
        std::visit(Handover(property, m_producer), m_holder);
    }

private:
    void Search(UTF8String const& objectId)
    {
        HolderFinder finder;
        IObject* const object = m_producer.Load(objectId);
        if (object)
            object->AcceptVisitor(&finder);
        m_isFound = object != nullptr;
        m_holder = finder.Found();
        m_objectId = objectId;
        m_isSearched = true;
    }

    XMLProducerImpl const& m_producer;
    // What was found for the object asked for last: the properties of an object mostly stand together.
    UTF8String m_objectId;
    HolderFinder::Holder m_holder;
    bool m_isSearched = false;
    bool m_isFound = false;
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

}  // namespace KVR
