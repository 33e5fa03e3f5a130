#pragma once

#include <deque>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/framework/api/Fakes.h"

// Scenes that no file of this system's could hold: instances of themselves, of nothing, and to any depth.
namespace KVR::Test
{

template <class Base, class ChildIdT>
class FakeList : public Base
{
public:
    FakeList(std::string const& id, std::vector<std::string> children)
        : Base(UTF8String(id)), m_children(std::move(children))
    {
    }

    unsigned long long ChildCount() const override { return m_children.size(); }
    ChildIdT ChildAt(unsigned long long index) const override
    {
        FakePart child{UTF8String(m_children.at(index))};
        return ChildIdT::Create(&child);
    }

private:
    std::vector<std::string> m_children;
};

using FakeListedAssembly = FakeList<FakeAssembly, AssemblyChildId>;
using FakeListedSet = FakeList<FakeGeometricSet, GeometricSetChildId>;

class FakePlacing : public FakeInstance
{
public:
    FakePlacing(std::string const& id, std::string const& target) : FakeInstance(UTF8String(id)), m_target(target) {}

    InstanceChildId TargetId() const override
    {
        FakePart const target{UTF8String(m_target)};
        return InstanceChildId(static_cast<IComponent const*>(&target));
    }
    Matrix3d const* Transform() const override { return &transform; }

    Matrix3d transform;

private:
    std::string m_target;
};

class FakePoint : public FakeGeometry<IPoint>
{
public:
    using FakeGeometry::FakeGeometry;

    double X() const override { return 0.0; }
    double Y() const override { return 0.0; }
    double Z() const override { return 0.0; }
    IsValueSpecifiedEnum PointColor(Color&) const override { return kIsValueSpecified_No; }
    UTF8String MarkerStyleId() const override { return {}; }
    IsValueSpecifiedEnum PointSize(double&) const override { return kIsValueSpecified_No; }
    void SetTransform(Matrix3d const&) override {}
};

/// Serves the objects that it was given.
class FakeScene : public IProducer
{
public:
    FileQueryResult const* QueryFile() override { return nullptr; }
    RootId RootObjectId() const override { return RootId(nullptr); }
    IUniverse const* LoadUniverse() override { return nullptr; }
    IObject* Load(UTF8String const& id) override
    {
        auto const found = objects.find(std::string(id.View()));
        return found == objects.end() ? nullptr : found->second;
    }
    void Dispose(UTF8String const&) override {}
    void BeginProcess(IdSet const&, FilterOptions const*, EventManager const*) override {}
    void EndProcess() override {}

    FakeScene& Assembly(std::string const& id, std::vector<std::string> children)
    {
        objects[id] = &m_assemblies.emplace_back(id, std::move(children));
        return *this;
    }
    FakeScene& Set(std::string const& id, std::vector<std::string> children)
    {
        objects[id] = &m_sets.emplace_back(id, std::move(children));
        return *this;
    }
    FakePlacing& Instance(std::string const& id, std::string const& target)
    {
        FakePlacing& instance = m_instances.emplace_back(id, target);
        objects[id] = &instance;
        return instance;
    }
    FakeScene& Part(std::string const& id)
    {
        objects[id] = &m_parts.emplace_back(UTF8String(id));
        return *this;
    }
    FakeScene& Point(std::string const& id)
    {
        objects[id] = &m_points.emplace_back(UTF8String(id));
        return *this;
    }

    /// Assemblies "a0" to "a(count - 1)", each in the one before by the instance "i" with its number, and the part "p".
    void Chain(unsigned count)
    {
        for (unsigned level = 0; level < count; ++level)
        {
            std::string const number = std::to_string(level);
            Assembly("a" + number, {"i" + number});
            Instance("i" + number, level + 1 < count ? "a" + std::to_string(level + 1) : "p");
        }
        Part("p");
    }

    std::map<std::string, IObject*> objects;

private:
    std::deque<FakeListedAssembly> m_assemblies;
    std::deque<FakeListedSet> m_sets;
    std::deque<FakePlacing> m_instances;
    std::deque<FakePart> m_parts;
    std::deque<FakePoint> m_points;
};

}  // namespace KVR::Test
