#include <stdexcept>

#include "exchange/export/Formats.h"
#include "exchange/run/NewFile.h"
#include "exchange/view/ViewComponents.h"
#include "exchange/view/ViewGlb.h"
#include "exchange/view/ViewLooks.h"
#include "exchange/view/ViewPage.h"
#include "exchange/view/ViewThinning.h"

// A scene as one HTML file that shows it; docs/viewer.md has its layout.
namespace KVR
{

namespace
{

constexpr int kLayoutVersion = 1;
// Those that a browser would show, each with its row in a tree.
constexpr unsigned long long kMostOccurrences = 1'000'000;
// A text that a browser takes as one.
constexpr unsigned long long kLongestText = 500'000'000;

std::string TitleOf(ExportTask const& task)
{
    Scene const& scene = task.scene;
    std::string_view const label =
        scene.Root() == kNoIndex ? std::string_view() : scene.Components()[scene.Root()].label;
    return std::string(label.empty() ? std::string_view(task.source) : label);
}

// What of the scene is in the file, apart from lists that are texts already.
class PageContent
{
public:
    explicit PageContent(ExportTask& task)
        : m_task(task),
          m_index(task.scene),
          m_styles(task.scene),
          m_geometry(task, m_index, m_styles),
          m_occurrences(task, m_index, m_styles, m_geometry, m_transforms)
    {
        m_box = m_occurrences.Box(m_geometry);
        // Looks add transforms.
        m_looks = LooksJson(task, m_index, m_styles, m_occurrences, m_transforms);
    }

    std::vector<ViewMesh> const& Meshes() { return m_geometry.Meshes(); }

    void Thin()
    {
        if (!m_task.options.mostTriangles)
            return;
        Thinned const thinned =
            ThinMeshes(m_geometry.Meshes(), m_occurrences.SeenMeshes(), *m_task.options.mostTriangles);
        if (thinned.to == thinned.from)
            return;
        m_thinned = {{"from", thinned.from}, {"to", thinned.to}};
        std::string sentence = "thinned from " + std::to_string(thinned.from) + " to " + std::to_string(thinned.to) +
                               " triangles drawn, so that shapes and measures are coarser than the scene's";
        if (thinned.to > *m_task.options.mostTriangles)
            sentence += "; they cannot be made fewer";
        m_task.remarks.push_back(std::move(sentence));
    }

    std::string Text(std::string const& title)
    {
        Scene const& scene = m_task.scene;
        ViewJson const head = Head(title);
        std::string text = TextOf(head);
        text.pop_back();
        auto const add = [&](std::string_view name, std::string const& value)
        { text += ",\"" + std::string(name) + "\":" + value; };
        add("transforms", m_transforms.List());
        add("styles", TextOf(m_styles.Json()));
        add("components", TextOf(ComponentsJson(scene, m_index, m_styles)));
        add("geometry", TextOf(m_geometry.Json()));
        add("occurrences", m_occurrences.OccurrencesJson());
        add("items", m_occurrences.ItemsJson());
        ViewJson const organisation = OrganisationJson(scene, m_index, m_styles);
        for (ViewJson const* const members : {&organisation, static_cast<ViewJson const*>(&m_looks)})
            for (auto const& [name, value] : members->items())
                add(name, TextOf(value));
        add("notes", TextOf(NotesJson(m_task, m_index, m_geometry)));
        return text + '}';
    }

private:
    ViewJson Head(std::string const& title)
    {
        Scene const& scene = m_task.scene;
        ViewJson head{{"format", "kvr-view"}, {"version", kLayoutVersion}, {"generator", "kvr_xml_producer"}};
        head["title"] = title;
        head["source"] = {{"file", m_task.source}};
        ViewJson remarks = m_task.remarks;
        if (std::string const sentence = m_task.notCarried.Sentence(); !sentence.empty())
            remarks.push_back(sentence);
        head["remarks"] = remarks.is_null() ? ViewJson::array() : std::move(remarks);
        head["unit"] = UnitJson(scene.Unit());
        head["up"] = JsonOf(scene.UpVector());
        if (m_box)
            head["box"] = {{"low", JsonOf(m_box->low)}, {"high", JsonOf(m_box->high)}};
        head["defaults"] = {{"surface", JsonOf(scene.DefaultSurfaceColor())},
                            {"curve", JsonOf(scene.DefaultCurveColor())}};
        unsigned long long triangles = 0;
        for (ViewMesh const& mesh : m_geometry.Meshes())
            triangles += mesh.TriangleCount();
        head["counts"] = {{"triangles", triangles},
                          {"drawnTriangles", DrawnTriangles(m_geometry.Meshes(), m_occurrences.SeenMeshes())},
                          {"occurrences", m_occurrences.Count()},
                          {"components", m_index.Components().size()},
                          {"meshes", m_geometry.Meshes().size()}};
        if (!m_thinned.is_null())
            head["thinned"] = m_thinned;
        return head;
    }

    ExportTask& m_task;
    ViewIndex m_index;
    ViewStyles m_styles;
    ViewTransforms m_transforms;
    ViewGeometry m_geometry;
    ViewOccurrences m_occurrences;
    std::optional<SceneBox> m_box;
    ViewJson m_looks;
    ViewJson m_thinned;
};

// Writes what `fill` puts as packed text.
template <class Fill>
void PutPacked(Output& out, Fill const& fill)
{
    PackedText packed(out);
    fill(packed);
    packed.Finish();
    if (packed.Size() > kLongestText)
        throw std::runtime_error(
            "it takes more than a browser opens; --only shows a part of it, and --max-triangles "
            "makes it coarser");
}

}  // namespace

void ExportView(ExportTask& task)
{
    ViewPage const page = ViewPage::Parts();
    RefuseMoreOccurrences(task.scene, kMostOccurrences);
    PageContent data(task);
    data.Thin();
    std::string const title = TitleOf(task);
    NewFile file(task.path);
    Output& out = file.Out();
    out.Put(page.untilTitle);
    out.Put(TitleText(title));
    out.Put(page.untilGeometry);
    PutPacked(out,
              [&](PackedText& packed) { WriteGlb(data.Meshes(), [&](std::string_view bytes) { packed.Put(bytes); }); });
    out.Put(page.untilScene);
    PutPacked(out, [&](PackedText& packed) { packed.Put(data.Text(title)); });
    out.Put(page.rest);
    file.Finish();
}

bool CanView()
{
    return ViewPage::IsThere();
}

}  // namespace KVR
