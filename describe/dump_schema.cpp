// Writes the JSON Schema of a dump to standard output.

#include <cstdio>
#include <exception>
#include <string>

#include "describe/Schema.h"

int main()
{
    try
    {
        std::string const schema = KVR::DumpSchema();
        bool const isWritten = std::fwrite(schema.data(), 1, schema.size(), stdout) == schema.size();
        return isWritten && std::fflush(stdout) == 0 ? 0 : 1;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_dump_schema: %s\n", exception.what());
        return 1;
    }
}
