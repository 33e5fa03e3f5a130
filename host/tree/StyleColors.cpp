#include "host/tree/StyleColors.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

// Collects the ids of the styles that an object names.
class Collector final : public ObjectVisitor
{
public:
    explicit Collector(IProducer& producer) : m_producer(producer) {}

    // Geometry of every kind answers in one way, and what some kinds have besides is told by a visit.
    void Collect(IObject& object)
    {
        if (auto const* const geometry = dynamic_cast<IGeometry const*>(&object))
            Add(geometry->Styles());
        object.AcceptVisitor(this);
    }

    using ObjectVisitor::Visit;
    void Visit(IAssembly* object) override { Add(object->Styles()); }
    void Visit(IPart* object) override { Add(object->Styles()); }
    void Visit(IInstance* object) override
    {
        Add(object->Styles());
        // An instance places no instance, so that this ends.
        IObject* const target = m_producer.Load(object->TargetId().Id());
        if (target && !dynamic_cast<IInstance*>(target))
            Collect(*target);
    }
    void Visit(IPolygonMesh* object) override
    {
        IdSetSet materials;
        if (object->PolygonMaterials(materials) != kIsValueSpecified_Yes)
            return;
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            Add(materials.At(i));
    }
    void Visit(IBrep* object) override
    {
        SubEntityToStylesMap const* const map = object->StylesMap();
        for (unsigned long long i = 0; map && i < map->Size(); ++i)
            Add(map->StylesAt(i));
    }

    IdSet const& Ids() const noexcept { return m_ids; }

private:
    void Add(IdSet const& ids)
    {
        for (unsigned long long i = 0; i < ids.Size(); ++i)
            m_ids.AddWithUniquenessCheck(ids.At(i));
    }

    IProducer& m_producer;
    IdSet m_ids;
};

int ByteOf(double fraction)
{
    return static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * 255.0));
}

}  // namespace

std::vector<StyleColor> StylesOf(IProducer& producer, IObject& object)
{
    std::vector<StyleColor> styles;
    Collector collector(producer);
    collector.Collect(object);
    for (unsigned long long i = 0; i < collector.Ids().Size(); ++i)
    {
        StyleColor style;
        style.id = collector.Ids().At(i);
        if (auto const* const found = dynamic_cast<IRenderStyle const*>(producer.Load(style.id)))
        {
            style.isThere = true;
            style.label = found->Label();
            Color color;
            if (found->DiffuseColor(color) == kIsValueSpecified_Yes)
                style.diffuse = color;
        }
        styles.push_back(std::move(style));
    }
    return styles;
}

Rgb RgbOf(Color const& color)
{
    return {ByteOf(color.Red()), ByteOf(color.Green()), ByteOf(color.Blue())};
}

std::string HexText(Color const& color)
{
    Rgb const rgb = RgbOf(color);
    return fmt::format("#{:02x}{:02x}{:02x}", rgb.red, rgb.green, rgb.blue);
}

}  // namespace KVR
