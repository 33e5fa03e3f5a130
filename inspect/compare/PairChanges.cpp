#include "inspect/compare/PairChanges.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "describe/Tell.h"
#include "framework/api/IObject.h"
#include "inspect/compare/AnswerParts.h"
#include "inspect/compare/MatchedAnswers.h"
#include "inspect/compare/Motion.h"
#include "inspect/compare/ShapeChange.h"
#include "inspect/digest/AnswerDigest.h"

namespace KVR
{

namespace
{

// In front of ids of objects that the other scene does not have.
constexpr char kAlone = '\x01';

struct MemberRule
{
    std::string_view name;
    ChangeKind kind;
    /// Of a list of records, the member that tells them apart.
    std::string_view key = {};
};

// Shown and hidden are told apart by the value.
constexpr std::array kMembers{
    MemberRule{"Label", ChangeKind::kRenamed},
    MemberRule{"Transform", ChangeKind::kMoved},
    MemberRule{"IsVisible", ChangeKind::kShown},
    MemberRule{"IsNetVisible", ChangeKind::kShown},
    MemberRule{"Styles", ChangeKind::kRestyled},
    MemberRule{"NetStyles", ChangeKind::kRestyled},
    MemberRule{"StylesMap", ChangeKind::kRestyled},
    MemberRule{"PolygonMaterials", ChangeKind::kRestyled},
    MemberRule{"LengthUnit", ChangeKind::kUnit},
    MemberRule{"DisplayLengthUnit", ChangeKind::kUnit},
    MemberRule{"DisplayAngleUnit", ChangeKind::kUnit},
    MemberRule{"FileProperties", ChangeKind::kProperty},
    MemberRule{"Properties", ChangeKind::kProperty, "Name"},
    MemberRule{"CrossLevelVisibilities", ChangeKind::kShown, "Path"},
    MemberRule{"CrossLevelStyles", ChangeKind::kRestyled, "Path"},
    MemberRule{"CrossLevelTransforms", ChangeKind::kMoved, "Path"},
    MemberRule{"CustomData", ChangeKind::kOther, "Key"},
    MemberRule{"ViewMembers", ChangeKind::kView, "OccurrencePath"},
};

struct KindOfClass
{
    std::string_view className;
    ChangeKind kind;
};

// Whatever changes of these.
constexpr std::array kClasses{
    KindOfClass{"IView", ChangeKind::kView},
    KindOfClass{"ICamera", ChangeKind::kView},
    KindOfClass{"ISectionCamera", ChangeKind::kView},
    KindOfClass{"ILayer", ChangeKind::kLayer},
    KindOfClass{"IGroup", ChangeKind::kLayer},
    KindOfClass{"ILod", ChangeKind::kLayer},
    KindOfClass{"IRenderStyle", ChangeKind::kRestyled},
    KindOfClass{"IVitreolRenderStyle", ChangeKind::kRestyled},
    KindOfClass{"IMaterialTexture", ChangeKind::kRestyled},
    KindOfClass{"IAnnotationCallout", ChangeKind::kNote},
    KindOfClass{"IAnnotationCalloutElement", ChangeKind::kNote},
};

// Lists of what stands apart: the objects are compared by themselves, here only their order.
bool IsListOfObjects(std::string_view name)
{
    constexpr std::array<std::string_view, 8> kNames{"Children", "StyleSet", "TextureSet", "LayerSet",
                                                     "GroupSet", "LodSet",   "CameraSet",  "ViewSet"};
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

bool IsAlone(Answer const& item)
{
    auto const* const text = std::get_if<std::string>(&item.value);
    return text && !text->empty() && text->front() == kAlone;
}

// Without ids of objects that the other scene does not have: those are told of by themselves.
Answer WithoutAlone(Answer answer)
{
    if (auto* const items = std::get_if<Answer::List>(&answer.value))
        std::erase_if(*items, &IsAlone);
    return answer;
}

}  // namespace

PairChanges::PairChanges(ComparedScene const& first, ComparedScene const& second, bool isById,
                         std::vector<SceneChange>& changes)
    : m_first(first), m_second(second), m_isById(isById), m_changes(changes)
{
}

SceneChange PairChanges::Of(ChangeKind kind, std::size_t a, std::size_t b) const
{
    SceneChange change;
    change.kind = kind;
    auto const take =
        [&](ComparedScene const& scene, std::size_t index, std::string& id, std::vector<std::string>& place)
    {
        if (index == kNoIndex)
            return;
        id = scene.Objects()[index].id.View();
        place = scene.PlaceOf(index);
        change.path = scene.PathOf(index);
        change.className = scene.Objects()[index].interface->name;
        change.occurrences = scene.OccurrencesOf(index);
    };
    take(m_first, a, change.firstId, change.firstPlace);
    take(m_second, b, change.secondId, change.secondPlace);
    return change;
}

void PairChanges::Tell(std::size_t a, std::size_t b)
{
    Pair const pair{a, b};
    TellOwner(pair);
    TellShape(pair);
    if (SaysTheSame(pair))
        return;
    Answer const first = AnswersOf(m_first, a);
    Answer const second = AnswersOf(m_second, b);
    for (auto const& [name, value] : std::get<Answer::Members>(first.value))
        if (Answer const& other = MemberOf(second, name); !(value == other))
            TellMember(pair, name, value, other);
}

void PairChanges::TellWhole(Answer const& first, Answer const& second)
{
    auto const tell = [&](std::string what, Answer const& value, Answer const& other)
    {
        SceneChange& change = m_changes.emplace_back();
        change.path = "scene";
        change.className = "IUniverse";
        change.what = std::move(what);
        change.first = ValueText(value);
        change.second = ValueText(other);
    };
    for (char const* const name : {"DefaultCurveColor", "DefaultSurfaceColor", "ViewingDataOf"})
        if (!(MemberOf(first, name) == MemberOf(second, name)))
            tell(name, MemberOf(first, name), MemberOf(second, name));
    auto const records = ByKey(MemberOf(first, "CustomData"), "Key");
    auto others = ByKey(MemberOf(second, "CustomData"), "Key");
    for (auto const& [key, record] : records)
    {
        auto const found = others.find(key);
        Answer const* const other = found == others.end() ? nullptr : found->second;
        if (!other || !(*record == *other))
            tell(key, RestOf(record, "Key"), RestOf(other, "Key"));
        others.erase(key);
    }
    for (auto const& [key, record] : others)
        tell(key, {}, RestOf(record, "Key"));
}

bool PairChanges::SaysTheSame(Pair const& pair) const
{
    if (m_isById)
        return First(pair).rest == Second(pair).rest;
    AnswerDigest digest;
    Ask(m_first, pair.a, digest);
    SceneDigest const first = digest.Take();
    Ask(m_second, pair.b, digest);
    return first == digest.Take();
}

Answer PairChanges::AnswersOf(ComparedScene const& scene, std::size_t index) const
{
    AnswerKeeper keeper;
    Ask(scene, index, keeper);
    return keeper.Take();
}

// Tells what an object answers apart from its shape, with the ids of the first scene for what matches.
void PairChanges::Ask(ComparedScene const& scene, std::size_t index, AnswerVisitor& to) const
{
    bool const isFirst = &scene == &m_first;
    auto const nameOf = [&](std::string_view id) -> std::optional<std::string>
    {
        std::size_t const found = scene.Find(id);
        if (found == kNoIndex)
            return std::nullopt;
        std::size_t const match = scene.Objects()[found].match;
        if (match == kNoIndex && scene.Objects()[found].interface)
            return kAlone + std::string(id);
        return isFirst || match == kNoIndex ? std::nullopt
                                            : std::optional(std::string(m_first.Objects()[match].id.View()));
    };
    ComparedObject const& object = scene.Objects()[index];
    MatchedAnswers parted(nullptr, &to, nameOf);
    parted.Begin(*object.interface);
    TellObject(*object.interface, DescribedObject::Of(*object.object).object, scene.To(parted));
}

void PairChanges::TellOwner(Pair const& pair)
{
    SceneComponent const* const from = m_first.ComponentOf(First(pair));
    SceneComponent const* const to = m_second.ComponentOf(Second(pair));
    if (!from || !to || First(pair).place == kNoIndex || Second(pair).place == kNoIndex)
        return;
    std::size_t const owner = m_first.Find(from->id);
    std::size_t const other = m_second.Find(to->id);
    if (owner == kNoIndex || other == kNoIndex || m_first.Objects()[owner].match == other)
        return;
    SceneChange& change = m_changes.emplace_back(Of(ChangeKind::kMoved, pair.a, pair.b));
    change.what = "component";
    change.first = m_first.PathOf(owner);
    change.second = m_second.PathOf(other);
}

void PairChanges::TellShape(Pair const& pair)
{
    if (First(pair).shape == Second(pair).shape || m_first.IsComponent(First(pair)))
        return;
    ShapeChange const shape = ShapeChange::Of(m_first, pair.a, m_second, pair.b);
    if (!shape.isTold)
        return;
    SceneChange& change = m_changes.emplace_back(Of(shape.kind, pair.a, pair.b));
    change.first = shape.first;
    change.second = shape.second;
}

SceneChange& PairChanges::Add(ChangeKind kind, Pair const& pair, std::string what, Answer const& first,
                              Answer const& second)
{
    for (KindOfClass const& known : kClasses)
        if (First(pair).interface->name == known.className)
            kind = known.kind;
    SceneChange& change = m_changes.emplace_back(Of(kind, pair.a, pair.b));
    change.what = std::move(what);
    bool const isStyles = kind == ChangeKind::kRestyled && First(pair).component != kNoIndex;
    change.first = isStyles ? StyleTexts(first) : ValueText(first);
    change.second = isStyles ? StyleTexts(second) : ValueText(second);
    return change;
}

void PairChanges::TellMember(Pair const& pair, std::string const& name, Answer const& first, Answer const& second)
{
    if (IsListOfObjects(name))
    {
        if (!(Common(first, second) == Common(second, first)))
            Add(ChangeKind::kOther, pair, name, Common(first, second), Common(second, first));
        return;
    }
    auto const rule =
        std::find_if(kMembers.begin(), kMembers.end(), [&](MemberRule const& r) { return r.name == name; });
    ChangeKind const kind = rule == kMembers.end() ? ChangeKind::kOther : rule->kind;
    if (rule != kMembers.end() && !rule->key.empty())
        return TellRecords(pair, name, kind, rule->key, first, second);
    if (name == "FileProperties")
        return TellFileProperties(pair, first, second);
    if (kind == ChangeKind::kMoved)
        return TellMove(pair, first, second);
    if (kind == ChangeKind::kShown)
    {
        Add(IsTrue(second) ? ChangeKind::kShown : ChangeKind::kHidden, pair, name, first, second);
        return;
    }
    if (name == "GeometryItems" && WithoutAlone(first) == WithoutAlone(second))
        return;
    Add(kind, pair, name, first, second);
}

void PairChanges::TellMove(Pair const& pair, Answer const& first, Answer const& second)
{
    SceneChange& change = Add(ChangeKind::kMoved, pair, "Transform", {}, {});
    change.first.clear();
    change.second.clear();
    std::optional<Matrix> const from = MatrixOf(first);
    std::optional<Matrix> const to = MatrixOf(second);
    auto const metresOf = [](ComparedScene const& scene, ComparedObject const& object)
    {
        if (SceneGeometry const* const geometry = scene.GeometryOf(object))
            return geometry->metresPerUnit;
        SceneComponent const* const component = scene.ComponentOf(object);
        return component ? component->metresPerUnit : scene.Model().MetresPerUnit();
    };
    if (!from || !to)
        return;
    Motion const motion = Motion::Of(*from, metresOf(m_first, First(pair)), *to, metresOf(m_second, Second(pair)));
    change.distance = motion.distance;
    change.angle = motion.angle;
}

void PairChanges::TellRecords(Pair const& pair, std::string const& name, ChangeKind kind, std::string_view key,
                              Answer const& first, Answer const& second)
{
    auto const records = ByKey(first, key);
    auto const others = ByKey(second, key);
    auto const tell = [&](std::string const& what, Answer const* record, Answer const* other)
    {
        Answer const before = RestOf(record, key);
        Answer const after = RestOf(other, key);
        if (record && other && before == after)
            return;
        ChangeKind own = kind;
        if (kind == ChangeKind::kShown)
            own = (other ? IsTrue(after) : !IsTrue(before)) ? ChangeKind::kShown : ChangeKind::kHidden;
        SceneChange& change = Add(own, pair, name == "Properties" ? what : name + " " + what, before, after);
        std::optional<Matrix> const from = MatrixOf(before);
        std::optional<Matrix> const to = MatrixOf(after);
        if (kind != ChangeKind::kMoved || !from || !to)
            return;
        double const metres = m_first.ComponentOf(First(pair)) ? m_first.ComponentOf(First(pair))->metresPerUnit : 1e-3;
        Motion const motion = Motion::Of(*from, metres, *to, metres);
        change.distance = motion.distance;
        change.angle = motion.angle;
        change.first.clear();
        change.second.clear();
    };
    for (auto const& [what, record] : records)
    {
        auto const found = others.find(what);
        tell(what, record, found == others.end() ? nullptr : found->second);
    }
    for (auto const& [what, other] : others)
        if (!records.contains(what))
            tell(what, nullptr, other);
}

void PairChanges::TellFileProperties(Pair const& pair, Answer const& first, Answer const& second)
{
    Answer const& some = std::holds_alternative<Answer::Members>(first.value) ? first : second;
    for (auto const& [name, value] : std::get<Answer::Members>(some.value))
    {
        Answer const& before = MemberOf(first, name);
        Answer const& after = MemberOf(second, name);
        if (name == "CustomProperties")
            TellRecords(pair, "Properties", ChangeKind::kProperty, "Name", before, after);
        else if (!(before == after))
            Add(ChangeKind::kProperty, pair, name, before, after);
    }
}

std::string PairChanges::ValueText(Answer const& answer) const
{
    if (auto const* const text = std::get_if<std::string>(&answer.value))
        return !text->empty() && text->front() == kAlone ? text->substr(1) : *text;
    if (std::holds_alternative<std::monostate>(answer.value))
        return {};
    Answer shown = answer;
    if (auto* const items = std::get_if<Answer::List>(&shown.value))
        for (Answer& item : *items)
            if (IsAlone(item))
                item.value = std::get<std::string>(item.value).substr(1);
    return BriefText(shown);
}

// The labels of styles.
std::string PairChanges::StyleTexts(Answer const& answer) const
{
    auto const* const items = std::get_if<Answer::List>(&answer.value);
    if (!items)
        return ValueText(answer);
    std::string texts;
    for (Answer const& item : *items)
    {
        std::string text = ValueText(item);
        ComparedScene const* scene = &m_first;
        if (IsAlone(item) && m_first.Find(text) == kNoIndex)
            scene = &m_second;
        if (std::size_t const index = scene->Find(text); index != kNoIndex)
            text = scene->NameOf(index);
        texts += (texts.empty() ? "" : ", ") + text;
    }
    return texts;
}

}  // namespace KVR
