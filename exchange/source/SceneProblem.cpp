#include "exchange/source/SceneProblem.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "output/SafeText.h"

namespace KVR
{

namespace
{

// A document type declaration stands before the root element, so that its place is near the start if it is anywhere.
constexpr std::size_t kPrologSize = std::size_t{64} * 1024;

bool SkipPast(std::string_view& text, std::string_view start, std::string_view end)
{
    if (!text.starts_with(start))
        return false;
    std::size_t const place = text.find(end, start.size());
    text.remove_prefix(place == std::string_view::npos ? text.size() : place + end.size());
    return true;
}

// Whether the first markup that is neither a processing instruction nor a comment is a document type declaration.
bool HasDocumentType(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    do
    {
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    } while (SkipPast(text, "<?", "?>") || SkipPast(text, "<!--", "-->"));
    return text.starts_with("<!DOCTYPE");
}

// The start of a document, reduced to its ASCII characters: enough to see its markup in UTF-8 and UTF-16.
std::string Prolog(std::ifstream& file)
{
    std::string bytes(kPrologSize, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    std::erase_if(bytes, [](char byte) { return byte == '\0' || static_cast<unsigned char>(byte) >= 0x80; });
    return bytes;
}

std::string SystemMessage(int errorNumber)
{
    return std::generic_category().message(errorNumber);
}

std::string CauseOfParseFailure(SceneOptions const& options)
{
    std::error_code error;
    std::filesystem::path const path(options.path);
    auto const status = std::filesystem::status(path, error);
    if (error)
        return error.message();
    if (std::filesystem::is_directory(status))
        return SystemMessage(EISDIR);
    constexpr char kMalformed[] = "it is not a well-formed XML document";
    if (!std::filesystem::is_regular_file(status))
        return kMalformed;
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return SystemMessage(errno);
    std::string const prolog = Prolog(file);
    if (prolog.empty())
        return "it is empty";
    if (!HasDocumentType(prolog))
        return kMalformed;
    return options.allowDtd ? "it, or a document that its document type declaration names, is not well-formed"
                            : "its document type declaration is refused unless --allow-dtd is given";
}

}  // namespace

std::string SceneProblem(SceneOptions const& options, Failure const& failure)
{
    std::string cause;
    if (failure.fileName && *failure.fileName != options.path)
        cause = fmt::format("the file \"{}\" that it names cannot be read", Escaped(*failure.fileName));
    else if (failure.fileName)
        cause = CauseOfParseFailure(options);
    else
        cause = Escaped(failure.message.value_or(failure.type));
    return fmt::format("\"{}\" cannot be read: {}", Escaped(options.path), cause);
}

}  // namespace KVR
