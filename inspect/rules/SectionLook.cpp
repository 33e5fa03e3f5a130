#include "inspect/rules/SectionLook.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "framework/xml_util/FormatNames.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/rules/SideFileRuleTable.h"
#include "inspect/rules/SideFileRules.h"
#include "inspect/rules/Texts.h"
#include "inspect/rules/UsedIds.h"

namespace KVR
{

namespace fs = std::filesystem;

using namespace SideFileRule;

namespace
{

// Whether the file ends before what it claims.
bool IsShort(SectionRecord const& section)
{
    return section.shortReads > 0 || section.records.size() < section.claimed;
}

}  // namespace

void SectionLook::LookAt(SectionRecord const& section)
{
    Spot const path{section.element, SpotPart::kAttributeValue, Names::Path.Document()};
    bool const isOn = section.state == SectionState::kRead;
    std::error_code error;
    bool const isMissing = isOn && !fs::exists(section.path, error);
    if (!isOn || isMissing || !section.failures.empty())
        m_failures.push_back("the " + NameOf(section.element) + " gave nothing");
    if (section.state == SectionState::kOff)
        m_check.Add(kSectionOff, Spot{section.element}, NameOf(section.element), "its file is not touched");
    else if (section.state == SectionState::kNoPath)
        m_check.Add(kNoPath, Spot{section.element}, NameOf(section.element), "it is without effect");
    else if (isMissing)
    {
        m_missingFiles.insert(fs::path(section.path).filename().string());
        m_check.Add(kMissing, path, section.path, "the scene goes on without it", NearestFile(section.path));
    }
    else
        LookInto(section, path);
}

void SectionLook::AddWithoutRecord(Spot const& spot, std::string id, std::string readAs)
{
    std::string meant = m_guesses.Of(id, m_untaken);
    Finding* const finding = m_check.Add(kNoRecord, spot, std::move(id), std::move(readAs), std::move(meant));
    if (finding)
        finding->reasons = m_failures;
}

void SectionLook::LookAtMissing()
{
    for (auto const& [element, failure] : m_check.Record().Failures())
        if (failure.reason == DropReason::kNoRecord)
            AddWithoutRecord({element, SpotPart::kAttributeValue, Names::ID.Document()},
                             AttributeOf(element, Names::ID), "the element makes no object");
}

void SectionLook::LookInto(SectionRecord const& section, Spot const& path)
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
    bool const isGood = LookAtRecords(section);
    if (IsShort(section))
        AddShort(section, path);
    else if (isGood)
        LookForSpareBytes(section);
}

// Whether all records are such as their reader knows.
bool SectionLook::LookAtRecords(SectionRecord const& section)
{
    bool isGood = true;
    for (StoreRecord const& record : section.records)
    {
        std::string const id(record.id.View());
        Bytes const bytes{record.begin, record.end};
        bool const isUnknown = record.kind == "unknown" || (record.kind == "segments" && id.empty());
        isGood = isGood && !isUnknown;
        if (isUnknown)
        {
            // One that the end of the file cuts off is told by that.
            if (record.end < section.size || !IsShort(section))
                AddAt(kUnknown, section.path, bytes, id,
                      record.end == 0 ? "it is passed over" : "nothing behind its id is read as its own");
        }
        else if (record.kind == "segments")
        {
            isGood = isGood && record.isKept;
            if (!record.isKept)
                AddAt(kNoMesh, section.path, bytes, id, "what follows in the file is read from a wrong place",
                      m_guesses.Of(id, m_used.meshes));
        }
        else
            LookAtTaker(section, record, id, bytes);
    }
    return isGood;
}

void SectionLook::LookAtTaker(SectionRecord const& section, StoreRecord const& record, std::string const& id,
                              Bytes const& bytes)
{
    Rule const* const rule = DropOf(record, m_used);
    if (rule == &kRepeated)
        AddAt(*rule, section.path, bytes, id, "the one before it is taken");
    else if (rule)
    {
        m_untaken.insert(id);
        AddAt(*rule, section.path, bytes, std::string(record.kind) + ' ' + id, "it is read for nobody",
              m_guesses.Of(id, m_used.withoutRecord));
    }
}

void SectionLook::AddShort(SectionRecord const& section, Spot const& path)
{
    m_check.Add(kShort, path, section.path,
                section.records.size() < section.claimed ? "it claims " + Counted(section.claimed, "record") +
                                                               " and holds " + std::to_string(section.records.size())
                                                         : "what it does not hold is read as zeros");
}

void SectionLook::LookForSpareBytes(SectionRecord const& section)
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
            AddAt(kSpareBytes, section.path, {end, bytes.first}, Counted(bytes.first - end, "byte"),
                  "they are passed over");
        end = std::max(end, bytes.second);
    }
}

std::string SectionLook::NearestFile(std::string const& path)
{
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(fs::path(path).parent_path(), error), end; !error && at != end; at.increment(error))
        if (names.size() <= Guesses::kMostNames)
            names.insert(at->path().filename().string());
    return m_guesses.Of(fs::path(path).filename().string(), names);
}

void SectionLook::AddAt(Rule const& rule, std::string const& file, Bytes const& bytes, std::string found,
                        std::string readAs, std::string meant)
{
    if (Finding* const finding = m_check.AddIn(rule, file, std::move(found), std::move(readAs), std::move(meant)))
    {
        finding->begin = bytes.first;
        finding->end = bytes.second;
    }
}

}  // namespace KVR
