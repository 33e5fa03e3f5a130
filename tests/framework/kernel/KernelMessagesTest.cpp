#include "framework/kernel/KernelMessages.h"

#include <gtest/gtest.h>

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Standard_DivideByZero.hxx>
#include <Standard_NoSuchObject.hxx>
#include <Standard_OutOfMemory.hxx>
#include <Standard_OutOfRange.hxx>
#include <Standard_ProgramError.hxx>
#include <Standard_TypeMismatch.hxx>

namespace KVR::Test
{

TEST(KernelFailureText, IsThatOfTheKindAndNotOpenCascadesOwn)
{
    EXPECT_EQ(KernelFailureText(Standard_OutOfMemory("raw")), "there is not enough memory for it");
    EXPECT_EQ(KernelFailureText(Standard_OutOfRange("raw")), "it has a number that is out of its range");
    EXPECT_EQ(KernelFailureText(Standard_DivideByZero("raw")), "it has numbers that cannot be computed with");
    EXPECT_EQ(KernelFailureText(Standard_NoSuchObject("raw")), "it lacks something that it names");
    EXPECT_EQ(KernelFailureText(Standard_TypeMismatch("raw")), "it contradicts itself");
    EXPECT_EQ(KernelFailureText(Standard_ProgramError("raw")), "it is more than Open CASCADE can work with");
}

TEST(SilenceKernel, NothingIsPrintedFromThenOn)
{
    SilenceKernel();
    testing::internal::CaptureStdout();
    Message::SendFail("raw");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace KVR::Test
