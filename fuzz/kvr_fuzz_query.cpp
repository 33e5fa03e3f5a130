// A text of any content as an expression, asked of a small scene: what is taken is answered with places of the scene,
// and what is refused has a column in the text.

#include <cstdlib>
#include <string_view>

#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"
#include "fuzz/InputFile.h"
#include "inspect/query/Query.h"
#include "inspect/query/QueryParser.h"
#include "producer/XMLProducer.h"
#include "scene/Scene.h"

namespace
{

using namespace KVR;

constexpr char kDocument[] =
    "<Scene><IFile ID='f' Label='file'><ChildSet><C ID='a'/></ChildSet></IFile><IAssembly ID='a' Label='M6'><ChildSet>"
    "<IInstance ID='i' Label='one' Visibility='1'><Child ID='p'/></IInstance>"
    "<IInstance ID='j' Label='two' Visibility='0'><Child ID='p'/></IInstance></ChildSet></IAssembly>"
    "<IPart ID='p' Label='bolt'><FileProperties><CustomProperties>"
    "<CustomProperty Key='n' Type='kDouble' Value='2.5'/></CustomProperties></FileProperties>"
    "<ChildSet><IPoint ID='x' Label='' Visibility='1'><Point X='1' Y='2' Z='3'/></IPoint></ChildSet></IPart></Scene>";
constexpr std::size_t kOccurrences = 4;

struct SmallScene
{
    SmallScene() : file("scene.xml")
    {
        file.Write(reinterpret_cast<std::uint8_t const*>(kDocument), sizeof kDocument - 1);
        producer = std::make_unique<XMLProducer>(file.Path(), nullptr);
        producer->BeginProcess(IdSet(), nullptr, nullptr);
        scene = std::make_unique<Scene>(*producer, producer->RootObjectId().Id());
    }

    Fuzz::InputFile file;
    std::unique_ptr<XMLProducer> producer;
    std::unique_ptr<Scene> scene;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static SmallScene const small;
    std::string_view const text(reinterpret_cast<char const*>(data), size);
    bool const isExpression = Query::IsExpression(text);
    try
    {
        for (std::size_t const place : Query(text).Find(*small.scene))
            if (place >= kOccurrences)
                std::abort();
    }
    catch (QueryError const& error)
    {
        if (error.Column() > size + 1 || CaretLines(text, error.Column()).empty() != (error.Column() == 0))
            std::abort();
    }
    try
    {
        if (!ParseQueryColumns(text).empty() && isExpression && text.front() == '*')
            std::abort();
    }
    catch (QueryError const&)
    {
        // No list of columns.
    }
    return 0;
}
