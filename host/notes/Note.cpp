#include "host/notes/Note.h"

#include "describe/Ask.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IProducer.h"
#include "framework/api/IText.h"
#include "framework/api/IWorkFeature.h"

namespace KVR
{

namespace
{

bool IsMarked(ITextFragment const& fragment, IsValueSpecifiedEnum (ITextFragment::*getter)(bool&) const)
{
    bool marked = false;
    return Ask([&] { return (fragment.*getter)(marked); }) == kIsValueSpecified_Yes && marked;
}

Note::Line LineOf(ITextLine const& line)
{
    Note::Line fragments;
    auto const count = Ask([&] { return line.FragmentCount(); }).value_or(0);
    for (unsigned long long i = 0; i < count; ++i)
    {
        ITextFragment const* const fragment = Ask([&] { return line.FragmentAt(i); }).value_or(nullptr);
        if (!fragment)
            continue;
        UTF8String const value(Ask([&] { return fragment->Value(); }).value_or(UTF16String()));
        fragments.push_back({std::string(value.View()), IsMarked(*fragment, &ITextFragment::IsBold),
                             IsMarked(*fragment, &ITextFragment::IsItalic)});
    }
    return fragments;
}

std::vector<Note::Line> LinesOf(IText const& text)
{
    std::vector<Note::Line> lines;
    auto const count = Ask([&] { return text.LineCount(); }).value_or(0);
    for (unsigned long long i = 0; i < count; ++i)
    {
        if (ITextLine const* const line = Ask([&] { return text.LineAt(i); }).value_or(nullptr))
            lines.push_back(LineOf(*line));
    }
    return lines;
}

template <class Owner>
std::vector<ProductNode> ChildrenOf(IProducer& producer, Owner const& owner)
{
    std::vector<ProductNode> children;
    auto const count = Ask([&] { return owner.ChildCount(); }).value_or(0);
    for (unsigned long long i = 0; i < count; ++i)
    {
        auto const id = Ask([&] { return owner.ChildAt(i).Id(); });
        children.push_back(ProductNode::Of(producer, id.value_or(UTF8String())));
    }
    return children;
}

Note::Plane PlaneOf(IProducer& producer, UTF8String const& id)
{
    Note::Plane plane{ProductNode::Of(producer, id), {}, {}, {}};
    auto const* const workPlane = dynamic_cast<IWorkPlane const*>(producer.Load(id));
    if (!workPlane)
        return plane;
    auto const ask = [&](auto getter, std::optional<Note::Triple>& answer)
    {
        Note::Triple triple{};
        (workPlane->*getter)(triple[0], triple[1], triple[2]);
        answer = triple;
    };
    ask(&IWorkPlane::Origin, plane.origin);
    ask(&IWorkPlane::Normal, plane.normal);
    Note::Triple reference{};
    if (workPlane->Reference(reference[0], reference[1], reference[2]) == kIsValueSpecified_Yes)
        plane.reference = reference;
    return plane;
}

}  // namespace

Note Note::Of(IProducer& producer, IAnnotationCallout const& callout)
{
    Note note;
    note.id = callout.Id();
    note.label = callout.Label();
    note.isVisible = callout.IsVisible();
    if (IText const* const text = Ask([&] { return callout.Text(); }).value_or(nullptr))
        note.text = LinesOf(*text);
    UTF8String planeId;
    if (Ask([&] { return callout.AnnotationPlaneId(planeId); }) == kIsValueSpecified_Yes)
        note.plane = PlaneOf(producer, planeId);
    for (ProductNode& child : ChildrenOf(producer, callout))
    {
        Target target{std::move(child), {}};
        IObject* const object = producer.Load(target.object.id);
        if (auto const* const element = dynamic_cast<IAnnotationCalloutElement const*>(object))
            target.parts = ChildrenOf(producer, *element);
        note.targets.push_back(std::move(target));
    }
    return note;
}

std::string Joined(Note::Line const& line)
{
    std::string text;
    for (Note::Fragment const& fragment : line)
        text += fragment.text;
    return text;
}

}  // namespace KVR
