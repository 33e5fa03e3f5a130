// The program kvr: a host that reads a scene through the installed interfaces and shows what it is served.

#include "host/Program.h"
#include "host/Signals.h"
#include "host/StandardStreams.h"

int main(int argc, char** argv)
{
    KVR::PrepareStandardStreams();
    int const status = KVR::RunProgram(argc, argv);
    KVR::EndBySignal();
    return status;
}
