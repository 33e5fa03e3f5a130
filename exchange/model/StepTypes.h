#pragma once

#include <array>
#include <string>
#include <string_view>

namespace KVR
{

/// What import makes of the entities of a type.
struct StepRole
{
    enum class Kind
    {
        /// Nothing.
        kUnknown,
        /// Stands in the scene by itself.
        kRoot,
        /// Stands in the scene when annotations are read.
        kDrawing,
        /// A dimension or tolerance: stands in the scene when it became a note.
        kAnnotation,
        /// A property definition: stands in the scene when its values do.
        kProperty,
        /// Belongs to what refers to it.
        kDetail,
        /// Says something of the entities that it refers to by two of its parameters.
        kLink
    };

    Kind kind = Kind::kUnknown;
    /// The places of the parameters of a link; below 0 for none.
    std::array<int, 2> links{-1, -1};
};

/// The role of a type, or of several with blanks between them: that of the first which is no detail, as far as all of
/// them are known.
StepRole StepRoleOf(std::string_view types);

/// What entities of a type without a role are called together, in the plural.
std::string StepLossOf(std::string_view type);

}  // namespace KVR
