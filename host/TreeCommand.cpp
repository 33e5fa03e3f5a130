#include "host/TreeCommand.h"

#include <CLI/CLI.hpp>

#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "host/NumberRange.h"
#include "host/tree/Tree.h"

namespace KVR
{

namespace
{

constexpr NumberRange kDepths{0, 1e6, true};
constexpr NumberRange kLines{1, 1e12, true};

}  // namespace

TreeCommand::TreeCommand(CLI::App& program)
    : SceneCommand(
          program, "tree",
          "Show the product tree: a line per file, instance with what it places, component and object. The closing "
          "line counts different files, assemblies, parts and instances, and the occurrences of assemblies and parts")
{
    CLI::App& arguments = Arguments();
    kDepths.Check(
        *arguments.add_option("--depth", m_options.depth, "Show so many levels below the root")->type_name("N"));
    AddJsonOption(arguments, m_options.json);
    m_color.AddTo(arguments);
    arguments.add_flag("--styles", m_options.styles,
                       "Show the diffuse colours of the styles that objects name: blocks of colour on a terminal, "
                       "#rrggbb elsewhere");
    kLines.Check(
        *arguments.add_option("--max-occurrences", m_options.maxOccurrences, "End the tree after so many lines")
             ->type_name("N")
             ->capture_default_str());
}

StoreNeeds TreeCommand::Needs() const
{
    StoreNeeds needs = StoreNeeds::None();
    needs.geometry = true;
    needs.assets = m_options.styles;
    return needs;
}

std::string TreeCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    if (!reading.rootId)
        return OfScene("the scene has no root file, so there is no tree to show");
    m_options.color = m_color.IsWanted();
    m_options.colorBlocks = m_options.color && IsTerminal();
    if (WriteTree(producer, *reading.rootId, m_options, out))
        return {};
    return OfScene("the tree has more than " + std::to_string(m_options.maxOccurrences) +
                   " lines and is cut there; --depth and --max-occurrences set how much is shown");
}

}  // namespace KVR
