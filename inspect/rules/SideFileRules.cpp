#include "inspect/rules/SideFileRules.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
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
#include "inspect/rules/Guesses.h"
#include "inspect/rules/SectionLook.h"
#include "inspect/rules/SideFileRuleTable.h"
#include "inspect/rules/UsedIds.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

using namespace SideFileRule;

constexpr Rule kRules[] = {kSectionOff, kNoPath,      kMissing,   kUnreadable,    kShort,   kInsecure, kSpareBytes,
                           kUnused,     kNoRecord,    kRepeated,  kNoMesh,        kUnknown, kNoObject, kNoHolder,
                           kNoProperty, kAssetUnused, kIdsUnused, kTextureUnused, kDigest};

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

}  // namespace

Rule const* DropOf(StoreRecord const& record, UsedIds const& used)
{
    if (record.kind == "segments")
        return record.isKept ? nullptr : &kNoMesh;
    KindRow const* const row = std::find_if(std::begin(kKindRows), std::end(kKindRows),
                                            [&](KindRow const& known) { return known.kind == record.kind; });
    if (row == std::end(kKindRows))
        return nullptr;
    // Ids of one object add up.
    if (!record.isKept && record.kind != "ids")
        return &kRepeated;
    return (used.*row->takers).contains(std::string(record.id.View())) ? nullptr : &row->rule;
}

namespace
{

// Looks at the property file, and at the files that the scene was written with.
class NotedFilesLook
{
public:
    NotedFilesLook(SceneCheck& check, std::set<std::string> const& told) : m_check(check), m_told(told) {}

    void LookAtProperties(std::string const& file)
    {
        for (PropertyRecord const& property : m_check.Record().Properties())
        {
            if (!property.isMade)
                AddProperty(kNoProperty, file, property, property.id, "it is passed over", {});
            else if (!property.isFound)
                AddProperty(kNoObject, file, property, property.objectId, "the property is dropped",
                            m_check.NearestId(property.objectId));
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
        fs::path const propertyFile(m_check.PropertyFile());
        std::string const properties = propertyFile.filename().string();
        bool hasProperties = false;
        for (SideFileNote const& note : notes.value_or(std::vector<SideFileNote>()))
        {
            // Noted under the name that the scene had when it was written.
            bool const isProperties = fs::path(note.name).extension() == kPropertyFileExtension.Narrow();
            hasProperties = hasProperties || isProperties;
            LookAtNote(scene.parent_path() / (isProperties ? properties : note.name), note.digest);
        }
        std::error_code error;
        if (notes && !hasProperties && fs::exists(propertyFile, error))
            m_check.AddIn(kDigest, propertyFile.string(), properties,
                          "its properties are read, and the scene was written without");
    }

private:
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

    SceneCheck& m_check;
    // Names of files of which sections told that they are missing.
    std::set<std::string> const& m_told;
};

// Tells of bodies that no store holds, and of textures that no style names.
class ObjectLook final : public ObjectVisitor
{
public:
    ObjectLook(SceneCheck& check, UsedIds const& used, SectionLook& sections)
        : m_check(check), m_used(used), m_sections(sections)
    {
    }

    using ObjectVisitor::Visit;
    void Visit(IBrep* body) override
    {
        if (!body->Body())
            m_sections.AddWithoutRecord(m_spot, std::string(body->Id().View()), "the object is there, without a body");
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
    SectionLook& m_sections;
    Spot m_spot;
};

}  // namespace

std::span<Rule const> SideFileRules()
{
    return kRules;
}

void CheckSideFiles(SceneCheck& check)
{
    UsedIds const used = UsedIds::Of(check.Record());
    Guesses guesses;
    SectionLook sections(check, used, guesses);
    for (SectionRecord const& section : check.Record().Sections())
        sections.LookAt(section);
    sections.LookAtMissing();
    NotedFilesLook noted(check, sections.MissingFiles());
    noted.LookAtProperties(check.PropertyFile());
    noted.LookAtNotes();
    ObjectLook objects(check, used, sections);
    for (auto const& [element, object] : check.Record().Objects())
        if (object)
            objects.LookAt(element, *object);
}

}  // namespace KVR
