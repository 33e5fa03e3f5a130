// Chooses the mistake that the readers make, and writes down which mistakes each test comes by.

#include <gtest/gtest.h>

#include <bitset>
#include <cstdlib>
#include <fstream>

#include "producer/XMLProducerImpl.h"
#include "tests/mutation/mistakes.h"

namespace
{

constexpr std::size_t kMostMistakes = 1 << 14;

// Tables are made before the program begins, so that nothing here may be made then.
constinit bool met[kMostMistakes] = {};

int Chosen()
{
    static int const chosen = [] {
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
    void OnTestStart(testing::TestInfo const&) override { std::fill(std::begin(met), std::end(met), false); }
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
            if (met[i])
                m_file << ' ' << i;
        }
        m_file << '\n';
    }

    std::ofstream m_file;
};

[[maybe_unused]] bool const isRecording = [] {
    char const* const path = std::getenv("KVR_MUTANTS_MET");
    if (path)
        testing::UnitTest::GetInstance()->listeners().Append(new Recorder(path));
    return path != nullptr;
}();

}  // namespace

bool kvr_mutant(int number)
{
    met[number] = true;
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
