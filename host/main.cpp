// The program kvr: a host that reads a scene through the installed interfaces and shows what it is served.

#include "host/Program.h"
#include "host/StandardStreams.h"

int main(int argc, char** argv)
{
    KVR::PrepareStandardStreams();
    return KVR::RunProgram(argc, argv);
}
