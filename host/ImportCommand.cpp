#include "host/ImportCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// The units of length by their words, in the order of their enumerators.
std::vector<std::string> const& UnitWords()
{
    static std::vector<std::string> const words = {"micrometer", "millimeter", "centimeter", "decimeter",
                                                   "meter",      "kilometer",  "microinch",  "mil",
                                                   "inch",       "foot",       "yard",       "mile"};
    return words;
}

UnitTypeEnum UnitOf(std::string const& word)
{
    auto const place = std::find(UnitWords().begin(), UnitWords().end(), word) - UnitWords().begin();
    return static_cast<UnitTypeEnum>(kUnitType_Micrometer + place);
}

}  // namespace

std::string ProblemOfDeflection(std::string const& text)
{
    try
    {
        DeflectionOf(text);
        return {};
    }
    catch (std::invalid_argument const& error)
    {
        return error.what();
    }
}

ImportCommand::ImportCommand(CLI::App& program)
    : Command(program, "import",
              "Make a scene of a model: STEP, IGES, BREP, glTF, STL, OBJ or PLY, told apart by content and name")
{
    Arguments().add_option("model", m_options.modelPath, "The model's file")->required()->type_name("MODEL");
    Arguments()
        .add_option("scene", m_options.scenePath, "The scene to be; its side files stand beside it")
        ->required()
        ->type_name("SCENE.xml");
    Arguments()
        .add_option("--deflection", m_deflection,
                    "How far meshes may be from bodies: a length in the model's unit, or a percentage of the diagonal "
                    "of the model's box")
        ->type_name("LENGTH")
        ->check(&ProblemOfDeflection)
        ->capture_default_str();
    Arguments()
        .add_option("--unit", m_unit, "The unit of length of a model that states none")
        ->type_name("UNIT")
        ->check(CLI::IsMember(UnitWords()))
        ->capture_default_str();
    Arguments().add_flag("--no-mesh", m_withoutMeshes, "Write no meshes");
    Arguments().add_flag("--no-brep", m_withoutBreps, "Write no bodies");
    Arguments().add_flag("--no-pmi", m_withoutNotes, "Read no annotations and views");
    Arguments().add_flag("--text", m_options.scene.asText, "Write bodies as text");
    Arguments().add_flag("--quiet", m_options.isQuiet, "Say nothing but what fails");
}

ExitStatus ImportCommand::Run()
{
    m_options.scene.deflection = DeflectionOf(m_deflection);
    m_options.scene.withMeshes = !m_withoutMeshes;
    m_options.scene.withBreps = !m_withoutBreps;
    m_options.withAnnotations = !m_withoutNotes;
    m_options.unit = UnitOf(m_unit);
    ImportResult const result = ImportModel(m_options);
    if (!result.isGood)
    {
        Complain(result.sentence);
        return result.isInterrupted ? kExit_Interrupted : kExit_Failed;
    }
    if (m_options.isQuiet)
        return kExit_Good;
    for (std::string const& remark : result.remarks)
        Complain(Escaped(m_options.modelPath) + ": " + Escaped(remark));
    Output out(STDOUT_FILENO);
    out.Put(result.sentence + "\n");
    out.Flush();
    return kExit_Good;
}

}  // namespace KVR
