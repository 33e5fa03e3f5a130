#include "exchange/certify/scene/SceneLooks.h"

#include "exchange/certify/ModelFacts.h"

namespace KVR::Certification
{

std::optional<std::string> SceneLooks::ColorOf(IdSet const& styles)
{
    // What a list says is said by its first.
    return styles.IsEmpty() ? std::nullopt : ColorOf(styles.At(0));
}

std::optional<std::string> SceneLooks::ColorOf(UTF8String const& id)
{
    auto const [entry, isNew] = m_colors.try_emplace(std::string(id.View()));
    if (!isNew)
        return entry->second;
    auto const* const style = dynamic_cast<IRenderStyle const*>(m_producer.Load(id));
    Color color;
    if (!style || style->DiffuseColor(color) != kIsValueSpecified_Yes)
        return {};
    double transparency = 0.0;
    double alpha = color.Alpha();
    if (alpha == 1.0 && style->Transparency(transparency) == kIsValueSpecified_Yes)
        alpha = 1.0 - transparency;
    entry->second = ColorText(color.Red(), color.Green(), color.Blue(), alpha);
    return entry->second;
}

void SceneLooks::Enter(State& state, IComponent const& component)
{
    if (IdSet const styles = component.Styles(); !styles.IsEmpty())
        state.inherited = styles;
    auto const* const assembly = dynamic_cast<IAssembly const*>(&component);
    if (!assembly)
        return;
    auto const add = [&](IdSet const& path) -> State::Said&
    {
        State::Said& entry = state.said.emplace_back();
        for (unsigned long long i = 0; i < path.Size(); ++i)
            entry.path.emplace_back(path.At(i).View());
        return entry;
    };
    IdSet path;
    for (unsigned long long i = 0; i < assembly->CrossLevelVisibilityCount(); ++i)
    {
        bool isVisible = true;
        assembly->CrossLevelVisibilityAt(i, path, isVisible);
        add(path).isVisible = isVisible;
    }
    for (unsigned long long i = 0; i < assembly->CrossLevelStyleCount(); ++i)
    {
        IdSet styles;
        assembly->CrossLevelStyleAt(i, path, styles);
        add(path).styles = styles;
    }
    for (unsigned long long i = 0; i < assembly->CrossLevelTransformCount(); ++i)
    {
        Matrix3d transform;
        assembly->CrossLevelTransformAt(i, path, transform);
        add(path).transform = transform;
    }
}

SceneLooks::State SceneLooks::Below(State const& state, IInstance const& instance, std::string const& target)
{
    std::string const id(instance.Id().View());
    State below;
    below.inherited = state.inherited;
    below.isVisible = state.isVisible && state.Of(id, &State::Said::isVisible).value_or(instance.IsVisible());
    below.imposed = state.imposed;
    if (!below.imposed)
        below.imposed = state.Of(id, &State::Said::styles);
    if (IdSet const own = instance.Styles(); !below.imposed && !own.IsEmpty())
        below.imposed = own;
    for (State::Said const& entry : state.said)
        if (entry.path.size() > 1 && entry.path.front() == id)
        {
            State::Said& rest = below.said.emplace_back(entry);
            rest.path.erase(rest.path.begin());
            // A path may name what an instance places as well.
            if (rest.path.size() > 1 && rest.path.front() == target)
                rest.path.erase(rest.path.begin());
        }
    return below;
}

}  // namespace KVR::Certification
