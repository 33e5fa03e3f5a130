// The program that kvr becomes for commands that need the library of exchange, and for the help.

#include "host/Commands.h"
#include "host/Program.h"
#include "host/Signals.h"
#include "host/StandardStreams.h"

int main(int argc, char** argv)
{
    KVR::PrepareStandardStreams();
    int const status = KVR::RunProgram(argc, argv, &KVR::AllCommands);
    KVR::EndBySignal();
    return status;
}
