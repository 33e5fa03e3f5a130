#include "tests/campaigns/Cycles.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace KVR::Campaigns
{

namespace
{

// An object that refers to another one, whose id takes the place of "@". "$" is an id of its own. `set` is the set of
// attributes that it stands in; those that stand in none are components, and geometry.
struct Link
{
    std::string_view kind;
    std::string_view reference;
    std::string_view set = {};
};

constexpr Link kLinks[] = {
    {"IFile", R"(<ChildSet><Reference ID="@" Type="IAssembly"/></ChildSet>)"},
    {"IAssembly", R"(<ChildSet><IInstance ID="$" Visibility="1"><Child ID="@"/></IInstance></ChildSet>)"},
    {"IAssembly", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"IAssembly", R"(<CrossLevelAttributes><Visibilities><EntityVisibility Path="[@]" Visibility="0"/></Visibilities>
        <Styles><EntityStyles Path="[@]"><Styles><StyleRef ID="@"/></Styles></EntityStyles></Styles>
        </CrossLevelAttributes>)"},
    {"IPart", R"(<ChildSet><IInstance ID="$"><Child ID="@"/></IInstance></ChildSet>)"},
    {"IPart", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"IInstance", R"(<Child ID="@"/>)"},
    {"IAssemblyFeatureOverride", R"(<BaseOccPaths><BaseOccPath Path="[@]"/></BaseOccPaths>)"},
    {"IAssemblyFeatureOverride", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"ISketch", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"ISketch", R"(<CurveSet><Child ID="@"/></CurveSet>)"},
    {"IGeometricSet", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"IExtensionGeometry", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"IAnnotationCallout", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"IAnnotationCallout", R"(<AnnotationPlane><Child ID="@"/></AnnotationPlane>)"},
    {"IAnnotationCallout", R"(<ExtensionData TypeId="kvr.annotation.kind" Content="tolerance"/>
        <ExtensionData TypeId="kvr.annotation.references" Content="@"/>)"},
    {"IAnnotationCalloutElement", R"(<ChildSet><Child ID="@"/></ChildSet>)"},
    {"IPolygonMesh", R"(<ExtensionData TypeId="kvr.body" Content="@"/><Styles><StyleRef ID="@"/></Styles>)"},
    {"ILayer", R"(<LayerInfo ID="1" Visibility="True"/><GeometryItems Items="@,@"/>)", "LayerSet"},
    {"ILayer", R"(<Styles><StyleRef ID="@"/></Styles>)", "LayerSet"},
    {"IGroup", R"(<GeometryItems Items="@"/>)", "GroupSet"},
    {"ILod", R"(<GeometryItems Items="@"/><ChildSet><Child ID="@"/></ChildSet>)", "LodSet"},
    {"IView", R"(<ViewMember><ViewMemberChild><OccurrencePath Path="[@]"/><EntityVisibility Visibility="1"/>
        <Styles><StyleRef ID="@"/></Styles></ViewMemberChild></ViewMember>)",
     "ViewSet"},
    {"IView", R"(<CameraSet><CameraRef ID="@"/></CameraSet>)", "ViewSet"},
    {"IRenderStyle", R"(<DiffuseTexture TextureId="@"/><BumpMap TextureId="@"/><Styles><StyleRef ID="@"/></Styles>)",
     "StyleSet"},
    {"IMaterialTexture", R"(<DiffuseTexture TextureId="@"/><ChildSet><Child ID="@"/></ChildSet>)", "TextureSet"},
};
constexpr std::array<std::uint64_t, 4> kLengths = {1, 2, 3, 7};

std::string Replaced(std::string_view text, char mark, std::string const& with)
{
    std::string made;
    for (char const c : text)
        made += c == mark ? with : std::string(1, c);
    return made;
}

// Before the last, or behind the first of such texts; nowhere without one.
bool Insert(std::string& document, std::string_view place, std::string const& text, bool isFirst)
{
    std::size_t const found = isFirst ? document.find(place) : document.rfind(place);
    if (found == std::string::npos)
        return false;
    document.insert(found + (isFirst ? place.size() : 0), text);
    return true;
}

void Add(std::string& document, Link const& link, std::string const& id, std::string_view references)
{
    std::string const kind(link.kind);
    std::string const element =
        '<' + kind + " ID=\"" + id + "\" Label=\"\" Visibility=\"1\">" + std::string(references) + "</" + kind + '>';
    std::string const set(link.set);
    bool const isComponent = kind == "IFile" || kind == "IAssembly" || kind == "IPart";
    if (!set.empty() && (Insert(document, '<' + set + '>', element, true) ||
                         Insert(document, "<AttributeSet>", '<' + set + '>' + element + "</" + set + '>', true)))
        return;
    if (set.empty() && !isComponent && Insert(document, "</ChildSet>", element, false))
        return;
    Insert(document, "</Scene>", element, false);
}

std::string Reference(Link const& link, std::string const& from, std::string const& to)
{
    return Replaced(Replaced(link.reference, '$', "in-" + from), '@', to);
}

// The ids of a circle: those of the second one begin with the first one's beginning.
std::string IdOf(std::string const& name, std::uint64_t place)
{
    return place == 0 ? std::string("ring0") : name + std::to_string(place);
}

}  // namespace

std::uint64_t CycleCount() noexcept
{
    return std::size(kLinks) * std::size(kLinks) * kLengths.size() * 4;
}

std::string CyclicScene(std::string document, std::uint64_t number)
{
    auto const take = [&](std::uint64_t count)
    {
        std::uint64_t const taken = number % count;
        number /= count;
        return taken;
    };
    bool const meets = take(2) == 1;
    bool const hasRoots = take(2) == 1;
    std::uint64_t const length = kLengths[take(kLengths.size())];
    Link const* const links[] = {&kLinks[take(std::size(kLinks))], &kLinks[take(std::size(kLinks))]};
    for (std::uint64_t i = 0; i < length; ++i)
    {
        std::string const id = IdOf("ring", i);
        std::string references = Reference(*links[i % 2], id, IdOf("ring", (i + 1) % length));
        if (i == 0 && meets)
            references += Reference(*links[0], id + "b", "loop1");
        Add(document, *links[i % 2], id, references);
    }
    for (std::uint64_t i = 1; meets && i <= length; ++i)
        Add(document, *links[i % 2], IdOf("loop", i),
            Reference(*links[i % 2], IdOf("loop", i), i == length ? "ring0" : IdOf("loop", i + 1)));
    // From what is there, and from roots that lead into the circle in different places.
    std::string const type = " Type=\"" + std::string(links[0]->kind) + "\"/>";
    Insert(document, "<ChildSet>", "<Child ID=\"ring0\"" + type, true);
    Insert(document, "</ChildSet>", "<IInstance ID=\"entry\" Visibility=\"1\"><Child ID=\"ring0\"/></IInstance>",
           false);
    for (std::uint64_t i = 0; hasRoots && i < 2; ++i)
        Insert(document, "</Scene>",
               "<IFile ID=\"root" + std::to_string(i) + "\" IsRoot=\"1\"><ChildSet><Child ID=\"" +
                   IdOf("ring", i % length) + '"' + type + "<Child ID=\"root" + std::to_string(1 - i) +
                   "\" Type=\"IFile\"/></ChildSet></IFile>",
               false);
    return document;
}

}  // namespace KVR::Campaigns
