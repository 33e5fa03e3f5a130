// One mistake in turn by which objects, or the whole scene, are lost, planted in every place of the example scenes
// where it can stand.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/inspect/document/Seeds.h"
#include "tests/support/RunOnStack.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

constexpr std::size_t kUsualStack = std::size_t{8} << 20U;
constexpr std::size_t kLargeStack = std::size_t{256} << 20U;
// A scene with a sketch, which is refused, for want of a type.
constexpr char kRefused[] = "\n<ISketch ID=\"refused\" Label=\"\"/>";

class SeededLosses : public Seeds
{
protected:
    // The id of the first element of that name.
    std::string IdOf(std::string const& name) const
    {
        auto const found =
            std::find_if(Tags().begin(), Tags().end(), [&](SceneTag const& tag) { return tag.name == name; });
        for (TagAttribute const& attribute : found->attributes)
        {
            if (attribute.name == "ID")
                return attribute.value;
        }
        return {};
    }

    // The ids of the assemblies around a place.
    std::vector<std::string> AssembliesAround(std::size_t at) const
    {
        std::vector<std::string> ids;
        for (SceneTag const& tag : Tags())
        {
            if (tag.name == "IAssembly" && tag.begin < at && at < tag.elementEnd)
                ids.push_back(tag.attributes.front().value);
        }
        return ids;
    }

    // At what depth an assembly is read: it is when the first instance of it is met.
    std::map<std::string, std::size_t> Depths() const
    {
        std::map<std::string, std::size_t> depths;
        AddDepths(IdOf("IAssembly"), 1, depths);
        return depths;
    }

    void AddDepths(std::string const& id, std::size_t depth, std::map<std::string, std::size_t>& depths) const
    {
        if (!depths.emplace(id, depth).second)
            return;
        for (SceneTag const& tag : Tags())
        {
            if (tag.name == "Child" && tag.parent == "IInstance" && AssembliesAround(tag.begin).front() == id)
                AddDepths(tag.attributes.front().value, depth + 1, depths);
        }
    }

    // In each reference of elements of that name to something, the id of something of another kind, or of itself.
    void PlantInReferences(char const* names, char const* parents, std::string const& id, std::string const& rule)
    {
        PlantInValues(
            [&](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
            {
                if (!Matches(tag.name, names) || !Matches(tag.parent, parents) || attribute.name != "ID")
                    return std::nullopt;
                Planted planted = WithValue(text, attribute, id, rule);
                // Sketches and callouts refer to whatever was read before, which this is not.
                if (tag.name == "Child" && Matches(tag.grandparent, "ISketch|IAnnotationCallout"))
                    planted.rules = {"K-0110"};
                // What was referred to is perhaps not reached any more, and what stands behind an instance is lost.
                planted.hasConsequences = true;
                return planted;
            });
    }
};

bool HoldsSketches(SceneTag const& tag)
{
    return tag.name == "ChildSet" && Matches(tag.parent, "IPart|IAssembly") && !tag.isEmpty;
}

}  // namespace

TEST_P(SeededLosses, ADocumentThatIsNone)
{
    // An element that another one's end tag ends.
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.isEmpty)
                return std::nullopt;
            return Planted{Replaced(text, tag.endTag + 2, 0, "Z"), tag.endTag, {"K-0101"}};
        });
    // A file that ends in front of an element.
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted> {
            return Planted{text.substr(0, tag.begin), tag.begin, {"K-0101"}};
        });
    PlantInValues(
        [](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted> {
            return Planted{Replaced(text, attribute.valueBegin, 0, "&zorgle;"), attribute.valueBegin, {"K-0101"}};
        });
}

TEST_P(SeededLosses, AnInstanceWithoutWhatItPlaces)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.name != "Child" || tag.parent != "IInstance")
                return std::nullopt;
            Planted planted{Replaced(text, tag.begin, tag.elementEnd - tag.begin, ""), 0, {"K-0107"}, true};
            planted.at = text.rfind("<IInstance", tag.begin);
            return planted;
        });
}

TEST_P(SeededLosses, AnElementThatItsReaderRefuses)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            // At the end, where nothing is left behind it.
            if (!HoldsSketches(tag))
                return std::nullopt;
            return Planted{Replaced(text, tag.endTag, 0, kRefused), tag.endTag + 1, {"K-0107"}};
        });
}

TEST_P(SeededLosses, AChildThatFailsInFrontOfOthers)
{
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.parent != "ChildSet" || !Matches(tag.grandparent, "IPart|IAssembly"))
                return std::nullopt;
            return Planted{Replaced(text, tag.begin, 0, kRefused), tag.begin + 1, {"K-0108"}, true};
        });
}

TEST_P(SeededLosses, AnElementThatALaterOneOverwrites)
{
    // In front of each, the same once more.
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            bool const isOne = Matches(tag.name, "ChangeKey|Tolerance|Unit|Transform") ||
                               (tag.name == "Child" && tag.parent == "IInstance") ||
                               (tag.name == "ExtensionData" && Matches(tag.parent, "IInstance|ILayer"));
            if (!isOne)
                return std::nullopt;
            std::string const element = text.substr(tag.begin, tag.elementEnd - tag.begin);
            return Planted{Replaced(text, tag.begin, 0, element), tag.begin + 1, {"K-0118"}};
        });
}

TEST_P(SeededLosses, AnOccurrencePathThatLeadsAstray)
{
    // From each assembly to a part, which no assembly lists itself, and in each path that there is.
    std::string const part = "[" + IdOf("IPart") + "]";
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.name != "IAssembly")
                return std::nullopt;
            std::string const element = "<CrossLevelAttributes><Visibilities><EntityVisibility Path=\"" + part +
                                        "\" Visibility=\"1\"/></Visibilities></CrossLevelAttributes>";
            return Planted{Replaced(text, tag.end, 0, element), tag.end, {"K-0117"}};
        });
    for (std::string const& astray : {part, "[placed][" + IdOf("IAssembly") + "]", "[placed]" + part + "[placed2]"})
    {
        PlantInValues(
            [&](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted>
            {
                if (!Matches(attribute.name, "Path|OccurrencePath") || attribute.value != "[placed]")
                    return std::nullopt;
                return WithValue(text, attribute, astray, astray.ends_with("2]") ? "K-0110" : "K-0117");
            });
    }
}

TEST_P(SeededLosses, AReferenceToAnObjectOfAnotherKind)
{
    PlantInReferences("StyleRef|CameraRef", ".*", IdOf("IPart"), "K-0111");
    PlantInReferences("CameraRef", ".*", IdOf("IRenderStyle"), "K-0111");
    PlantInReferences("Child", "ChildSet|IInstance", IdOf("IRenderStyle"), "K-0111");
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (!HoldsSketches(tag))
                return std::nullopt;
            std::string const child = "\n<Child ID=\"" + IdOf("IRenderStyle") + "\"/>";
            return Planted{Replaced(text, tag.endTag, 0, child), tag.endTag + 1, {"K-0111"}};
        });
    for (bool const isThere : {false, true})
    {
        PlantInValues(
            [&](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted>
            {
                if (!Matches(attribute.name, "TextureId|BumpMapId|LODID"))
                    return std::nullopt;
                return WithValue(text, attribute, isThere ? IdOf("IPart") : "nowhere", isThere ? "K-0111" : "K-0110");
            });
    }
}

TEST_P(SeededLosses, AnInstanceThatLeadsBackToWhatItStandsIn)
{
    std::string const top = IdOf("IAssembly");
    for (bool const isTop : {false, true})
    {
        PlantInValues(
            [&](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
            {
                if (tag.name != "Child" || tag.parent != "IInstance" || attribute.name != "ID")
                    return std::nullopt;
                Planted planted =
                    WithValue(text, attribute, isTop ? top : AssembliesAround(tag.begin).front(), "K-0112");
                planted.hasConsequences = true;
                return planted;
            });
    }
}

TEST_P(SeededLosses, SetsThatAreNestedTooDeeply)
{
    constexpr std::size_t kDeepest = 1001;
    std::string const begin = "\n<IGeometricSet ID=\"deep#\" Label=\"\"><ChildSet>";
    std::string sets;
    std::size_t deepest = 0;
    for (std::size_t i = 0; i < kDeepest; ++i)
    {
        deepest = sets.size() + 1;
        sets += Replaced(begin, begin.find('#'), 1, std::to_string(i));
    }
    for (std::size_t i = 0; i < kDeepest; ++i)
        sets += "</ChildSet></IGeometricSet>";
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (!HoldsSketches(tag))
                return std::nullopt;
            return Planted{Replaced(text, tag.endTag, 0, sets), tag.endTag + deepest, {"K-0113"}};
        });
}

// Assemblies that place each other, one more than are followed.
TEST_P(SeededLosses, InstancesThatAreNestedTooDeeply)
{
    constexpr std::size_t kDeepest = 1002;
    std::string chain;
    std::vector<std::size_t> begins;
    for (std::size_t i = 0; i < kDeepest; ++i)
    {
        std::string const number = std::to_string(i);
        begins.push_back(chain.size() + 1);
        chain += "\n<IAssembly ID=\"deep" + number + "\" Label=\"\"><ChildSet><IInstance ID=\"to" + number +
                 "\" Visibility=\"1\" NetVisibility=\"1\"><Child ID=\"deep" + std::to_string(i + 1) +
                 "\"/></IInstance></ChildSet></IAssembly>";
    }
    chain += "<IPart ID=\"deep" + std::to_string(kDeepest) + "\" Label=\"\"/>";
    std::map<std::string, std::size_t> const depths = Depths();
    auto const plant = [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
    {
        if (tag.name != "ChildSet" || tag.parent != "IAssembly" || tag.isEmpty)
            return std::nullopt;
        std::string const instance =
            "<IInstance ID=\"in\" Visibility=\"1\" NetVisibility=\"1\"><Child ID=\"deep0\"/></IInstance>";
        std::size_t const end = text.rfind("</Scene>");
        Planted planted{Replaced(text, end, 0, chain), 0, {"K-0113"}, true};
        planted.text.insert(tag.endTag, instance);
        std::size_t const depth = depths.at(AssembliesAround(tag.begin).front());
        planted.at = end + instance.size() + begins[kDeepest - 1 - depth];
        return planted;
    };
    // Sanitizers make the frames of so many levels larger than a usual stack.
    RunOnStack(kIsSanitized ? kLargeStack : kUsualStack, [&] { PlantInTags(plant); });
}

TEST_P(SeededLosses, ASceneWithoutARoot)
{
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.name != "IFile")
                return std::nullopt;
            std::string const without = Replaced(text, tag.begin, tag.elementEnd - tag.begin, "");
            // What the file held is referred to.
            return Planted{without, text.find("<Scene>"), {"K-0115"}, true};
        });
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.name != "IFile")
                return std::nullopt;
            std::string const misspelt = Replaced(text, tag.endTag + 2, 1, "i");
            return Planted{Replaced(misspelt, tag.begin + 1, 1, "i"), text.find("<Scene>"), {"K-0115"}, true};
        });
}

INSTANTIATE_TEST_SUITE_P(Examples, SeededLosses, kSeedScenes, NameOfSeedScene);

}  // namespace KVR::Test
