// Prints the tables of the interfaces, of which the stubs of the package are made.

#include <cstdio>

#include "python/InterfaceTables.h"

int main()
{
    return std::puts(KVR::Python::InterfaceTablesJson().c_str()) < 0 ? 1 : 0;
}
