#include "host/ViewCommand.h"

#include <CLI/CLI.hpp>

#include "exchange/ConvertModel.h"
#include "host/CommonOptions.h"
#include "host/Conclude.h"
#include "host/ExportArguments.h"
#include "host/LongWork.h"

namespace KVR
{

namespace
{

constexpr char kExtension[] = ".html";

std::string ProblemOfPage(std::string const& path)
{
    return path.ends_with(kExtension) ? ProblemOfTarget(path) : path + " does not end in " + kExtension;
}

}  // namespace

ViewCommand::ViewCommand(CLI::App& program)
    : Command(program, "view",
              "Make one HTML file that shows a scene (.xml) or a model in a browser, without a server and from disk: "
              "its picture, tree, properties, views, sections and notes")
{
    Arguments().add_option("source", m_source, "The scene, or a model's file")->required()->type_name("IN");
    Arguments()
        .add_option("target", m_target, "The file to be")
        ->required()
        ->type_name("OUT.html")
        ->check(&ProblemOfPage);
    AddFilterOptions(Arguments(), m_filter, "Show");
    Arguments()
        .add_option("--max-triangles", m_mostTriangles, "Make meshes coarser until no more than these are drawn")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    m_import.AddTo(Arguments());
    m_meshing.AddTo(Arguments());
    AddReadingOptions(Arguments(), m_scene);
    AddInsecureOption(Arguments(), m_scene);
    AddTimeoutOption(Arguments(), m_timeout);
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus ViewCommand::Run()
{
    ConvertOptions options;
    options.import = m_import.Options(m_meshing);
    options.exportation.quality = m_meshing.Quality();
    options.exportation.filter = m_filter;
    options.exportation.mostTriangles = m_mostTriangles;
    options.scene = m_scene;
    options.import.timeout = options.exportation.timeout = m_timeout;
    ConvertResult const result = Watched(
        !m_isQuiet, [&](Progress const& progress) { return ConvertModel(m_source, m_target, options, progress); });
    return Conclude(result, m_source, m_target, m_isQuiet);
}

}  // namespace KVR
