// A scene document of any content through a whole producer: query, read, ask every object, end.

#include <cstdlib>
#include <deque>
#include <set>
#include <string>

#include "framework/api/kvr_api.h"
#include "fuzz/InputFile.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace
{

using namespace KVR;

// Asks what an object answers, and collects the ids that it names.
class Walk : public ObjectVisitor
{
public:
    void Visit(IFile* file) override
    {
        for (unsigned long long i = 0; i < file->ChildCount(); ++i)
            Reach(file->ChildAt(i).Id());
        Reach(file->StyleSet());
        Reach(file->TextureSet());
        UTF8String id;
        UTF16String path;
        for (unsigned long long i = 0; i <= file->RefFileCount(); ++i)
            file->RefFileAt(i, id, path);
        Ask(file->FileProperties());
    }

    void Visit(IAssembly* assembly) override
    {
        for (unsigned long long i = 0; i < assembly->ChildCount(); ++i)
            Reach(assembly->ChildAt(i).Id());
        IdSet overridePath;
        IdSet styles;
        bool visible = false;
        Matrix3d transform;
        for (unsigned long long i = 0; i < assembly->CrossLevelVisibilityCount(); ++i)
            assembly->CrossLevelVisibilityAt(i, overridePath, visible);
        for (unsigned long long i = 0; i < assembly->CrossLevelStyleCount(); ++i)
            assembly->CrossLevelStyleAt(i, overridePath, styles);
        for (unsigned long long i = 0; i < assembly->CrossLevelTransformCount(); ++i)
            assembly->CrossLevelTransformAt(i, overridePath, transform);
        Ask(assembly->FileProperties());
    }

    void Visit(IPart* part) override
    {
        for (unsigned long long i = 0; i < part->ChildCount(); ++i)
            Reach(part->ChildAt(i).Id());
        Ask(part->FileProperties());
    }

    void Visit(IRenderStyle* style) override
    {
        Color color;
        UTF8String text;
        double number = 0.0;
        IRenderStyle::ShadingModelType model = IRenderStyle::kShadingModel_Default;
        style->DiffuseColor(color);
        style->Transparency(color);
        style->Transparency(number);
        style->BumpMap(text);
        style->ShaderType(model);
        UTF16String wide;
        if (auto const* const vitreol = dynamic_cast<IVitreolRenderStyle const*>(style))
            vitreol->VitreolLibraryId(wide);
    }

    void Visit(IMaterialTexture* texture) override
    {
        int integer = 0;
        double x = 0.0;
        double y = 0.0;
        texture->TextureType(integer);
        texture->TextureDimensions(integer, integer);
        texture->TextureScale(x, y);
    }

    void Visit(IInstance* instance) override
    {
        Reach(instance->TargetId().Id());
        if (!instance->Transform())
            std::abort();
    }

    void Visit(IPoint* point) override { static_cast<void>(point->X() + point->Y() + point->Z()); }

    void Visit(IPointCloud* cloud) override
    {
        double x = 0.0;
        for (std::size_t i = 0; i <= cloud->PointCount(); ++i)
            cloud->Point(i, &x, &x, &x);
    }

    void Visit(IWorkPlane* plane) override
    {
        double x = 0.0;
        plane->Reference(x, x, x);
        plane->DisplayRange(x, x, x, x, x, x);
    }

    void Visit(ISketch* sketch) override
    {
        for (unsigned long long i = 0; i < sketch->PointIds().Size(); ++i)
            Reach(sketch->PointIds().At(i));
        for (unsigned long long i = 0; i < sketch->CurveIds().Size(); ++i)
            Reach(sketch->CurveIds().At(i));
    }

    void Visit(IGeometricSet* set) override { ReachChildren(*set); }
    void Visit(IExtensionGeometry* geometry) override { ReachChildren(*geometry); }
    void Visit(IAnnotationCalloutElement* element) override { ReachChildren(*element); }

    void Visit(IAnnotationCallout* callout) override
    {
        ReachChildren(*callout);
        UTF8String plane;
        if (callout->AnnotationPlaneId(plane) == kIsValueSpecified_Yes)
            Reach(plane);
        IText const* const text = callout->Text();
        for (unsigned long long i = 0; text && i < text->LineCount(); ++i)
            Ask(*text->LineAt(i));
    }

    void Reach(UTF8String const& id)
    {
        if (m_met.insert(id).second)
            m_queue.push_back(id);
    }

    void Reach(IdSet const& ids)
    {
        for (unsigned long long i = 0; i < ids.Size(); ++i)
            Reach(ids[i]);
    }

    void Run(XMLProducer& producer)
    {
        for (; !m_queue.empty(); m_queue.pop_front())
        {
            IObject* const object = producer.Load(m_queue.front());
            if (!object)
                continue;
            if (object->Id().Compare(m_queue.front().Value()) != 0)
                std::abort();
            UTF8String text;
            static_cast<void>(object->Label());
            static_cast<void>(object->PropertyIds());
            object->ChangeKey(kSnapshotVersion_Current, text);
            object->VersionPersistentId(text);
            ExtensionDataContent content;
            object->ExtensionDataByTypeId("t", content);
            object->AcceptVisitor(this);
        }
    }

private:
    template <class Owner>
    void ReachChildren(Owner const& owner)
    {
        for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
            Reach(owner.ChildAt(i).Id());
    }

    static void Ask(ITextLine const& line)
    {
        Color color;
        bool bold = false;
        for (unsigned long long i = 0; i < line.FragmentCount(); ++i)
        {
            static_cast<void>(line.FragmentAt(i)->Value());
            line.FragmentAt(i)->TextColor(color);
            line.FragmentAt(i)->IsBold(bold);
        }
    }

    static void Ask(FileProperties const* properties)
    {
        if (!properties)
            return;
        UTF16String text;
        Time time;
        UnitTypeEnum unit = kUnitType_Unknown;
        ViewData viewData;
        CustomProperty property;
        properties->Title(text);
        properties->CreationDate(time);
        properties->MassUnit(unit);
        properties->ViewDataOf(viewData);
        for (unsigned long long i = 0; i <= properties->CustomPropertyCount(); ++i)
            properties->CustomPropertyAt(i, property);
    }

    std::set<UTF8String> m_met;
    std::deque<UTF8String> m_queue;
};

void AskUniverse(IUniverse const* universe)
{
    if (!universe)
        return;
    Color color;
    ViewingData viewingData;
    UTF8String key;
    Variant value;
    universe->DefaultCurveColor(color);
    universe->DefaultSurfaceColor(color);
    universe->ViewingDataOf(viewingData);
    for (unsigned long long i = 0; i < universe->CustomDataCount(); ++i)
        universe->CustomDataAt(i, key, value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    // Document types are Xerces-C's own affair and would let an input read files and expand without end.
    static bool const noDocumentTypes = ::setenv("XERCES_DISABLE_DTD", "1", 1) == 0;
    static Fuzz::InputFile const file("scene.xml");
    if (!noDocumentTypes)
        std::abort();
    file.Write(data, size);
    XMLProducerOptions options;
    XMLProducer producer(file.Path(), &options);
    if (size % 2 == 0)
        producer.SetNewObjectIdPrefix("n");
    if (size % 3 == 0)
        producer.QueryFile();
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        AskUniverse(producer.LoadUniverse());
        Walk walk;
        walk.Reach(producer.RootObjectId().Id());
        walk.Run(producer);
    }
    catch (Exception const&)
    {
        // A scene that is refused, or has no root.
    }
    producer.EndProcess();
    return 0;
}
