#include "describe/Tables.h"

#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

template <class T>
DescribedObject As(T const& object)
{
    return {&TableOf<T>::kTable, &object};
}

// Whether the visitor has a visit for objects of this very interface.
template <class T>
concept Visited = requires(void (ObjectVisitor::*visit)(T*))
{
    visit = &ObjectVisitor::Visit;
};

// A visit for each interface of the list that has one.
template <class List>
class FinderOf;

template <>
class FinderOf<InterfaceList<>> : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;

    DescribedObject found;
};

template <class First, class... Others>
class FinderOf<InterfaceList<First, Others...>> : public FinderOf<InterfaceList<Others...>>
{
};

template <Visited First, class... Others>
class FinderOf<InterfaceList<First, Others...>> : public FinderOf<InterfaceList<Others...>>
{
public:
    using FinderOf<InterfaceList<Others...>>::Visit;
    void Visit(First* object) override { this->found = As(*object); }
};

// A section camera is visited as a camera, and a style of the material library as a style.
class Finder final : public FinderOf<ObjectInterfaces>
{
public:
    using FinderOf<ObjectInterfaces>::Visit;
    void Visit(ICamera* object) override { TakeAs<ISectionCamera>(*object); }
    void Visit(IRenderStyle* object) override { TakeAs<IVitreolRenderStyle>(*object); }

private:
    template <class Special, class General>
    void TakeAs(General const& object)
    {
        auto const* const special = dynamic_cast<Special const*>(&object);
        found = special ? As(*special) : As(object);
    }
};

class DataFinder final : public CurveDataVisitor
{
public:
    using CurveDataVisitor::Visit;

    void Visit(ICompositeCurveData* data) override { m_found = As(*data); }
    void Visit(INurbsCurveData* data) override { m_found = As(*data); }
    void Visit(IEllipseData* data) override { m_found = As(*data); }
    void Visit(IPolyLineData* data) override { m_found = As(*data); }
    void Visit(IRayData* data) override { m_found = As(*data); }
    void Visit(IStraightData* data) override { m_found = As(*data); }

    DescribedObject Found() const { return m_found; }

private:
    DescribedObject m_found;
};

}  // namespace

DescribedObject DescribedObject::Of(IObject& object)
{
    Finder finder;
    object.AcceptVisitor(&finder);
    return finder.found;
}

DescribedObject DescribedObject::Of(ICurveData& data)
{
    DataFinder finder;
    data.AcceptVisitor(&finder);
    return finder.Found();
}

}  // namespace KVR
