// Stores whose author means harm: every digest fits, or the host allowed that it does not, and what the shapes say of
// themselves is not true.

#include <gtest/gtest.h>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/RareShapes.h"
#include "tests/support/ResidentMemory.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

constexpr int kNumbers[] = {INT32_MAX, INT32_MIN, -1, 0, 1, 1 << 30, 65536, 1000};
constexpr char const* kWords[] = {"2147483647", "-2147483648", "-1",  "0", "1073741824", "65536",     "99999999999",
                                  "7",          "1e308",       "nan", "-", "x",          "0x7fffffff"};

struct Form
{
    bool isText;
    bool isInsecure;
};

// Restores stores that are wrong in one place each, and watches what that costs.
class HostileStore : public testing::TestWithParam<Form>
{
protected:
    bool IsText() const { return GetParam().isText; }

    // The content of a store of the one shape, and where in it the shapes begin.
    std::string ContentOf(NamedShape const& shape)
    {
        std::vector<std::unique_ptr<ENTITY>> entities;
        entities.push_back(std::make_unique<BODY>(*shape.shape));
        std::string const bytes = StoreBytes(entities, IsText());
        std::string content = bytes.substr(bytes.find(IsText() ? "\n" : "", 32) + (IsText() ? 1 : 0));
        m_shapes = content.find(IsText() ? "\nCASCADE" : "\nOpen CASCADE");
        EXPECT_NE(m_shapes, std::string::npos);
        return content;
    }
    std::size_t Shapes() const { return m_shapes; }

    // Whether something came of it; the whole of that is asked.
    bool IsRestored(std::string const& content)
    {
        std::string bytes = WithHead(content, IsText());
        if (GetParam().isInsecure)
            SpoilDigest(bytes);
        std::clock_t const start = std::clock();
        RestoredStore const store(bytes, IsText(), GetParam().isInsecure);
        for (int i = 0; i < store.entities->count(); ++i)
            Ask(static_cast<BODY&>(*(*store.entities)[i]), *store.stream);
        m_longest = std::max(m_longest, std::clock() - start);
        ++m_count;
        EXPECT_EQ(store.result.ok(), store.entities->count() > 0);
        return store.result.ok();
    }

    // The memory of all stores together is that of the largest; the time is that of the processor.
    void ExpectLittleCost(long memoryBefore)
    {
        EXPECT_GT(m_count, 0);
        EXPECT_LT(m_longest, (kIsSanitized ? 20 : 2) * CLOCKS_PER_SEC);
        if (!kIsSanitized)
        {
            EXPECT_LT(PeakMemoryKB(), memoryBefore + 64 * 1024);
        }
    }

private:
    void SpoilDigest(std::string& bytes) const
    {
        char& last = bytes[IsText() ? 41 : 16];
        last = IsText() ? (last == '0' ? '1' : '0') : static_cast<char>(last ^ 1);
    }

    static void Ask(BODY const& body, HISTORY_STREAM& stream)
    {
        ActiveStreamScope const active(&stream);
        body.FaceList();
        for (std::unique_ptr<EDGE> const& edge : body.EdgeList())
        {
            curve* made = nullptr;
            static_cast<void>(GKI_MAKE_CURVE::from_edge(edge.get(), false, made));
        }
    }

    std::size_t m_shapes = 0;
    std::clock_t m_longest = 0;
    int m_count = 0;
};

INSTANTIATE_TEST_SUITE_P(Each, HostileStore,
                         testing::Values(Form{false, false}, Form{false, true}, Form{true, false}, Form{true, true}),
                         [](auto const& test) {
                             return std::string(test.param.isText ? "Text" : "Binary") +
                                    (test.param.isInsecure ? "Insecure" : "");
                         });

std::string With(std::string content, std::size_t at, void const* bytes, std::size_t count)
{
    count = std::min(count, content.size() - at);
    content.replace(at, count, static_cast<char const*>(bytes), count);
    return content;
}

TEST_P(HostileStore, NumbersThatAreNotTrueAreFoundOut)
{
    long const before = PeakMemoryKB();
    for (NamedShape const& shape : RareShapes())
    {
        std::string const content = ContentOf(shape);
        ASSERT_TRUE(IsRestored(content)) << shape.name;
        if (IsText())
        {
            constexpr std::string_view kBlanks = " \n";
            for (std::size_t at = Shapes(); (at = content.find_first_not_of(kBlanks, at)) != std::string::npos;)
            {
                std::size_t const end = content.find_first_of(kBlanks, at);
                for (char const* const word : kWords)
                    IsRestored(std::string(content).replace(at, end - at, word));
                at = end;
            }
            continue;
        }
        for (std::size_t at = Shapes(); at < content.size(); ++at)
        {
            for (int const number : kNumbers)
                IsRestored(With(content, at, &number, sizeof number));
            for (std::uint16_t const number : {0xFFFF, 26, 0})
                IsRestored(With(content, at, &number, sizeof number));
        }
    }
    ExpectLittleCost(before);
}

TEST_P(HostileStore, OtherBytesDoNoHarm)
{
    long const before = PeakMemoryKB();
    for (NamedShape const& shape : RareShapes())
    {
        std::string const content = ContentOf(shape);
        for (std::size_t at = Shapes(); at < content.size(); ++at)
        {
            for (int const flip : {0x01, 0x02, 0x10, 0x80, 0xFF})
            {
                auto const byte = static_cast<char>(content[at] ^ flip);
                IsRestored(With(content, at, &byte, 1));
            }
        }
    }
    ExpectLittleCost(before);
}

TEST_P(HostileStore, ShapesCutShortAreNone)
{
    long const before = PeakMemoryKB();
    for (NamedShape const& shape : RareShapes())
    {
        std::string const content = ContentOf(shape);
        // Behind the last number of the text form stand blanks.
        std::size_t const end = IsText() ? content.find_last_not_of(" \n") + 1 : content.size();
        for (std::size_t at = 0; at < end; ++at)
            EXPECT_FALSE(IsRestored(content.substr(0, at))) << shape.name << " " << at;
    }
    ExpectLittleCost(before);
}

}  // namespace

}  // namespace KVR::Test
