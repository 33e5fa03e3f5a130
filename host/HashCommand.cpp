#include "host/HashCommand.h"

#include <CLI/CLI.hpp>

#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "inspect/Digest.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// "0123... IPart bolt": ids stand last, since they may have blanks.
void PutLine(Output& out, SceneDigest const& digest, std::string const& kind, std::string const& id)
{
    out.Put(digest.Text());
    out.Put("  " + kind);
    if (!id.empty())
    {
        out.Put(' ');
        PutEscaped(out, id);
    }
    out.Put('\n');
}

}  // namespace

HashCommand::HashCommand(CLI::App& program)
    : SceneCommand(program, "hash",
                   "Print a digest of all that a scene serves: the same for scenes that serve the same, however their "
                   "files are written and called")
{
    Arguments().add_flag("--parts", m_parts, "Print a line for each object, by its id: digest, kind, id");
    AddRepeatedOption(Arguments(), "--extension", m_extensionTypeIds,
                      "Let the extension data of this type id count, too; may be repeated", "TYPEID");
    AddInsecureOption(Arguments(), Scene());
}

std::string HashCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    if (!reading.rootId)
        return OfScene("the scene has no root file, so there is nothing to digest");
    SceneDigests const digests = DigestScene(producer, m_extensionTypeIds);
    if (!m_parts)
    {
        PutLine(out, digests.whole, Escaped(Scene().path), {});
        return {};
    }
    PutLine(out, digests.universe, "IUniverse", {});
    for (ObjectDigest const& object : digests.objects)
        PutLine(out, object.digest, object.className.empty() ? "missing" : object.className, object.id);
    return {};
}

}  // namespace KVR
