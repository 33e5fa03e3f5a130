#include "host/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "framework/kernel/KernelMessages.h"

namespace KVR
{

namespace
{

bool isEndedByPipe = false;

}  // namespace

void PrepareStandardStreams()
{
    // open takes the lowest free descriptor, so the gaps among the first three are filled in order.
    for (int descriptor = open("/dev/null", O_RDWR); descriptor >= 0; descriptor = open("/dev/null", O_RDWR))
    {
        if (descriptor > STDERR_FILENO)
        {
            close(descriptor);
            break;
        }
    }
    isEndedByPipe = std::signal(SIGPIPE, SIG_IGN) != SIG_IGN;
    // The program writes by itself. Open CASCADE tells on streams what nobody asked for.
    SilenceKernel();
    std::cout.rdbuf(nullptr);
    std::cerr.rdbuf(nullptr);
    std::clog.rdbuf(nullptr);
}

bool IsEndedByPipe()
{
    return isEndedByPipe;
}

}  // namespace KVR
