#include "inspect/rules/SideFileRules.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "framework/api/IBrep.h"
#include "framework/api/IMaterialTexture.h"
#include "framework/api/ObjectVisitor.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFileNotes.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/rules/SideFileRuleTable.h"
#include "inspect/rules/Texts.h"
#include "inspect/rules/UsedIds.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

using namespace SideFileRule;

constexpr Rule kRules[] = {kSectionOff, kNoPath,      kMissing,   kUnreadable,    kShort,   kInsecure, kSpareBytes,
                           kUnused,     kNoBody,      kRepeated,  kNoMesh,        kUnknown, kNoObject, kNoHolder,
                           kNoProperty, kAssetUnused, kIdsUnused, kTextureUnused, kDigest};

// So many names are compared to find out which one was meant, and for so many findings.
constexpr std::size_t kMostNames = 20'000;
constexpr std::size_t kMostGuesses = 50;

using Bytes = std::pair<unsigned long long, unsigned long long>;

void AddAt(SceneCheck& check, Rule const& rule, std::string const& file, Bytes const& bytes, std::string found,
           std::string readAs, std::string meant = {})
{
    if (Finding* const finding = check.AddIn(rule, file, std::move(found), std::move(readAs), std::move(meant)))
    {
        finding->begin = bytes.first;
        finding->end = bytes.second;
    }
}

// The rule that tells of a record that nothing takes.
struct KindRow
{
    std::string_view kind;
    Rule const& rule;
    UsedIds::Ids UsedIds::*takers;
};

constexpr KindRow kKindRows[] = {
    {"mesh", kUnused, &UsedIds::meshes},       {"curve", kUnused, &UsedIds::curves},
    {"body", kUnused, &UsedIds::bodies},       {"edge", kUnused, &UsedIds::edges},
    {"asset", kAssetUnused, &UsedIds::styles}, {"ids", kIdsUnused, &UsedIds::bodies},
};

class SideFileLook
{
public:
    SideFileLook(SceneCheck& check) : m_check(check), m_used(UsedIds::Of(check.Record())) {}

    void LookAt(SectionRecord const& section)
    {
        Spot const path{section.element, SpotPart::kAttributeValue, Names::Path.Document()};
        if (section.state == SectionState::kOff)
            m_check.Add(kSectionOff, Spot{section.element}, NameOf(section.element), "its file is not touched");
        else if (section.state == SectionState::kNoPath)
            m_check.Add(kNoPath, Spot{section.element}, NameOf(section.element), "it is without effect");
        else if (std::error_code error; !fs::exists(section.path, error))
        {
            m_told.insert(fs::path(section.path).filename().string());
            m_check.Add(kMissing, path, section.path, "the scene goes on without it", NearestFile(section.path));
        }
        else
            LookInto(section, path);
    }

    void LookAtProperties(std::string const& file)
    {
        for (PropertyRecord const& property : m_check.Record().Properties())
        {
            if (!property.isMade)
                AddProperty(kNoProperty, file, property, property.id, "it is passed over", {});
            else if (!property.isFound)
                AddProperty(kNoObject, file, property, property.objectId, "the property is dropped",
                            NearestObject(property.objectId));
            else if (!property.isHeld)
                AddProperty(kNoHolder, file, property, property.objectId,
                            "the property is dropped: meshes, instances, geometric sets and bodies alone hold any", {});
        }
    }

    void LookAtNotes()
    {
        if (!m_check.IsWanted(kDigest) && !m_check.IsWanted(kMissing))
            return;
        fs::path const scene(m_check.Path());
        std::optional<std::vector<SideFileNote>> const notes = SideFileNotes::Of(UTF8String(m_check.Path()));
        std::string const properties = PropertyFile().filename().string();
        bool hasProperties = false;
        for (SideFileNote const& note : notes.value_or(std::vector<SideFileNote>()))
        {
            // Noted under the name that the scene had when it was written.
            bool const isProperties = fs::path(note.name).extension() == kPropertyFileExtension.Narrow();
            hasProperties = hasProperties || isProperties;
            LookAtNote(scene.parent_path() / (isProperties ? properties : note.name), note.digest);
        }
        std::error_code error;
        if (notes && !hasProperties && fs::exists(PropertyFile(), error))
            m_check.AddIn(kDigest, PropertyFile().string(), properties,
                          "its properties are read, and the scene was written without");
    }

    fs::path PropertyFile() const
    {
        return fs::path(m_check.Path()).replace_extension(kPropertyFileExtension.Narrow());
    }

    UsedIds const& Used() const noexcept { return m_used; }

private:
    void LookInto(SectionRecord const& section, Spot const& path)
    {
        for (auto const& [failure, reason] : section.failures)
        {
            if (failure == StoreFailure::kInsecure)
                m_check.Add(kInsecure, path, section.path,
                            section.records.empty() ? reason + ", and nothing of it is read" : reason);
            else
                m_check.Add(kUnreadable, path, section.path, reason);
        }
        if (!section.failures.empty())
            return;
        bool const isSegments = NameOf(section.element) == Names::MeshSegmentInfo.Narrow();
        if (isSegments && section.size == 0 && section.records.empty())
            m_check.Add(kNoMesh, path, section.path, "no section in front holds meshes, and the file is not opened");
        bool const isWhole = LookAtRecords(section) && !LookForEnd(section, path);
        if (isWhole)
            LookForSpareBytes(section);
    }

    // Whether all records are such as their reader knows.
    bool LookAtRecords(SectionRecord const& section)
    {
        bool isGood = true;
        for (StoreRecord const& record : section.records)
        {
            std::string const id(record.id.View());
            Bytes const bytes{record.begin, record.end};
            if (record.kind == "unknown" || (record.kind == "segments" && id.empty()))
            {
                isGood = false;
                AddAt(m_check, kUnknown, section.path, bytes, id, "nothing behind its id is read as its own");
            }
            else if (record.kind == "segments")
            {
                isGood = isGood && record.isKept;
                if (!record.isKept)
                    AddAt(m_check, kNoMesh, section.path, bytes, id,
                          "what follows in the file is read from a wrong place", Nearest(id, m_used.meshes));
            }
            else
                LookAtTaker(section, record, id, bytes);
        }
        return isGood;
    }

    void LookAtTaker(SectionRecord const& section, StoreRecord const& record, std::string const& id, Bytes const& bytes)
    {
        KindRow const* const row = std::find_if(std::begin(kKindRows), std::end(kKindRows),
                                                [&](KindRow const& known) { return known.kind == record.kind; });
        if (row == std::end(kKindRows))
            return;
        // Ids of one object add up.
        if (!record.isKept && record.kind != "ids")
            AddAt(m_check, kRepeated, section.path, bytes, id, "the one before it is taken");
        else if (!(m_used.*row->takers).contains(id))
            AddAt(m_check, row->rule, section.path, bytes, std::string(record.kind) + ' ' + id, "it is read for nobody",
                  NearestOf(id, m_used.withoutRecord));
    }

    // Whether the file ends before what it claims.
    bool LookForEnd(SectionRecord const& section, Spot const& path)
    {
        if (section.shortReads == 0 && section.records.size() >= section.claimed)
            return false;
        m_check.Add(kShort, path, section.path,
                    section.records.size() < section.claimed
                        ? "it claims " + Counted(section.claimed, "record") + " and holds " +
                              std::to_string(section.records.size())
                        : "what it does not hold is read as zeros");
        return true;
    }

    void LookForSpareBytes(SectionRecord const& section)
    {
        if (section.records.empty() || section.records.front().end == 0)
            return;
        std::error_code error;
        unsigned long long const size = section.size > 0 ? section.size : fs::file_size(section.path, error);
        std::vector<Bytes> used = section.tables;
        for (StoreRecord const& record : section.records)
            used.emplace_back(record.begin, record.end);
        used.emplace_back(size, size);
        std::sort(used.begin(), used.end());
        unsigned long long end = used.front().first;
        for (Bytes const& bytes : used)
        {
            if (bytes.first > end && !error)
                AddAt(m_check, kSpareBytes, section.path, {end, bytes.first}, Counted(bytes.first - end, "byte"),
                      "they are passed over");
            end = std::max(end, bytes.second);
        }
    }

    void AddProperty(Rule const& rule, std::string const& file, PropertyRecord const& property, std::string found,
                     std::string readAs, std::string meant)
    {
        Finding* const finding = m_check.AddIn(rule, file, std::move(found), std::move(readAs), std::move(meant));
        if (!finding)
            return;
        finding->line = property.line;
        finding->column = property.column;
        finding->objectId = property.id;
    }

    void LookAtNote(fs::path const& file, FileDigest const& noted)
    {
        std::string const name = file.filename().string();
        if (m_told.contains(name))
            return;
        std::error_code error;
        if (!fs::exists(file, error))
        {
            m_check.AddIn(kMissing, m_check.Path(), file.string(), "the scene was written with it");
            return;
        }
        std::uintmax_t const size = fs::file_size(file, error);
        bool const isOther = !error && size != noted.size;
        if (!isOther && FileDigest::Of(UTF8String(file.string())) == noted)
            return;
        m_check.AddIn(kDigest, file.string(), name,
                      isOther ? "it has " + std::to_string(size) + " bytes in place of " + std::to_string(noted.size)
                              : std::string("its content is another one"));
    }

    template <class List>
    std::string NearestOf(std::string const& text, List const& names)
    {
        if (text.empty() || names.size() > kMostNames || m_guesses++ >= kMostGuesses)
            return {};
        NearestNames nearest(text, 1, std::max<std::size_t>(1, text.size() / 3));
        for (std::string const& name : names)
            if (name != text)
                nearest.Add(name);
        return nearest.Names().empty() ? std::string() : nearest.Names().front();
    }
    std::string Nearest(std::string const& text, UsedIds::Ids const& names) { return NearestOf(text, names); }

    std::string NearestObject(std::string const& id)
    {
        if (m_objects.empty())
            for (auto const& [element, object] : m_check.Record().Objects())
                if (object && m_objects.size() <= kMostNames)
                    m_objects.emplace(object->Id().View());
        return NearestOf(id, m_objects);
    }

    std::string NearestFile(std::string const& path)
    {
        std::set<std::string> names;
        std::error_code error;
        for (fs::directory_iterator at(fs::path(path).parent_path(), error), end; !error && at != end;
             at.increment(error))
            if (names.size() <= kMostNames)
                names.insert(at->path().filename().string());
        return NearestOf(fs::path(path).filename().string(), names);
    }

    SceneCheck& m_check;
    UsedIds m_used;
    std::set<std::string> m_objects;
    // Names of files of which sections told that they are missing.
    std::set<std::string> m_told;
    std::size_t m_guesses = 0;
};

// Tells of bodies that no store holds, and of textures that no style names.
class ObjectLook final : public ObjectVisitor
{
public:
    ObjectLook(SceneCheck& check, UsedIds const& used) : m_check(check), m_used(used) {}

    using ObjectVisitor::Visit;
    void Visit(IBrep* body) override
    {
        if (!body->Body())
            m_check.Add(kNoBody, m_spot, std::string(body->Id().View()), "the object is there, without a body");
    }
    void Visit(IMaterialTexture* texture) override
    {
        if (!m_used.textures.contains(std::string(texture->Id().View())))
            m_check.Add(kTextureUnused, m_spot, std::string(texture->Id().View()), "it is read for nobody");
    }

    void LookAt(xercesc::DOMNode const* element, IObject const& object)
    {
        m_spot = Spot{element, SpotPart::kAttributeValue, Names::ID.Document()};
        const_cast<IObject&>(object).AcceptVisitor(this);
    }

private:
    SceneCheck& m_check;
    UsedIds const& m_used;
    Spot m_spot;
};

}  // namespace

std::span<Rule const> SideFileRules()
{
    return kRules;
}

void CheckSideFiles(SceneCheck& check)
{
    SideFileLook look(check);
    for (SectionRecord const& section : check.Record().Sections())
        look.LookAt(section);
    look.LookAtProperties(look.PropertyFile().string());
    look.LookAtNotes();
    ObjectLook objects(check, look.Used());
    for (auto const& [element, object] : check.Record().Objects())
        if (object)
            objects.LookAt(element, *object);
}

}  // namespace KVR
