#include "framework/api/ObjectCollector.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/framework/api/Fakes.h"

namespace
{

using namespace KVR;

// Notes its end by its name.
class Mortal : public FakePart
{
public:
    Mortal(char const* id, char const* name, std::string& ended)
        : FakePart(UTF8String(id)), m_name(name), m_ended(ended)
    {
    }
    ~Mortal() override { m_ended += m_name; }

private:
    char const* m_name;
    std::string& m_ended;
};

UTF8String Id(std::size_t number)
{
    return UTF8String("id" + std::to_string(number));
}

// Counts the living.
class Counted : public FakePart
{
public:
    Counted(UTF8String id, std::size_t& living) : FakePart(std::move(id)), m_living(living) { ++m_living; }
    ~Counted() override { --m_living; }

private:
    std::size_t& m_living;
};

TEST(ObjectCollector, AnswersNothingUntilFilled)
{
    ObjectCollector collector;
    EXPECT_EQ(collector.QueryObject("a"), nullptr);
    EXPECT_EQ(collector.QueryObject(""), nullptr);
    EXPECT_FALSE(collector.HasObject("a"));
    EXPECT_FALSE(collector.Dispose("a"));
}

TEST(ObjectCollector, AnswersObjectsByTheirIds)
{
    ObjectCollector collector;
    auto* const a = new FakePart(UTF8String("a"));
    auto* const b = new FakeFile(UTF8String("b"));
    auto* const nameless = new FakePart(UTF8String(""));
    collector.AddObject(a);
    collector.AddObject(b);
    collector.AddObject(nameless);
    EXPECT_EQ(collector.QueryObject("a"), a);
    EXPECT_EQ(collector.QueryObject("b"), b);
    EXPECT_EQ(collector.QueryObject(""), nameless);
    EXPECT_TRUE(collector.HasObject("b"));
    EXPECT_FALSE(collector.HasObject("A"));
    EXPECT_EQ(collector.QueryObject("c"), nullptr);
}

TEST(ObjectCollector, TellsIdsOfAnyLengthApart)
{
    ObjectCollector collector;
    std::vector<FakePart*> parts;
    std::string const text(600, 'x');
    for (std::size_t length = 0; length <= text.size(); ++length)
    {
        parts.push_back(new FakePart(UTF8String(text.substr(0, length))));
        collector.AddObject(parts.back());
    }
    for (std::size_t length = 0; length <= text.size(); ++length)
        EXPECT_EQ(collector.QueryObject(UTF8String(text.substr(0, length))), parts[length]) << length;
    EXPECT_EQ(collector.QueryObject(UTF8String(text.substr(0, 200) + 'y')), nullptr);
    EXPECT_EQ(collector.QueryObject(UTF8String(text.substr(0, 10) + 'y')), nullptr);
}

TEST(ObjectCollector, NullHasNoEffect)
{
    ObjectCollector collector;
    collector.AddObject(nullptr);
    collector.Visit(static_cast<IPart*>(nullptr));
    EXPECT_FALSE(collector.HasObject(""));
}

TEST(ObjectCollector, DestroysItsObjectsAtItsEndInTheOrderInWhichTheyCame)
{
    std::string ended;
    {
        ObjectCollector collector;
        collector.AddObject(new Mortal("b", "1", ended));
        collector.AddObject(new Mortal("a", "2", ended));
        collector.AddObject(new Mortal("b", "3", ended));
        collector.AddObject(new Mortal("c", "4", ended));
        EXPECT_EQ(ended, "");
    }
    EXPECT_EQ(ended, "1234");
}

TEST(ObjectCollector, OfSeveralObjectsWithOneIdTheFirstIsAnsweredAndAllAreOwned)
{
    std::string ended;
    ObjectCollector collector;
    auto* const first = new Mortal("a", "1", ended);
    collector.AddObject(first);
    collector.AddObject(new Mortal("a", "2", ended));
    collector.AddObject(new Mortal("a", "3", ended));
    EXPECT_EQ(collector.QueryObject("a"), first);
    EXPECT_EQ(ended, "");
    collector.Destroy();
    EXPECT_EQ(ended, "123");
}

TEST(ObjectCollector, DisposeEndsAllObjectsOfTheIdAndNoOthers)
{
    std::string ended;
    ObjectCollector collector;
    collector.AddObject(new Mortal("a", "1", ended));
    auto* const other = new Mortal("b", "x", ended);
    collector.AddObject(other);
    collector.AddObject(new Mortal("a", "2", ended));
    collector.AddObject(new Mortal("b", "y", ended));
    collector.AddObject(new Mortal("a", "3", ended));
    EXPECT_TRUE(collector.Dispose("a"));
    EXPECT_EQ(ended, "123");
    EXPECT_EQ(collector.QueryObject("a"), nullptr);
    EXPECT_FALSE(collector.HasObject("a"));
    EXPECT_EQ(collector.QueryObject("b"), other);
    EXPECT_FALSE(collector.Dispose("a")) << "there was none left";
    EXPECT_EQ(ended, "123");
}

TEST(ObjectCollector, AnIdIsFreeAgainAfterDispose)
{
    std::string ended;
    ObjectCollector collector;
    collector.AddObject(new Mortal("a", "1", ended));
    collector.AddObject(new Mortal("a", "2", ended));
    ASSERT_TRUE(collector.Dispose("a"));
    auto* const again = new Mortal("a", "3", ended);
    collector.AddObject(again);
    collector.AddObject(new Mortal("a", "4", ended));
    EXPECT_EQ(collector.QueryObject("a"), again);
    EXPECT_TRUE(collector.Dispose("a"));
    EXPECT_EQ(ended, "1234");
    EXPECT_FALSE(collector.HasObject("a"));
}

TEST(ObjectCollector, TakesObjectsAgainAfterDestroy)
{
    std::string ended;
    ObjectCollector collector;
    collector.AddObject(new Mortal("a", "1", ended));
    collector.Destroy();
    EXPECT_EQ(ended, "1");
    EXPECT_EQ(collector.QueryObject("a"), nullptr);
    EXPECT_FALSE(collector.Dispose("a"));
    collector.Destroy();
    EXPECT_EQ(ended, "1");
    auto* const again = new Mortal("a", "2", ended);
    collector.AddObject(again);
    EXPECT_EQ(collector.QueryObject("a"), again);
    collector.Destroy();
    EXPECT_EQ(ended, "12");
}

TEST(ObjectCollector, TwoObjectsWithOneIdThatComeByVisitAreBothOwned)
{
    std::string ended;
    ObjectCollector collector;
    auto* const first = new Mortal("a", "1", ended);
    auto* const second = new Mortal("a", "2", ended);
    first->AcceptVisitor(&collector);
    second->AcceptVisitor(&collector);
    EXPECT_EQ(collector.QueryObject("a"), first);
    EXPECT_TRUE(collector.Dispose("a"));
    EXPECT_EQ(ended, "12");
}

// Looks itself up while it is destroyed, as an object that tidies up after itself may.
class Looker : public FakePart
{
public:
    Looker(ObjectCollector& collector, bool& seen)
        : FakePart(UTF8String("looker")), m_collector(collector), m_seen(seen)
    {
    }
    ~Looker() override { m_seen = m_collector.HasObject("looker"); }

private:
    ObjectCollector& m_collector;
    bool& m_seen;
};

TEST(ObjectCollector, AnObjectThatIsBeingDisposedOfIsNotFoundAnyMore)
{
    bool seen = true;
    ObjectCollector collector;
    collector.AddObject(new Looker(collector, seen));
    EXPECT_TRUE(collector.Dispose("looker"));
    EXPECT_FALSE(seen);
}

TEST(ObjectCollector, HundredsOfThousandsOfObjectsWithOneIdTakeLinearTime)
{
    // Walking along the objects of the id at each add would take hours and run into the time limit.
    constexpr std::size_t kCount = 300000;
    std::size_t living = 0;
    ObjectCollector collector;
    auto* const first = new Counted("same", living);
    collector.AddObject(first);
    for (std::size_t i = 1; i < kCount; ++i)
        collector.AddObject(new Counted("same", living));
    EXPECT_EQ(living, kCount);
    EXPECT_EQ(collector.QueryObject("same"), first);
    EXPECT_TRUE(collector.Dispose("same"));
    EXPECT_EQ(living, 0U);
    EXPECT_FALSE(collector.HasObject("same"));
}

TEST(ObjectCollector, AMillionIdsAreFoundInConstantTimeEach)
{
    constexpr std::size_t kCount = 1000000;
    std::size_t living = 0;
    ObjectCollector collector;
    std::vector<IObject*> objects(kCount);
    for (std::size_t i = 0; i < kCount; ++i)
    {
        objects[i] = new Counted(Id(i), living);
        collector.AddObject(objects[i]);
    }
    std::size_t found = 0;
    for (std::size_t i = 0; i < kCount; ++i)
        found += collector.QueryObject(Id(i)) == objects[i] ? 1 : 0;
    EXPECT_EQ(found, kCount);
    for (std::size_t i = kCount; i < kCount + 1000; ++i)
        ASSERT_EQ(collector.QueryObject(Id(i)), nullptr);

    for (std::size_t i = 0; i < kCount; i += 2)
        ASSERT_TRUE(collector.Dispose(Id(i)));
    EXPECT_EQ(living, kCount / 2);
    found = 0;
    for (std::size_t i = 0; i < kCount; ++i)
        found += collector.HasObject(Id(i)) == (i % 2 == 1) ? 1 : 0;
    EXPECT_EQ(found, kCount);
    collector.Destroy();
    EXPECT_EQ(living, 0U);
}

}  // namespace
