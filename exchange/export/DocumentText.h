#pragma once

#include <TCollection_ExtendedString.hxx>
#include <string>

namespace KVR
{

/// A text in UTF-8 as documents of Open CASCADE have them.
inline TCollection_ExtendedString DocumentText(std::string const& text)
{
    return {text.c_str(), Standard_True};
}

/// Three numbers that stand apart; false, with the outputs undefined, for another text.
bool ReadTriple(std::string const& text, double& x, double& y, double& z);

}  // namespace KVR
