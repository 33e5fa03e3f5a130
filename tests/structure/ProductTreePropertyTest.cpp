// Product trees drawn by chance, written as scenes, read and compared.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>
#include <utility>

#include "tests/structure/Answers.h"
#include "tests/support/SceneWalk.h"

namespace KVR::Test
{

namespace
{

using Texts = std::vector<std::string>;

struct Instance
{
    std::string id;
    std::wstring label;
    std::string target;
    bool isVisible = false;
    bool isNetVisible = false;
    Texts styles;
    Texts netStyles;
    std::optional<std::array<double, 16>> transform;
};

struct Component
{
    bool isAssembly = false;
    std::string id;
    std::wstring label;
    bool isSingleUnderRoot = false;
    Texts styles;
    std::vector<Instance> instances;
    // Written behind the instances; what they find depends on the order of the ids alone.
    Texts references;
};

struct Tree
{
    std::string fileId;
    Texts fileChildren;
    std::vector<Component> components;
};

// Drawing.

std::wstring DrawLabel()
{
    // What a document can hold.
    auto const character = rc::gen::oneOf(rc::gen::inRange<int>(0x20, 0x7F), rc::gen::element<int>('\t', '\n', '\r'),
                                          rc::gen::inRange<int>(0xA0, 0xD800), rc::gen::inRange<int>(0xE000, 0xFFFE),
                                          rc::gen::inRange<int>(0x10000, 0x110000));
    std::wstring label;
    for (int const c : *rc::gen::resize(10, rc::gen::container<std::vector<int>>(character)))
        label.push_back(static_cast<wchar_t>(c));
    return label;
}

Texts DrawStyles()
{
    return *rc::gen::resize(4, rc::gen::container<Texts>(rc::gen::element<std::string>("s1", "s2", "s 3", "S1")));
}

std::optional<std::array<double, 16>> DrawTransform()
{
    if (!*rc::gen::arbitrary<bool>())
        return {};
    auto const finite = rc::gen::suchThat<double>([](double value) { return std::isfinite(value); });
    return *rc::gen::container<std::array<double, 16>>(finite);
}

// A new id, which may come before or behind any other.
std::string DrawId(std::set<std::string>& taken)
{
    char const first = *rc::gen::element('A', 'M', 'a', 'k', 'z', '0');
    std::string id(1, first);
    id += std::to_string(*rc::gen::inRange(0, 100));
    id += '.';
    id += std::to_string(taken.size());
    taken.insert(id);
    return id;
}

Tree DrawTree()
{
    std::set<std::string> taken;
    Tree tree;
    tree.fileId = DrawId(taken);
    auto const count = *rc::gen::inRange<std::size_t>(1, 8);
    for (std::size_t i = 0; i < count; ++i)
    {
        Component component;
        component.isAssembly = i + 1 < count && *rc::gen::arbitrary<bool>();
        component.id = DrawId(taken);
        component.label = DrawLabel();
        component.isSingleUnderRoot = *rc::gen::arbitrary<bool>();
        component.styles = DrawStyles();
        tree.components.push_back(component);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        Component& component = tree.components[i];
        auto const placed = component.isAssembly ? *rc::gen::inRange(0, 5) : 0;
        for (int n = 0; n < placed; ++n)
        {
            // Only components behind this one, so that no cycle comes about.
            auto const& target = tree.components[*rc::gen::inRange(i + 1, count)];
            component.instances.push_back({DrawId(taken), DrawLabel(), target.id, *rc::gen::arbitrary<bool>(),
                                           *rc::gen::arbitrary<bool>(), DrawStyles(), DrawStyles(), DrawTransform()});
        }
        auto const referred = *rc::gen::inRange(0, 3);
        for (int n = 0; n < referred; ++n)
            component.references.push_back(tree.components[*rc::gen::inRange<std::size_t>(0, count)].id);
    }
    auto const children = *rc::gen::inRange(0, 5);
    for (int n = 0; n < children; ++n)
        tree.fileChildren.push_back(tree.components[*rc::gen::inRange<std::size_t>(0, count)].id);
    return tree;
}

Texts DrawOrder(Texts elements)
{
    for (std::size_t i = elements.size(); i > 1; --i)
        std::swap(elements[i - 1], elements[*rc::gen::inRange<std::size_t>(0, i)]);
    return elements;
}

// Writing.

std::string Escaped(std::wstring const& text)
{
    std::string escaped;
    for (wchar_t const c : text)
        escaped += "&#" + std::to_string(static_cast<long>(c)) + ";";
    return escaped;
}

std::string StylesText(std::string const& name, Texts const& styles)
{
    std::string text = "<" + name + ">";
    for (std::string const& style : styles)
        text += "<StyleRef ID='" + style + "'/>";
    return text + "</" + name + ">";
}

std::string TransformText(std::array<double, 16> const& transform)
{
    std::string text;
    for (double const element : transform)
    {
        std::array<char, 40> digits{};
        char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), element).ptr;
        text += ' ';
        text.append(digits.data(), end);
    }
    return text;
}

std::string InstanceText(Instance const& instance)
{
    std::string text = "<IInstance ID='" + instance.id + "' Label='" + Escaped(instance.label) + "'";
    if (instance.isVisible)
        text += " Visibility='1'";
    text +=
        std::string(" NetVisibility='") + (instance.isNetVisible ? "1" : "0") + "'><Child ID='" + instance.target + "'";
    if (instance.transform)
        text += " Transformation='" + TransformText(*instance.transform) + "'";
    return text + "/>" + StylesText("Styles", instance.styles) + StylesText("NetStyles", instance.netStyles) +
           "</IInstance>";
}

std::string ComponentText(Component const& component)
{
    std::string const name = component.isAssembly ? "IAssembly" : "IPart";
    std::string text = "<" + name + " ID='" + component.id + "' Label='" + Escaped(component.label) +
                       "' IsSingleUnderRoot='" + (component.isSingleUnderRoot ? "1" : "0") + "'>" +
                       StylesText("Styles", component.styles) + "<ChildSet>\n";
    for (Instance const& instance : component.instances)
        text += InstanceText(instance) + "\n";
    for (std::string const& reference : component.references)
        text += "<Child ID='" + reference + "'/>";
    return text + "</ChildSet></" + name + ">\n";
}

Texts RootElements(Tree const& tree)
{
    std::string file = "<IFile ID='" + tree.fileId + "'><ChildSet>";
    for (std::string const& child : tree.fileChildren)
        file += "<Child ID='" + child + "'/>";
    Texts elements{file + "</ChildSet></IFile>\n"};
    for (Component const& component : tree.components)
        elements.push_back(ComponentText(component));
    return elements;
}

std::string Joined(Texts const& texts)
{
    std::string joined;
    for (std::string const& text : texts)
        joined += text;
    return joined;
}

Texts WithoutRepeats(Texts const& ids)
{
    Texts once;
    for (std::string const& id : ids)
    {
        if (std::find(once.begin(), once.end(), id) == once.end())
            once.push_back(id);
    }
    return once;
}

// Comparing.

void RequireAsWritten(IInstance const& instance, Instance const& written)
{
    RC_ASSERT(instance.Label().View() == written.label);
    RC_ASSERT(Text(instance.TargetId().Id()) == written.target);
    RC_ASSERT(instance.IsVisible() == written.isVisible);
    RC_ASSERT(instance.IsNetVisible() == written.isNetVisible);
    RC_ASSERT(Ids(instance.Styles()) == WithoutRepeats(written.styles));
    RC_ASSERT(Ids(instance.NetStyles()) == WithoutRepeats(written.netStyles));
    RC_ASSERT(instance.Transform()->Elements() == written.transform.value_or(kIdentity));
}

void RequireAsWritten(TestScene& scene, Component const& written)
{
    auto const& component = scene.Get<IComponent>(written.id.c_str());
    RC_ASSERT((dynamic_cast<IAssembly const*>(&component) != nullptr) == written.isAssembly);
    RC_ASSERT(component.Label().View() == written.label);
    RC_ASSERT(component.IsSingleUnderRoot() == written.isSingleUnderRoot);
    RC_ASSERT(Ids(component.Styles()) == WithoutRepeats(written.styles));
    Texts children = scene.ChildIds(written.id.c_str());
    RC_ASSERT(children.size() >= written.instances.size());
    children.resize(written.instances.size());
    Texts ids;
    for (Instance const& instance : written.instances)
    {
        ids.push_back(instance.id);
        RequireAsWritten(scene.Get<IInstance>(instance.id.c_str()), instance);
    }
    RC_ASSERT(children == ids);
}

Texts IdsOf(Tree const& tree)
{
    Texts ids{tree.fileId};
    for (Component const& component : tree.components)
        ids.push_back(component.id);
    return ids;
}

}  // namespace

RC_GTEST_PROP(ProductTree, IsServedAsItWasWritten, ())
{
    Tree const tree = DrawTree();
    TestScene scene(InScene(Joined(RootElements(tree))));
    scene.Begin();
    RC_ASSERT(Text(scene.Producer().RootObjectId().Id()) == tree.fileId);
    RC_ASSERT(scene.ChildIds(tree.fileId.c_str()) == tree.fileChildren);
    for (Component const& component : tree.components)
        RequireAsWritten(scene, component);
}

RC_GTEST_PROP(ProductTree, DoesNotDependOnTheOrderOfTheRootsElements, ())
{
    Tree const tree = DrawTree();
    Texts const elements = RootElements(tree);
    Texts const shuffled = DrawOrder(elements);
    TestScene scene(InScene(Joined(elements)));
    TestScene other(InScene(Joined(shuffled)));
    std::string const answers = WalkScene(scene.Begin().Producer(), IdsOf(tree)).text;
    RC_ASSERT(WalkScene(other.Begin().Producer(), IdsOf(tree)).text == answers);
}

RC_GTEST_PROP(ProductTree, HasNewIdsThatDoNotDependOnTheOrderOfTheRootsElements, ())
{
    Tree const tree = DrawTree();
    Texts const elements = RootElements(tree);
    Texts const shuffled = DrawOrder(elements);
    TestScene scene(InScene(Joined(elements)));
    TestScene other(InScene(Joined(shuffled)));
    SceneAnswers const answers = WalkScene(scene.WithPrefix("new").Begin().Producer(), {"new1", "new2", "new3"});
    RC_ASSERT(answers.files == 1u);
    RC_ASSERT(WalkScene(other.WithPrefix("new").Begin().Producer(), {"new1", "new2", "new3"}).text == answers.text);
}

RC_GTEST_PROP(ProductTree, NewIdsChangeNothingButTheIds, ())
{
    Tree const tree = DrawTree();
    std::string const text = InScene(Joined(RootElements(tree)));
    TestScene written(text);
    TestScene renamed(text);
    SceneAnswers const before = WalkScene(written.Begin().Producer());
    SceneAnswers const after = WalkScene(renamed.WithPrefix("new").Begin().Producer());
    RC_ASSERT(after.Objects() == before.Objects());
    RC_ASSERT(after.assemblies == before.assemblies);
    RC_ASSERT(after.instances == before.instances);
    RC_ASSERT(after.absent == before.absent);
}

}  // namespace KVR::Test
