#include "exchange/source/SceneProblem.h"

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "framework/xml_util/DocumentPolicy.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string TextOf(DocumentRefusal refusal)
{
    DocumentPolicy const limits = CurrentDocumentPolicy();
    switch (refusal)
    {
        case DocumentRefusal::kDocumentType:
            return "its document type declaration is refused unless --allow-dtd is given";
        case DocumentRefusal::kOtherDocument:
            return "it names a document that is not in the file system";
        case DocumentRefusal::kDepth:
            return fmt::format("its elements stand more than {} deep in one another", limits.maxDepth);
        case DocumentRefusal::kAttributes:
            return fmt::format("an element has more than {} attributes", limits.maxAttributes);
        case DocumentRefusal::kNames:
            return fmt::format("its elements or attributes have more than {} different names", limits.maxNames);
        case DocumentRefusal::kEntities:
            return fmt::format("its entities expand to more than {} others", limits.maxEntities);
    }
    return {};
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
    if (!std::ifstream(path, std::ios::binary))
        return SystemMessage(errno);
    if (std::optional<DocumentRefusal> const refusal = LastDocumentRefusal())
        return TextOf(*refusal);
    if (std::filesystem::file_size(path, error) == 0)
        return "it is empty";
    return options.allowDtd ? "it, or a document that its document type declaration names, is not well-formed"
                            : kMalformed;
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
