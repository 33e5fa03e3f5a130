// Writes the scene that others measure: kvr_bench_write INSTANCES PATH.

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/SceneGenerator.h"

int main(int argc, char** argv)
{
    try
    {
        if (argc != 3)
            return std::fputs("kvr_bench_write INSTANCES PATH\n", stderr), 2;
        KVR::Bench::WriteScene(argv[2], static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)));
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_write: %s\n", exception.what());
        return 1;
    }
}
