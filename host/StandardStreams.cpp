#include "host/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace KVR
{

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
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace KVR
