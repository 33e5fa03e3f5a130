#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inspect/query/QueryField.h"

namespace KVR
{

/// What an expression consists of, with no text of it left.
struct QueryTree
{
    enum class Relation : unsigned char
    {
        kEqual,
        kUnequal,
        kLike,
        kUnlike,
        kLess,
        kLessOrEqual,
        kGreater,
        kGreaterOrEqual,
        /// Of a flag, that it is set; of a property, that there is one of that name.
        kIs
    };

    /// A condition on one occurrence. "!=" and "!~" are the opposites of "=" and "~": they hold for an occurrence
    /// without such a value.
    struct Condition
    {
        enum class Kind : unsigned char
        {
            kAnd,
            kOr,
            kNot,
            kTest
        };
        Kind kind = Kind::kTest;
        /// Of kTest.
        QueryColumn column = {};
        Relation relation = Relation::kIs;
        /// The pattern of kLike; of a property also the text of its value.
        std::string text = {};
        /// In the unit of the field's type. Nothing where a property is compared with a text.
        std::optional<double> number = std::nullopt;
        /// Of kAnd and kOr two or more, of kNot one, of kTest none.
        std::vector<Condition> parts = {};
    };

    enum class StepKind : unsigned char
    {
        kAny,
        kFile,
        kAssembly,
        kPart,
        kInstance
    };

    /// One step of a path.
    struct Step
    {
        StepKind kind = StepKind::kAny;
        /// All of them hold.
        std::vector<Condition> conditions;
        /// The first of a path, which may be anywhere.
        bool isFirst = true;
        /// The last of a path, whose occurrences are those asked for.
        bool isLast = true;
        /// Of one that is not the first: directly below the step before it, or anywhere below.
        bool isChild = true;
    };

    /// The steps of all paths, one path after the other; at least one.
    std::vector<Step> steps;
};

}  // namespace KVR
