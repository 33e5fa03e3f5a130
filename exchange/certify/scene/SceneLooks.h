#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "framework/api/kvr_api.h"

namespace KVR::Certification
{

/// How things look where they stand in a scene: what assemblies say of what is below them, instances and components.
class SceneLooks
{
public:
    explicit SceneLooks(IProducer& producer) : m_producer(producer) {}

    /// "#rrggbbaa" of the first style of a list that has a colour; nothing when none has.
    std::optional<std::string> ColorOf(IdSet const& styles);
    std::optional<std::string> ColorOf(UTF8String const& style);

    /// What is said of an occurrence.
    struct State
    {
        struct Said
        {
            /// The rest of the path, from here on.
            std::vector<std::string> path;
            std::optional<bool> isVisible;
            std::optional<IdSet> styles;
            std::optional<Matrix3d> transform;
        };
        /// The outermost assembly's first.
        std::vector<Said> said;
        bool isVisible = true;
        std::optional<IdSet> imposed;
        IdSet inherited;

        /// What is said of an object that is one step away; the outermost that says it counts.
        template <class Value>
        std::optional<Value> Of(std::string const& id, std::optional<Value> Said::*member) const
        {
            for (Said const& entry : said)
                if (entry.path.size() == 1 && entry.path.front() == id && entry.*member)
                    return entry.*member;
            return {};
        }
    };
    /// With what the component says of itself and of what is below it.
    static void Enter(State& state, IComponent const& component);
    /// That of what the instance places, before it is entered.
    static State Below(State const& state, IInstance const& instance, std::string const& target);

private:
    IProducer& m_producer;
    std::map<std::string, std::optional<std::string>> m_colors;
};

}  // namespace KVR::Certification
