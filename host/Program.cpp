#include "host/Program.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneProblem.h"
#include "exchange/source/SceneReading.h"
#include "host/CertifyCommand.h"
#include "host/Command.h"
#include "host/ExportCommand.h"
#include "host/ImportCommand.h"
#include "host/dump/Dump.h"
#include "host/dump/DumpOptions.h"
#include "host/notes/Notes.h"
#include "host/notes/NotesOptions.h"
#include "host/tree/Tree.h"
#include "host/tree/TreeOptions.h"
#include "host/views/SceneViews.h"
#include "host/views/Views.h"
#include "output/Output.h"
#include "output/OutputError.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

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
    CLI::App app("Shows what a CAD scene serves, makes scenes of models, and writes scenes for other programs.", "kvr");
    app.set_version_flag("--version", "kvr " KVR_VERSION);
    app.require_subcommand(1);
    app.footer(
        "Examples:\n"
        "  kvr import examples/models/as1-oc-214.stp as1.xml\n"
        "  kvr tree --styles as1.xml\n"
        "  kvr dump --summary as1.xml\n"
        "  kvr views as1.xml\n"
        "  kvr notes as1.xml\n"
        "  kvr export as1.xml as1.glb\n"
        "  kvr export --only l-bracket as1.xml bracket.step\n"
        "  kvr certify examples/models/as1-oc-214.stp");
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

    ImportCommand importing(app);
    ExportCommand exporting(app);
    CertifyCommand certifying(app);

    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        return app.exit(error) == 0 ? kExit_Good : kExit_BadArguments;
    }
    if (importing.IsChosen())
        return Run([&] { return importing.Run(); });
    if (certifying.IsChosen())
        return Run([&] { return certifying.Run(); });
    if (exporting.IsChosen())
        return Run([&] { return exporting.Run(); });
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
}

}  // namespace KVR
