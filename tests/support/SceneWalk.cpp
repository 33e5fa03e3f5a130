#include "tests/support/SceneWalk.h"

#include <stdexcept>

#include "describe/AskEverything.h"
#include "tests/support/TextAnswers.h"

namespace KVR::Test
{

namespace
{

void Count(SceneAnswers& answers, std::string_view id, IObject const* object, Interface const* table)
{
    if (!object)
        ++answers.absent;
    else if (!table)
        throw std::logic_error("an object of no known kind: " + std::string(id));
    else if (table == &TableOf<IFile>::kTable)
        ++answers.files;
    else if (table == &TableOf<IAssembly>::kTable)
        ++answers.assemblies;
    else if (table == &TableOf<IPart>::kTable)
        ++answers.parts;
    else if (table == &TableOf<IInstance>::kTable)
        ++answers.instances;
    else if (IsA(*table, TableOf<IGeometry>::kTable))
        ++answers.shapes;
    else if (table == &TableOf<IAnnotationCallout>::kTable || table == &TableOf<IAnnotationCalloutElement>::kTable)
        ++answers.notes;
}

}  // namespace

SceneAnswers WalkScene(XMLProducer& producer, std::vector<std::string> const& ids)
{
    static std::string const kExtensionTypes[] = {"type", ""};
    SceneAnswers answers;
    TextAnswers text;
    std::vector<UTF8String> const from(ids.begin(), ids.end());
    AskEverything(producer, from, kExtensionTypes, text,
                  [&](UTF8String const& id, IObject* object, Interface const* table)
                  {
                      Count(answers, id.View(), object, table);
                      text.Line(object ? "Object" : "Absent", id.View());
                  });
    answers.text = text.Take();
    return answers;
}

}  // namespace KVR::Test
