#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

inline constexpr char kSubscript[] = "std::out_of_range: invalid vector<T> subscript";
inline constexpr char kNothing[] = "nothing";

/// What a call threw, by its type and text. An exception of any other type goes on.
template <class Call>
std::string ThrownBy(Call const& call)
{
    try
    {
        call();
    }
    catch (GeneralException const& exception)
    {
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        EXPECT_EQ(exception.Reporter(reporter), kIsValueSpecified_No);
        EXPECT_EQ(Text(exception.Message()), exception.what());
        return std::string("GeneralException: ") + exception.what();
    }
    catch (FileException const& exception)
    {
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        bool const hasReporter = exception.Reporter(reporter) == kIsValueSpecified_Yes;
        return "FileException: " + std::to_string(exception.ErrorCode()) + ' ' + Text(exception.FileName()) + ' ' +
               (hasReporter ? std::to_string(reporter) : "no reporter");
    }
    catch (std::out_of_range const& exception)
    {
        return std::string("std::out_of_range: ") + exception.what();
    }
    catch (std::length_error const& exception)
    {
        return std::string("std::length_error: ") + exception.what();
    }
    return kNothing;
}

}  // namespace KVR::Test
