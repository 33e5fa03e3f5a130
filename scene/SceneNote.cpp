#include "scene/SceneNote.h"

#include <algorithm>

#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IProducer.h"
#include "framework/api/IText.h"
#include "framework/api/IWorkFeature.h"
#include "scene/ExtensionTypes.h"
#include "scene/geometry/Answers.h"

namespace KVR
{

namespace
{

bool IsMarked(ITextFragment const& fragment, IsValueSpecifiedEnum (ITextFragment::*getter)(bool&) const)
{
    bool marked = false;
    return AnswerOr([&] { return (fragment.*getter)(marked); }) == kIsValueSpecified_Yes && marked;
}

SceneNote::Line LineOf(ITextLine const& line)
{
    SceneNote::Line fragments;
    auto const count = AnswerOr([&] { return line.FragmentCount(); });
    for (unsigned long long i = 0; i < count; ++i)
    {
        ITextFragment const* const fragment = AnswerOr([&] { return line.FragmentAt(i); });
        if (!fragment)
            continue;
        UTF8String const value(AnswerOr([&] { return fragment->Value(); }));
        fragments.push_back({std::string(value.View()), IsMarked(*fragment, &ITextFragment::IsBold),
                             IsMarked(*fragment, &ITextFragment::IsItalic)});
    }
    return fragments;
}

std::vector<SceneNote::Line> LinesOf(IText const& text)
{
    std::vector<SceneNote::Line> lines;
    auto const count = AnswerOr([&] { return text.LineCount(); });
    for (unsigned long long i = 0; i < count; ++i)
    {
        if (ITextLine const* const line = AnswerOr([&] { return text.LineAt(i); }))
            lines.push_back(LineOf(*line));
    }
    return lines;
}

template <class Owner>
std::vector<SceneObjectRef> ChildrenOf(IProducer& producer, Owner const& owner)
{
    std::vector<SceneObjectRef> children;
    auto const count = AnswerOr([&] { return owner.ChildCount(); });
    for (unsigned long long i = 0; i < count; ++i)
        children.push_back(SceneObjectRef::Of(producer, AnswerOr([&] { return UTF8String(owner.ChildAt(i).Id()); })));
    return children;
}

SceneNote::Plane PlaneOf(IProducer& producer, UTF8String const& id)
{
    SceneNote::Plane plane{SceneObjectRef::Of(producer, id), {}, {}, {}};
    auto const* const workPlane = dynamic_cast<IWorkPlane const*>(producer.Load(id));
    if (!workPlane)
        return plane;
    auto const ask = [&](auto getter, std::optional<SceneNote::Triple>& answer)
    {
        SceneNote::Triple triple{};
        (workPlane->*getter)(triple[0], triple[1], triple[2]);
        answer = triple;
    };
    ask(&IWorkPlane::Origin, plane.origin);
    ask(&IWorkPlane::Normal, plane.normal);
    SceneNote::Triple reference{};
    if (workPlane->Reference(reference[0], reference[1], reference[2]) == kIsValueSpecified_Yes)
        plane.reference = reference;
    return plane;
}

std::string ExtensionOf(IAnnotationCallout const& callout, char const* typeId)
{
    ExtensionDataContent content;
    if (AnswerOr([&] { return callout.ExtensionDataByTypeId(typeId, content); }) != kIsValueSpecified_Yes)
        return {};
    return std::string(content.Data().View());
}

}  // namespace

std::string SceneNote::KindOf(IAnnotationCallout const& callout)
{
    std::string kind = ExtensionOf(callout, kAnnotationKindTypeId);
    return kind == "dimension" || kind == "tolerance" || kind == "datum" ? kind : std::string();
}

std::vector<std::string> SceneNote::ReferencesOf(IAnnotationCallout const& callout)
{
    std::vector<std::string> ids;
    std::string const text = ExtensionOf(callout, kAnnotationReferencesTypeId);
    for (std::size_t begin = 0; begin < text.size();)
    {
        std::size_t const end = std::min(text.find(',', begin), text.size());
        if (end > begin)
            ids.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return ids;
}

std::string SceneNote::DetailsOf(IAnnotationCallout const& callout)
{
    return ExtensionOf(callout, kAnnotationDetailsTypeId);
}

SceneNote SceneNote::Of(IProducer& producer, IAnnotationCallout const& callout)
{
    SceneNote note;
    note.id = callout.Id();
    note.label = callout.Label();
    note.isVisible = callout.IsVisible();
    if (IText const* const text = AnswerOr([&] { return callout.Text(); }))
        note.text = LinesOf(*text);
    UTF8String planeId;
    if (AnswerOr([&] { return callout.AnnotationPlaneId(planeId); }) == kIsValueSpecified_Yes)
        note.plane = PlaneOf(producer, planeId);
    for (SceneObjectRef& child : ChildrenOf(producer, callout))
    {
        Target target{std::move(child), {}};
        IObject* const object = producer.Load(target.object.id);
        if (auto const* const element = dynamic_cast<IAnnotationCalloutElement const*>(object))
            target.parts = ChildrenOf(producer, *element);
        note.targets.push_back(std::move(target));
    }
    note.kind = KindOf(callout);
    note.references = ReferencesOf(callout);
    note.details = DetailsOf(callout);
    return note;
}

std::string SceneNote::Joined(Line const& line)
{
    std::string text;
    for (Fragment const& fragment : line)
        text += fragment.text;
    return text;
}

}  // namespace KVR
