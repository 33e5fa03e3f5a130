#include "exchange/run/OutOfMemory.h"

#include <gtest/gtest.h>

#include <Standard.hxx>
#include <Standard_OutOfMemory.hxx>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <string>

#include "exchange/run/ChildProcess.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

// More than any machine has. Sanitizers end what asks for it, in a way of their own.
constexpr std::size_t kTooMuch = std::size_t{1} << 60U;

ChildResult RunAndGoOn(void (*ask)())
{
    auto const work = [ask](ChildVoice const&)
    {
        try
        {
            ask();
        }
        catch (...)
        {
            // As Open CASCADE does.
        }
        return std::string("done");
    };
    return RunInChild(work, {});
}

void ExpectOutOfMemory(ChildResult const& result)
{
    EXPECT_TRUE(result.isOutOfMemory);
    EXPECT_EQ(result.answer, std::nullopt);
    EXPECT_EQ(result.failure, "there is not enough memory for it, which may take 2048 MiB");
}

}  // namespace

TEST(OutOfMemory, AFailureOfNewThatSomebodyHidesEndsAChild)
{
    ExpectOutOfMemory(RunAndGoOn(
        []
        {
            if (kIsSanitized)
                std::get_new_handler()();
            else
                ::operator delete(::operator new(kTooMuch));
        }));
}

TEST(OutOfMemory, AFailureOfOpenCascadeThatSomebodyHidesEndsAChild)
{
    ExpectOutOfMemory(RunAndGoOn(
        []
        {
            if (kIsSanitized)
                throw Standard_OutOfMemory();
            Standard_Address memory = Standard::Allocate(kTooMuch);
            Standard::Free(memory);
        }));
}

TEST(OutOfMemory, WhatIsThrownOfItEndsAChild)
{
    ExpectOutOfMemory(RunInChild([](ChildVoice const&) -> std::string { throw std::bad_alloc(); }, {}));
}

TEST(OutOfMemory, ElsewhereOpenCascadeThrowsAsItDoes)
{
    EXPECT_EQ(std::get_new_handler(), nullptr);
    try
    {
        throw Standard_OutOfMemory("so much");
    }
    catch (Standard_Failure const& failure)
    {
        EXPECT_STREQ(failure.GetMessageString(), "so much");
    }
    EXPECT_STREQ(Standard_OutOfMemory().GetMessageString(), "");
}

// Where a library comes first that has the constructor of Open CASCADE, this one's is never called.
TEST(OutOfMemory, OpenCascadeOfTheProgramIsBoundToOurConstructor)
{
    std::string const program = (std::filesystem::path(KVR_TOOL).parent_path() / "../libexec/kvr/kvr-whole").string();
    std::string const command = "LD_BIND_NOW=1 LD_DEBUG=bindings '" + program + "' --version 2>&1";
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const output(popen(command.c_str(), "r"), &pclose);
    ASSERT_TRUE(output);
    std::array<char, 4096> bytes;
    std::string binding;
    while (binding.empty() && std::fgets(bytes.data(), bytes.size(), output.get()))
        if (std::string const line = bytes.data(); line.find("_ZN20Standard_OutOfMemoryC1EPKc") != std::string::npos &&
                                                   line.find("libTKernel.so") < line.find(" to "))
            binding = line.substr(line.find(" to "));
    EXPECT_EQ(binding.find("libTKernel.so"), std::string::npos) << binding;
    EXPECT_NE(binding, "");
    while (std::fgets(bytes.data(), bytes.size(), output.get()))
    {
        // To its end.
    }
}

}  // namespace KVR::Test
