// Chooses the mistake that the readers make, and writes down which mistakes each test comes by.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

#include "producer/XMLProducerImpl.h"
#include "tests/mutation/mistakes.h"

namespace
{

constexpr std::size_t kMostMistakes = 1 << 14;

// Names the file that a run without a mistake writes; the program that was started first has it to itself.
constexpr char const* kMetVariable = "KVR_MUTANTS_MET";
constexpr char const* kMetByParentVariable = "KVR_MUTANTS_MET_BY_PARENT";

// Where the mistakes are marked that were come by. Programs that a test starts share it with the test's own, through
// the file's name in the environment. Tables are made before the program begins, so that the first who asks makes it.
bool* Met()
{
    static bool* const met = []
    {
        char const* const path = std::getenv(kMetVariable);
        int const file = path ? open((std::string(path) + ".marks").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644) : -1;
        bool const isShared = file >= 0 && ftruncate(file, kMostMistakes) == 0;
        void* const marks = mmap(nullptr, kMostMistakes, PROT_READ | PROT_WRITE,
                                 isShared ? MAP_SHARED : MAP_PRIVATE | MAP_ANONYMOUS, isShared ? file : -1, 0);
        if (file >= 0)
            close(file);
        if (marks == MAP_FAILED)
            std::abort();
        return static_cast<bool*>(marks);
    }();
    return met;
}

int Chosen()
{
    static int const chosen = []
    {
        char const* const text = std::getenv("KVR_MUTANT");
        return text ? std::atoi(text) : -1;
    }();
    return chosen;
}

class Recorder : public testing::EmptyTestEventListener
{
public:
    explicit Recorder(char const* path) : m_file(path) {}

    void OnTestProgramStart(testing::UnitTest const&) override { Write("-", 0); }
    void OnTestStart(testing::TestInfo const&) override { std::fill(Met(), Met() + kMostMistakes, false); }
    void OnTestEnd(testing::TestInfo const& test) override
    {
        Write(std::string(test.test_suite_name()) + "." + test.name(), test.result()->elapsed_time());
    }

private:
    void Write(std::string const& name, long long milliseconds)
    {
        m_file << name << ' ' << milliseconds;
        for (std::size_t i = 0; i < kMostMistakes; ++i)
        {
            if (Met()[i])
                m_file << ' ' << i;
        }
        // Nothing stays in the buffer that a forked child could write, too.
        m_file << std::endl;
    }

    std::ofstream m_file;
};

[[maybe_unused]] bool const isRecording = []
{
    char const* const path = std::getenv(kMetVariable);
    bool const records = path && !std::getenv(kMetByParentVariable);
    if (records)
    {
        setenv(kMetByParentVariable, "1", 1);
        testing::UnitTest::GetInstance()->listeners().Append(new Recorder(path));
    }
    return records;
}();

}  // namespace

bool kvr_mutant(int number)
{
    Met()[number] = true;
    return number == Chosen();
}

namespace KVR
{

void* mutantProducer = nullptr;

void MutantMapId(UTF8String& id)
{
    if (mutantProducer)
        static_cast<XMLProducerImpl*>(mutantProducer)->ApplyIdMapping(id);
}

UTF8String MutantMapped(UTF8String id)
{
    MutantMapId(id);
    return id;
}

IdSet MutantMapped(IdSet const& ids)
{
    IdSet mapped;
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        mapped.AddWithoutUniquenessCheck(MutantMapped(ids.At(i)));
    return mapped;
}

}  // namespace KVR
