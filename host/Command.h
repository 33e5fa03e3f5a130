#pragma once

#include <stdexcept>
#include <string>

#include "host/ExitStatus.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// Arguments that each make sense, but not together: bad arguments like others. Its text is a sentence.
class ArgumentError : public std::runtime_error
{
public:
    using runtime_error::runtime_error;
};

/// One command of the program. Making one declares the command with its options; when the arguments name it, it runs.
class Command
{
public:
    virtual ~Command() = default;
    Command(Command const&) = delete;
    Command& operator=(Command const&) = delete;

    /// Whether the arguments, which must have been parsed, name this command.
    bool IsChosen() const;

    /// Does what the arguments ask for. What fails without an exit status of its own is an exception: OutputError when
    /// standard output cannot be written, otherwise any other of the standard library, whose text is the complaint.
    virtual ExitStatus Run() = 0;
    /// With what the program ends after such an exception.
    virtual ExitStatus FailureStatus() const noexcept { return kExit_Failed; }

protected:
    /// A command of that name; the description is the one of the help. The program must outlive it.
    Command(CLI::App& program, std::string const& name, std::string const& description);

    /// Takes the command's options.
    CLI::App& Arguments() const noexcept { return m_arguments; }

private:
    CLI::App& m_arguments;
};

/// Says a sentence, given without its full stop, on standard error.
void Complain(std::string const& sentence);

}  // namespace KVR
