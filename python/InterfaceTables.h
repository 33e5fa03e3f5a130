#pragma once

#include <string>

namespace KVR::Python
{

/// The tables of describe as one JSON list, each table behind those of its bases and of what it answers: its name, its
/// bases, whether an object of the scene may have it, and its rows with their types. Classes of Python are made of it,
/// and so are their stubs.
std::string InterfaceTablesJson();

}  // namespace KVR::Python
