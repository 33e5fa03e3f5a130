// What all commands have in common, and that the documents name the options that there are.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::StartsWith;

using Names = std::set<std::string>;
// The options of each command, "--help" left out.
using OptionsOfCommands = std::map<std::string, Names>;

std::vector<std::string> LinesOf(std::string const& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> LinesOfDocument(std::string const& name)
{
    std::ostringstream text;
    text << std::ifstream(std::string(KVR_DOCS_DIR) + "/" + name).rdbuf();
    return LinesOf(text.str());
}

// All that the expression's first group finds in a text.
std::vector<std::string> Found(std::string const& text, char const* expression)
{
    std::regex const regex(expression);
    std::vector<std::string> found;
    for (std::sregex_iterator i(text.begin(), text.end(), regex); i != std::sregex_iterator(); ++i)
        found.push_back((*i)[1]);
    return found;
}

Names Set(std::vector<std::string> const& names)
{
    return {names.begin(), names.end()};
}

// What a help says of one command, or of the program.
struct Help
{
    explicit Help(std::vector<std::string> const& arguments)
    {
        ToolRun const run = RunTool(arguments);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.error, "");
        std::string section;
        for (std::string const& line : LinesOf(run.out))
        {
            std::smatch match;
            if (!line.empty() && line[0] != ' ')
                section = line;
            else if (section == "Options:" && std::regex_search(line, match, std::regex(R"(^  (?:-.,)?(--[a-z-]+))")))
                options.insert(match[1]);
            else if (section == "Positionals:" && std::regex_search(line, match, std::regex(R"(^  \w+ (\S+))")))
                m_arguments += " " + match[1].str();
            else if (section == "Subcommands:" && std::regex_search(line, match, std::regex(R"(^  (\w+))")))
                commands.push_back(match[1]);
        }
    }
    // With which words the command is called.
    std::string Synopsis(std::string const& command) const { return "kvr " + command + " [OPTIONS]" + m_arguments; }

    Names options;
    std::vector<std::string> commands;

private:
    std::string m_arguments;
};

std::vector<std::string> const& Commands()
{
    static std::vector<std::string> const commands = Help({"--help"}).commands;
    return commands;
}

Help const& HelpOf(std::string const& command)
{
    static std::map<std::string, Help> helps;
    auto const found = helps.find(command);
    return found != helps.end() ? found->second : helps.emplace(command, Help({command, "--help"})).first->second;
}

Names SynopsesOfHelp()
{
    Names synopses;
    for (std::string const& command : Commands())
        synopses.insert(HelpOf(command).Synopsis(command));
    return synopses;
}

OptionsOfCommands OptionsOfHelp()
{
    OptionsOfCommands options;
    for (std::string const& command : Commands())
    {
        options[command] = HelpOf(command).options;
        EXPECT_EQ(options[command].erase("--help"), 1U) << command;
    }
    return options;
}

// The commands that a text names, which may be "all that read a scene".
std::vector<std::string> CommandsIn(std::string const& text)
{
    std::vector<std::string> named;
    bool const isReaders = text.find("that read a scene") != std::string::npos;
    for (std::string const& command : Commands())
    {
        // Others have options of their own.
        bool const reads = HelpOf(command).options.contains("--strict") &&
                           HelpOf(command).Synopsis(command).find(" [OPTIONS] SCENE") != std::string::npos;
        if ((isReaders && reads) || std::regex_search(text, std::regex("\\b" + command + "\\b")))
            named.push_back(command);
    }
    return named;
}

// The tables of options: one for several commands, with a column that names them, and others whose heads or sections
// do.
OptionsOfCommands OptionsOfTheGuide()
{
    OptionsOfCommands options;
    std::string section;
    std::string head;
    for (std::string const& line : LinesOfDocument("tool.md"))
    {
        if (line.starts_with("## "))
            section = line;
        if (line.starts_with("| Option"))
            head = line;
        if (!line.starts_with("|"))
            head.clear();
        std::vector<std::string> const cells = Found(line, R"(\|\s*([^|]+?)\s*(?=\|))");
        if (head.empty() || cells.size() < 2)
            continue;
        bool const hasColumn = head.find("| Of |") != std::string::npos;
        bool const namesCommands = head.starts_with("| Option of ");
        for (std::string const& command : CommandsIn(hasColumn ? cells[1] : namesCommands ? head : section))
            for (std::string const& option : Found(cells[0], "(--[a-z][a-z-]*)"))
                options[command].insert(option);
    }
    return options;
}

// The sections of options: a heading names commands, and a text in brackets in front of an option others or, with
// "also", more.
OptionsOfCommands OptionsOfTheManual()
{
    OptionsOfCommands options;
    std::string section;
    std::vector<std::string> tags;
    for (std::string const& source : LinesOfDocument("kvr.1"))
    {
        std::string const line = std::regex_replace(source, std::regex(R"(\\-)"), "-");
        std::smatch match;
        if (line.starts_with(".S"))
            section = line.starts_with(".SS Of ") ? line : "";
        else if (!section.empty() && line.starts_with(".B"))
            tags = Found(line, "(--[a-z][a-z-]*)");
        else if (!line.starts_with("."))
        {
            std::string commands = section;
            if (std::regex_search(line, match, std::regex(R"(^\((also )?([^)]*)\))")))
                commands = (match[1].matched ? section + ", " : "") + match[2].str();
            for (std::string const& command : CommandsIn(commands))
                options[command].insert(tags.begin(), tags.end());
            tags.clear();
        }
    }
    return options;
}

void ExpectSame(OptionsOfCommands const& documented, OptionsOfCommands const& offered)
{
    for (auto const& [command, options] : offered)
        EXPECT_EQ(documented.contains(command) ? documented.at(command) : Names(), options) << command;
    EXPECT_EQ(documented.size(), offered.size());
}

TEST(Commands, EachHasAHelp)
{
    EXPECT_EQ(Set(Commands()),
              Names({"certify", "check", "convert", "diff", "dump", "explain", "export", "hash", "import", "info",
                     "notes", "picture", "query", "stats", "tree", "view", "views"}));
    for (std::string const& command : Commands())
    {
        ToolRun const run = RunTool({command, "--help"});
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_THAT(run.out, HasSubstr("Usage: kvr " + command + " [OPTIONS]"));
        EXPECT_THAT(run.out, HasSubstr("\nExamples:\n"));
        EXPECT_EQ(RunTool({command, "-h"}).out, run.out);
    }
}

TEST(Commands, EachRefusesWhatItDoesNotKnow)
{
    for (std::string const& command : Commands())
    {
        std::vector<std::vector<std::string>> refused = {{command}, {command, "--colour", "a", "b.stl"}};
        if (!HelpOf(command).Synopsis(command).ends_with("..."))
            refused.push_back({command, "a", "b.stl", "c"});
        for (std::vector<std::string> const& arguments : refused)
        {
            ToolRun const run = RunTool(arguments);
            EXPECT_EQ(run.status, 2) << command;
            EXPECT_EQ(run.out, "") << command;
            EXPECT_THAT(run.error, StartsWith("kvr: ")) << command;
            EXPECT_THAT(run.error, testing::EndsWith("; see kvr --help\n")) << command;
        }
    }
}

TEST(Commands, OneAtATime)
{
    EXPECT_EQ(RunTool({}).status, 2);
    EXPECT_EQ(RunTool({"fly"}).status, 2);
    EXPECT_EQ(RunTool({"tree", "a.xml", "dump", "a.xml"}).status, 2);
}

TEST(Commands, EachThatReadsASceneComplainsOfOneThatIsNotThere)
{
    std::vector<std::string> const readers = CommandsIn("all that read a scene");
    EXPECT_EQ(Set(readers), Names({"dump", "export", "hash", "notes", "query", "stats", "tree", "views"}));
    for (std::string const& command : readers)
    {
        std::vector<std::string> arguments = {command, "/nowhere/scene.xml"};
        TempFolder folder;
        if (command == "export")
            arguments.push_back(folder.NarrowPathOf("out.stl"));
        if (command == "query")
            arguments.emplace_back("part");
        ToolRun const run = RunTool(arguments);
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_THAT(run.error, StartsWith("kvr: ")) << command;
        EXPECT_THAT(run.error, HasSubstr("/nowhere/scene.xml")) << command;
        EXPECT_THAT(run.error, HasSubstr("No such file")) << command;
        EXPECT_EQ(LinesOf(run.error).size(), 1U) << command;
        // A dump tells of the failure in JSON as well.
        EXPECT_EQ(run.out.empty(), command != "dump") << command;
    }
}

TEST(Commands, TheGuideHasEveryOptionAndNoOther)
{
    ExpectSame(OptionsOfTheGuide(), OptionsOfHelp());
}

TEST(Commands, TheManualHasEveryOptionAndNoOther)
{
    ExpectSame(OptionsOfTheManual(), OptionsOfHelp());
}

TEST(Commands, BothDocumentsBeginWithTheirSynopses)
{
    Names guide;
    for (std::string const& line : LinesOfDocument("tool.md"))
    {
        if (line.starts_with("    kvr ") && line.find(" [OPTIONS] ") != std::string::npos)
            guide.insert(line.substr(4));
    }
    EXPECT_EQ(guide, SynopsesOfHelp());
    Names manual;
    std::string command;
    for (std::string const& line : LinesOfDocument("kvr.1"))
    {
        std::smatch match;
        if (line.starts_with(".B kvr "))
            command = line.substr(3);
        else if (std::regex_match(line, match, std::regex(R"(\.RI \[ options \] "( [^"]*)\")")))
            manual.insert(command + " [OPTIONS]" + match[1].str());
    }
    EXPECT_EQ(manual, SynopsesOfHelp());
}

}  // namespace

}  // namespace KVR::Test
