// Xerces that cannot be set up is a file that cannot be opened. Each test runs in a process of its own, since Xerces
// does not recover from that.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

class NoMemory final : public xercesc::MemoryManager
{
public:
    xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
    void* allocate(XMLSize_t) override
    {
        ++refusals;
        throw std::bad_alloc();
    }
    void deallocate(void*) override {}

    int refusals = 0;
};

// Xerces takes the manager that it finds when it is set up for the first time.
NoMemory& WithoutMemory()
{
    static NoMemory manager;
    xercesc::XMLPlatformUtils::fgMemoryManager = &manager;
    return manager;
}

// 0 when the statement held in the child process.
int Begin()
{
    TempFolder const folder;
    UTF16String const path = folder.Write("scene.xml", "<S><IPart ID='p'/></S>");
    NoMemory const& manager = WithoutMemory();
    XMLProducer producer(path, nullptr);
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    catch (FileException const& exception)
    {
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        bool const isComplete = exception.FileName() == path && exception.ErrorCode() == 0 &&
                                exception.Reporter(reporter) == kIsValueSpecified_Yes && reporter == 2;
        return isComplete && manager.refusals > 0 && !producer.Load("p") ? 0 : 2;
    }
    return 3;
}

int Query()
{
    TempFolder const folder;
    UTF16String const path =
        folder.Write("scene.xml", "<S><IFile ID='f'><ChildSet><A ID='a' Type='IAssembly'/></ChildSet></IFile></S>");
    NoMemory const& manager = WithoutMemory();
    XMLProducer producer(path, nullptr);
    bool has = true;
    producer.QueryFile()->HasAssemblyStructure(has);
    return !has && manager.refusals > 0 ? 0 : 2;
}

class FailedInitialize : public testing::Test
{
protected:
    // Starts the program anew for the statement, so that no other test has set Xerces up.
    FailedInitialize() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~FailedInitialize() override { GTEST_FLAG_SET(death_test_style, "fast"); }
};

}  // namespace

TEST_F(FailedInitialize, IsAFailedOpenToBeginProcess)
{
    EXPECT_EXIT(std::_Exit(Begin()), testing::ExitedWithCode(0), "");
}

TEST_F(FailedInitialize, IsAnUnfilledResultToQueryFile)
{
    EXPECT_EXIT(std::_Exit(Query()), testing::ExitedWithCode(0), "");
}

}  // namespace KVR::Test
