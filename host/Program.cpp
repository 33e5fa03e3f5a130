#include "host/Program.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "host/Output.h"
#include "host/OutputError.h"
#include "host/SafeText.h"
#include "host/SceneFile.h"
#include "host/SceneProblem.h"
#include "host/SceneReading.h"
#include "host/dump/Dump.h"
#include "host/dump/DumpOptions.h"
#include "host/import/Import.h"
#include "host/notes/Notes.h"
#include "host/notes/NotesOptions.h"
#include "host/tree/Tree.h"
#include "host/tree/TreeOptions.h"
#include "host/views/SceneViews.h"
#include "host/views/Views.h"

namespace KVR
{

namespace
{

enum ExitStatus
{
    kExit_Good = 0,
    kExit_Failed = 1,
    kExit_BadArguments = 2
};

void Complain(std::string const& sentence)
{
    std::fputs(("kvr: " + sentence + "\n").c_str(), stderr);
}

void AddSceneOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("scene", options.path, "The scene file")->required()->type_name("SCENE");
    command.add_option("--prefix", options.prefix, "Give objects new ids: this prefix and a number")->type_name("TEXT");
    command.add_flag("--allow-dtd", options.allowDtd,
                     "Allow a document type declaration, and with it entities and references to other documents, "
                     "also on the network; for scenes that you trust");
}

bool IsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

void AddColorOption(CLI::App& command, std::string& choice)
{
    command.add_option("--color", choice, "Colour: auto, always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

// Whether colour is wanted: a terminal decides unless the user has.
bool WantsColor(std::string const& choice)
{
    char const* const noColor = std::getenv("NO_COLOR");
    if (choice == "auto")
        return IsTerminal() && (!noColor || *noColor == '\0');
    return choice == "always";
}

int Dump(SceneOptions const& scene, DumpOptions const& options)
{
    SceneFile file(scene);
    SceneReading const reading = SceneReading::Of(file.Producer());
    Output out(STDOUT_FILENO);
    WriteDump(file.Producer(), reading, options, out);
    out.Flush();
    if (!reading.failure)
        return kExit_Good;
    Complain(SceneProblem(scene, *reading.failure));
    return kExit_Failed;
}

int Tree(SceneOptions const& scene, TreeOptions const& options)
{
    SceneFile file(scene);
    SceneReading const reading = SceneReading::Of(file.Producer());
    if (reading.failure)
    {
        Complain(SceneProblem(scene, *reading.failure));
        return kExit_Failed;
    }
    if (!reading.rootId)
    {
        Complain(Escaped(scene.path) + ": the scene has no root file, so there is no tree to show");
        return kExit_Failed;
    }
    Output out(STDOUT_FILENO);
    bool const isWhole = WriteTree(file.Producer(), *reading.rootId, options, out);
    out.Flush();
    if (isWhole)
        return kExit_Good;
    Complain(Escaped(scene.path) + ": the tree has more than " + std::to_string(options.maxOccurrences) +
             " lines and is cut there; --depth and --max-occurrences set how much is shown");
    return kExit_Failed;
}

int Views(SceneOptions const& scene, bool asJson)
{
    SceneFile file(scene);
    SceneReading const reading = SceneReading::Of(file.Producer());
    if (reading.failure)
    {
        Complain(SceneProblem(scene, *reading.failure));
        return kExit_Failed;
    }
    if (!reading.rootId)
    {
        Complain(Escaped(scene.path) + ": the scene has no root file, so there are no views to show");
        return kExit_Failed;
    }
    Output out(STDOUT_FILENO);
    SceneViews const views = SceneViews::Of(file.Producer(), *reading.rootId);
    if (asJson)
        WriteViewsAsJson(views, out);
    else
        WriteViewsAsTable(views, out);
    out.Flush();
    return kExit_Good;
}

int Notes(SceneOptions const& scene, NotesOptions const& options)
{
    SceneFile file(scene);
    SceneReading const reading = SceneReading::Of(file.Producer());
    if (reading.failure)
    {
        Complain(SceneProblem(scene, *reading.failure));
        return kExit_Failed;
    }
    std::vector<UTF8String> starts;
    if (reading.rootId)
        starts.push_back(*reading.rootId);
    for (std::string const& id : options.ids)
        starts.emplace_back(id.c_str());
    if (starts.empty())
    {
        Complain(Escaped(scene.path) + ": the scene has no root file to begin at; --id begins at another object");
        return kExit_Failed;
    }
    Output out(STDOUT_FILENO);
    WriteNotes(file.Producer(), starts, options, out);
    out.Flush();
    return kExit_Good;
}

// A unit of length by its name: "millimeter", "inch" and so on.
struct UnitChoice
{
    std::string word = "millimeter";

    static std::vector<std::string> Words()
    {
        return {"micrometer", "millimeter", "centimeter", "decimeter", "meter", "kilometer",
                "microinch",  "mil",        "inch",       "foot",      "yard",  "mile"};
    }
    // The units stand in this order.
    UnitTypeEnum Unit() const
    {
        std::vector<std::string> const words = Words();
        auto const place = std::find(words.begin(), words.end(), word) - words.begin();
        return static_cast<UnitTypeEnum>(kUnitType_Micrometer + place);
    }
};

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

// As shells give it to a program that was ended by SIGINT.
constexpr int kExit_Interrupted = 130;

int Import(ImportOptions const& options)
{
    ImportResult const result = ImportModel(options);
    if (!result.isGood)
    {
        Complain(result.sentence);
        return result.isInterrupted ? kExit_Interrupted : kExit_Failed;
    }
    if (options.isQuiet)
        return kExit_Good;
    for (std::string const& remark : result.remarks)
        Complain(Escaped(options.modelPath) + ": " + Escaped(remark));
    Output out(STDOUT_FILENO);
    out.Put(result.sentence + "\n");
    out.Flush();
    return kExit_Good;
}

int Run(std::function<int()> const& command)
{
    try
    {
        return command();
    }
    catch (OutputError const& error)
    {
        if (error.IsReaderGone())
            return kExit_Good;
        Complain(std::string("standard output: ") + error.what());
    }
    catch (std::exception const& error)
    {
        Complain(Escaped(error.what()));
    }
    return kExit_Failed;
}

}  // namespace

int RunProgram(int argc, char const* const* argv)
{
    CLI::App app("Reads a CAD scene through the producer and shows what it serves.", "kvr");
    app.set_version_flag("--version", "kvr " KVR_VERSION);
    app.require_subcommand(1);
    app.failure_message([](CLI::App const*, CLI::Error const& error)
                        { return std::string("kvr: ") + error.what() + "; see kvr --help\n"; });

    SceneOptions scene;
    DumpOptions dumpOptions;
    CLI::App& dump = *app.add_subcommand("dump", "Print everything that a scene serves, as one JSON object");
    AddSceneOptions(dump, scene);
    dump.add_option("--id", dumpOptions.ids, "Begin a walk at this id, too; may be repeated")
        ->type_name("ID")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    dump.add_option("--extension", dumpOptions.extensionTypeIds,
                    "Show the extension data of this type id; may be repeated")
        ->type_name("TYPEID")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    dump.add_flag("--summary", dumpOptions.summary,
                  "Leave out the long lists of meshes and clouds, and keep their counts");
    dump.add_flag("--insecure", scene.insecure, "Restore kernel stores that the kernel judges insecure");

    TreeOptions treeOptions;
    std::string color = "auto";
    CLI::App& tree = *app.add_subcommand(
        "tree",
        "Show the product tree: a line per file, instance with what it places, component and object. The closing line "
        "counts different files, assemblies, parts and instances, and the occurrences of assemblies and parts");
    AddSceneOptions(tree, scene);
    tree.add_option("--depth", treeOptions.depth, "Show so many levels below the root")->type_name("N");
    tree.add_flag("--json", treeOptions.json, "Print JSON");
    AddColorOption(tree, color);
    tree.add_flag("--styles", treeOptions.styles,
                  "Show the diffuse colours of the styles that objects name: blocks of colour on a terminal, #rrggbb "
                  "elsewhere");
    tree.add_option("--max-occurrences", treeOptions.maxOccurrences, "End the tree after so many lines")
        ->type_name("N")
        ->capture_default_str();

    bool viewsAsJson = false;
    CLI::App& views = *app.add_subcommand("views", "Show a table of the views and cameras that a scene serves");
    AddSceneOptions(views, scene);
    views.add_flag("--json", viewsAsJson, "Print JSON");

    NotesOptions notesOptions;
    CLI::App& notes = *app.add_subcommand(
        "notes", "Show the annotation callouts: their text, the plane that they lie in, and what they point at");
    AddSceneOptions(notes, scene);
    notes.add_option("--id", notesOptions.ids, "Begin a walk at this id, too; may be repeated")
        ->type_name("ID")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    notes.add_flag("--json", notesOptions.json, "Print JSON");
    AddColorOption(notes, color);

    ImportOptions importOptions;
    std::string deflection = "0.1%";
    bool withoutMeshes = false;
    bool withoutBreps = false;
    bool withoutNotes = false;
    UnitChoice unitChoice;
    CLI::App& import = *app.add_subcommand(
        "import", "Make a scene of a model: STEP, IGES, BREP, glTF, STL, OBJ or PLY, told apart by content and name");
    import.add_option("model", importOptions.modelPath, "The model's file")->required()->type_name("MODEL");
    import.add_option("scene", importOptions.scenePath, "The scene to be; its side files stand beside it")
        ->required()
        ->type_name("SCENE.xml");
    import.add_option("--deflection", deflection,
                      "How far meshes may be from bodies: a length in the model's unit, or a percentage of the "
                      "diagonal of the model's box")
        ->type_name("LENGTH")
        ->check([](std::string const& text) { return ProblemOfDeflection(text);
})
        ->capture_default_str();
import.add_option("--unit", unitChoice.word, "The unit of length of a model that states none")
    ->type_name("UNIT")
    ->check(CLI::IsMember(unitChoice.Words()))
    ->capture_default_str();
import.add_flag("--no-mesh", withoutMeshes, "Write no meshes");
import.add_flag("--no-brep", withoutBreps, "Write no bodies");
import.add_flag("--no-pmi", withoutNotes, "Read no annotations and views");
import.add_flag("--text", importOptions.scene.asText, "Write bodies as text");
import.add_flag("--quiet", importOptions.isQuiet, "Say nothing but what fails");

try
{
    app.parse(argc, argv);
}
catch (CLI::ParseError const& error)
{
    return app.exit(error) == 0 ? kExit_Good : kExit_BadArguments;
}
if (import.parsed())
{
    importOptions.scene.deflection = DeflectionOf(deflection);
    importOptions.scene.withMeshes = !withoutMeshes;
    importOptions.scene.withBreps = !withoutBreps;
    importOptions.withAnnotations = !withoutNotes;
    importOptions.unit = unitChoice.Unit();
    return Run([&] { return Import(importOptions); });
}
treeOptions.color = WantsColor(color);
treeOptions.colorBlocks = treeOptions.color && IsTerminal();
if (dump.parsed())
    return Run([&] { return Dump(scene, dumpOptions); });
if (views.parsed())
    return Run([&] { return Views(scene, viewsAsJson); });
notesOptions.color = treeOptions.color;
if (notes.parsed())
    return Run([&] { return Notes(scene, notesOptions); });
return Run([&] { return Tree(scene, treeOptions); });
}  // namespace KVR

}  // namespace KVR
