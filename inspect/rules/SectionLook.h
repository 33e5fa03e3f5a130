#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "inspect/SceneCheck.h"
#include "inspect/rules/Guesses.h"

namespace KVR
{

struct SectionRecord;
struct StoreRecord;
struct UsedIds;

/// Looks at what the files of info sections gave, and at what elements lack because of it.
class SectionLook
{
public:
    SectionLook(SceneCheck& check, UsedIds const& used, Guesses& guesses)
        : m_check(check), m_used(used), m_guesses(guesses)
    {
    }

    void LookAt(SectionRecord const& section);
    /// To be called behind all sections: for elements that found no record.
    void LookAtMissing();
    /// The same for one.
    void AddWithoutRecord(Spot const& spot, std::string id, std::string readAs);

    /// The names of files of which sections told that they are missing.
    std::set<std::string> const& MissingFiles() const noexcept { return m_missingFiles; }

private:
    using Bytes = std::pair<unsigned long long, unsigned long long>;

    void LookInto(SectionRecord const& section, Spot const& path);
    bool LookAtRecords(SectionRecord const& section);
    void LookAtTaker(SectionRecord const& section, StoreRecord const& record, std::string const& id,
                     Bytes const& bytes);
    void AddShort(SectionRecord const& section, Spot const& path);
    void LookForSpareBytes(SectionRecord const& section);
    void AddAt(Rule const& rule, std::string const& file, Bytes const& bytes, std::string found, std::string readAs,
               std::string meant = {});
    std::string NearestFile(std::string const& path);

    SceneCheck& m_check;
    UsedIds const& m_used;
    Guesses& m_guesses;
    /// The ids of records that nothing takes.
    std::set<std::string> m_untaken;
    /// Which files gave nothing, as sentences.
    std::vector<std::string> m_failures;
    std::set<std::string> m_missingFiles;
};

}  // namespace KVR
