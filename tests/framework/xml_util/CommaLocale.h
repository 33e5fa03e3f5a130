#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <locale>

/// A test that puts a locale with a decimal comma in force, in the C library and as the global locale of C++.
class UnderACommaLocale : public testing::Test
{
protected:
    void SetUp() override
    {
        constexpr char const* kName = "de_DE.UTF-8";
        ASSERT_NO_THROW(std::locale::global(std::locale(kName))) << "scripts/setup makes the locale " << kName;
        ASSERT_NE(std::setlocale(LC_ALL, kName), nullptr);
        ASSERT_EQ(std::strtod("1,5", nullptr), 1.5) << "the locale is not in force";
        ASSERT_EQ(std::use_facet<std::numpunct<char>>(std::locale()).decimal_point(), ',');
    }

    void TearDown() override
    {
        std::locale::global(std::locale::classic());
        std::setlocale(LC_ALL, "C");
    }
};
