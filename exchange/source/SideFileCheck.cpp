#include "exchange/source/SideFileCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFileNotes.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

// So many are told one by one in a sentence.
constexpr std::size_t kMostTold = 3;

std::string PropertyFileOf(fs::path const& scene)
{
    return fs::path(scene.filename()).replace_extension(kPropertyFileExtension.Narrow()).string();
}

// The names of the noted files as a reader opens them: properties under the name that the scene has today.
std::vector<SideFileNote> NotesOf(fs::path const& scene, bool& hasNotes)
{
    std::optional<std::vector<SideFileNote>> notes = SideFileNotes::Of(UTF8String(scene.string()));
    hasNotes = notes.has_value();
    if (!notes)
        return {};
    for (SideFileNote& note : *notes)
        if (fs::path(note.name).extension() == kPropertyFileExtension.Narrow())
            note.name = PropertyFileOf(scene);
    return std::move(*notes);
}

std::string About(std::string const& name, std::string const& problem)
{
    return fmt::format("the scene's side file {} {}", name, problem);
}

// What is wrong with a file; empty for nothing.
std::string ProblemOf(fs::path const& path, FileDigest const& noted, SideFileCheck::Extent extent)
{
    std::error_code error;
    std::uintmax_t const size = fs::file_size(path, error);
    if (error == std::errc::no_such_file_or_directory)
        return "is missing";
    if (!error && size < noted.size)
        return fmt::format("is short, or another scene's: it has {} of {} bytes", size, noted.size);
    constexpr char kChanged[] = "is another scene's, or was changed";
    if (!error && size != noted.size)
        return kChanged;
    if (!error && extent == SideFileCheck::Extent::kSizes)
        return {};
    std::optional<FileDigest> const found = FileDigest::Of(UTF8String(path.string()));
    if (!found)
        return "cannot be read";
    return *found == noted ? "" : kChanged;
}

}  // namespace

SideFileCheck::SideFileCheck(std::string const& scenePath, Extent extent)
    : m_folder(fs::path(scenePath).parent_path().string())
{
    fs::path const scene(scenePath);
    bool hasNotes = false;
    for (SideFileNote const& note : NotesOf(scene, hasNotes))
    {
        m_names.push_back(note.name);
        if (std::string const problem = ProblemOf(scene.parent_path() / note.name, note.digest, extent);
            !problem.empty())
            m_problems.push_back(About(note.name, problem));
    }
    // A reader takes what stands under this name, whoever wrote it.
    std::string const properties = PropertyFileOf(scene);
    std::error_code ignored;
    if (hasNotes && std::find(m_names.begin(), m_names.end(), properties) == m_names.end() &&
        fs::exists(scene.parent_path() / properties, ignored))
        m_problems.push_back(About(properties, "is another scene's: this one was written without"));
}

void SideFileCheck::AddUnread(std::string const& path)
{
    fs::path const file(path);
    bool const isBeside = file.parent_path() == m_folder;
    std::string const name = isBeside ? file.filename().string() : path;
    bool const isTold =
        std::any_of(m_problems.begin(), m_problems.end(),
                    [prefix = About(name, "")](auto const& problem) { return problem.starts_with(prefix); });
    if (isTold)
        return;
    std::error_code ignored;
    m_problems.push_back(About(name, fs::exists(file, ignored) ? "cannot be read" : "is missing"));
}

std::string SideFileCheck::Sentence() const
{
    std::string sentence = fmt::format(
        "{}",
        fmt::join(m_problems.begin(),
                  m_problems.begin() + static_cast<std::ptrdiff_t>(std::min(kMostTold, m_problems.size())), "; "));
    if (m_problems.size() > kMostTold)
        sentence += fmt::format("; and {} more", m_problems.size() - kMostTold);
    return sentence;
}

std::vector<std::string> SideFileCheck::PathsOf(std::string const& scenePath)
{
    fs::path const scene(scenePath);
    bool hasNotes = false;
    std::vector<std::string> paths;
    for (SideFileNote const& note : NotesOf(scene, hasNotes))
        paths.push_back((scene.parent_path() / note.name).string());
    return paths;
}

bool SideFileCheck::HasNotedSize(std::string const& scenePath, std::string const& path)
{
    fs::path const scene(scenePath);
    fs::path const file(path);
    bool hasNotes = false;
    std::vector<SideFileNote> const notes = NotesOf(scene, hasNotes);
    return file.parent_path() == scene.parent_path() &&
           std::any_of(notes.begin(), notes.end(),
                       [&](SideFileNote const& note) {
                           return note.name == file.filename() && ProblemOf(file, note.digest, Extent::kSizes).empty();
                       });
}

}  // namespace KVR
