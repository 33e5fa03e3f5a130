#include "framework/kernel/MemoryWatch.h"

#include <gtest/gtest.h>

#include <Standard_ConstructionError.hxx>
#include <Standard_OutOfMemory.hxx>
#include <cerrno>
#include <limits>
#include <new>
#include <sstream>

namespace KVR::Test
{

TEST(MemoryWatch, SeesAnAllocationThatFailedWhileItLasted)
{
    errno = ENOMEM;
    MemoryWatch const watch;
    EXPECT_NO_THROW(watch.Check()) << "what failed before";
    errno = ENOMEM;
    EXPECT_THROW(watch.Check(), std::bad_alloc);
    errno = ERANGE;
    EXPECT_NO_THROW(watch.Check());
}

TEST(MemoryWatch, TellsAFailureForWantOfMemoryFromOthers)
{
    MemoryWatch const watch;
    Standard_OutOfMemory const failure("none left");
    EXPECT_THROW(watch.Check(failure), std::bad_alloc);
    // As Open CASCADE makes one failure of another.
    std::ostringstream text;
    text << "EXCEPTION in a reader" << failure;
    EXPECT_THROW(watch.Check(Standard_Failure(text.str().c_str())), std::bad_alloc);
    EXPECT_NO_THROW(watch.Check(Standard_ConstructionError("a radius below 0")));
}

}  // namespace KVR::Test
