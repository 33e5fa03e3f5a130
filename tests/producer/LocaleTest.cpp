// The locales of the process while a scene is read, and afterwards.

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <clocale>
#include <cstdlib>
#include <locale>
#include <set>
#include <string>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "framework/kernel/entity.h"
#include "producer/ClassicLocaleScope.h"
#include "tests/framework/xml_util/CommaLocale.h"
#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr char const* kCommaLocale = "de_DE.UTF-8";

std::string GlobalLocale()
{
    return std::locale().name();
}
std::string CLocale()
{
    return std::setlocale(LC_ALL, nullptr);
}
char DecimalPoint()
{
    return std::use_facet<std::numpunct<char>>(std::locale()).decimal_point();
}

// Notes which locales are global whenever Xerces takes memory, which it does while it parses the scene and, for a side
// file, in the midst of the scan.
class LocaleWitness final : public xercesc::MemoryManager
{
public:
    LocaleWitness()
    {
        xercesc::XMLPlatformUtils::Initialize();
        m_former = xercesc::XMLPlatformUtils::fgMemoryManager;
        xercesc::XMLPlatformUtils::fgMemoryManager = this;
    }
    ~LocaleWitness() override
    {
        xercesc::XMLPlatformUtils::fgMemoryManager = m_former;
        xercesc::XMLPlatformUtils::Terminate();
    }
    xercesc::MemoryManager* getExceptionMemoryManager() override { return m_former; }
    void* allocate(XMLSize_t size) override
    {
        globalLocales.insert(GlobalLocale());
        // What a function of the C library would do here, on this thread.
        numbers.insert(std::strtod("1,5", nullptr));
        return m_former->allocate(size);
    }
    void deallocate(void* pointer) override { m_former->deallocate(pointer); }

    std::set<std::string> globalLocales;
    std::set<double> numbers;

private:
    xercesc::MemoryManager* m_former;
};

constexpr char const* kSceneWithSideFile =
    R"(<S><SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="ids.xml"/><IPart ID="p"/></S>)";

constexpr char const* kSceneWithoutItsBlob = R"(<S><IUniverse><CustomData>
    <CustomDataItem Type="8" Key="k" Path="none" BlobBufferSize="1"/></CustomData></IUniverse></S>)";

}  // namespace

class ProducerUnderACommaLocale : public UnderACommaLocale
{
};

TEST(ClassicLocaleScope, MakesTheClassicLocaleGlobalAndRestoresAnUnnamedOne)
{
    struct Comma final : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
    };
    std::locale const former = std::locale::global(std::locale(std::locale::classic(), new Comma));
    {
        ClassicLocaleScope const scope;
        EXPECT_TRUE(std::locale() == std::locale::classic());
        {
            ClassicLocaleScope const inner;
            EXPECT_EQ(DecimalPoint(), '.');
        }
        EXPECT_TRUE(std::locale() == std::locale::classic());
    }
    EXPECT_EQ(DecimalPoint(), ',');
    std::locale::global(former);
}

TEST_F(ProducerUnderACommaLocale, TheClassicLocaleIsGlobalWhileASceneIsScanned)
{
    LocaleWitness witness;
    {
        TestScene scene(kSceneWithSideFile);
        // With an instruction, which only the parser reads: the witness is in its service.
        scene.WithFile("ids.xml", "<Ids><?p?><SubObjectPersistentIds ID='p'/></Ids>");
        scene.Producer().QueryFile();
        EXPECT_EQ(witness.globalLocales, (std::set<std::string>{kCommaLocale})) << "not while it is parsed";
        EXPECT_EQ(witness.numbers, (std::set<double>{1.0})) << "but for this thread's C functions";
        witness.globalLocales.clear();
        witness.numbers.clear();
        scene.Begin();
    }
    EXPECT_EQ(witness.globalLocales, (std::set<std::string>{"C"})) << "for the whole process";
    EXPECT_EQ(witness.numbers, (std::set<double>{1.0}));
    EXPECT_EQ(GlobalLocale(), kCommaLocale);
    EXPECT_EQ(CLocale(), kCommaLocale);
}

TEST_F(ProducerUnderACommaLocale, LocalesAreRestoredAfterTheScanAndTheQuery)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Producer().QueryFile();
    EXPECT_EQ(GlobalLocale(), kCommaLocale);
    EXPECT_EQ(CLocale(), kCommaLocale);
    scene.Begin();
    EXPECT_EQ(GlobalLocale(), kCommaLocale);
    EXPECT_EQ(CLocale(), kCommaLocale);
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5) << "on this thread, too";
}

TEST_F(ProducerUnderACommaLocale, LocalesAreRestoredWhenAnExceptionPasses)
{
    TestScene scene(kSceneWithoutItsBlob);
    EXPECT_THROW(scene.Begin(), FileException);
    EXPECT_EQ(GlobalLocale(), kCommaLocale);
    EXPECT_EQ(CLocale(), kCommaLocale);
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);
    TestScene broken("<S");
    EXPECT_THROW(broken.Begin(), FileException);
    EXPECT_EQ(GlobalLocale(), kCommaLocale);
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);
}

TEST(ProducerLocale, TheCLocaleOfAHostThatSetNoCppLocaleIsRestored)
{
    // What a host does that calls setlocale alone: the global locale of C++ stays the classic one.
    ASSERT_NE(std::setlocale(LC_ALL, kCommaLocale), nullptr) << "scripts/setup makes the locale " << kCommaLocale;
    ASSERT_EQ(GlobalLocale(), "C");
    {
        TestScene scene(FullScene());
        WriteSideFiles(scene);
        scene.Producer().QueryFile();
        EXPECT_EQ(CLocale(), kCommaLocale);
        scene.Begin();
        EXPECT_EQ(CLocale(), kCommaLocale);
        TestScene withoutBlob(kSceneWithoutItsBlob);
        EXPECT_THROW(withoutBlob.Begin(), FileException);
        EXPECT_EQ(CLocale(), kCommaLocale);
    }
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);
    std::setlocale(LC_ALL, "C");
}

TEST(ProducerLocale, ACLocaleThatDiffersFromTheGlobalOneIsRestored)
{
    struct Comma final : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
    };
    ASSERT_NE(std::setlocale(LC_NUMERIC, kCommaLocale), nullptr) << "scripts/setup makes the locale " << kCommaLocale;
    std::string const before = CLocale();
    // A locale without a name leaves the C library alone when it becomes global.
    std::locale const former = std::locale::global(std::locale(std::locale::classic(), new Comma));
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Begin();
    EXPECT_EQ(DecimalPoint(), ',');
    EXPECT_EQ(CLocale(), before);
    std::locale::global(former);
    std::setlocale(LC_ALL, "C");
}

TEST_F(ProducerUnderACommaLocale, EveryNumberIsReadAsEver)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Begin();
    std::string const underComma = WalkScene(scene.Producer(), FullSceneIds()).text;
    std::locale::global(std::locale::classic());
    std::setlocale(LC_ALL, "C");
    TestScene again(FullScene());
    WriteSideFiles(again);
    again.Begin();
    std::string const underC = WalkScene(again.Producer(), FullSceneIds()).text;
    EXPECT_EQ(Replaced(underComma, scene.Folder(), ""), Replaced(underC, again.Folder(), ""));
    Color color;
    ASSERT_EQ(scene.Producer().LoadUniverse()->DefaultCurveColor(color), kIsValueSpecified_Yes);
    EXPECT_EQ(color.Red(), 0.1);
}

TEST_F(ProducerUnderACommaLocale, ACommaIsNoDecimalSign)
{
    TestScene scene(R"(<S><IUniverse><DefaultCurveColor FractionRed="0,5" FractionGreen="0.5" FractionBlue="1.000,5"/>
        <ViewData><UpVector>0.5,0.25,1</UpVector></ViewData></IUniverse></S>)");
    scene.Begin();
    Color color;
    ASSERT_EQ(scene.Producer().LoadUniverse()->DefaultCurveColor(color), kIsValueSpecified_Yes);
    EXPECT_EQ(color.Red(), 0.0);
    EXPECT_EQ(color.Green(), 0.5);
    EXPECT_EQ(color.Blue(), 0.0);
    ViewingData data;
    ASSERT_EQ(scene.Producer().LoadUniverse()->ViewingDataOf(data), kIsValueSpecified_Yes);
    EXPECT_EQ(data.UpVector()[0], 0.5);
    EXPECT_EQ(data.UpVector()[1], 0.25);
}

// The scene of examples/complete, which has every kind of object and side file, and what its bodies measure.
static std::string AnswersOfTheCompleteScene()
{
    XMLProducer producer{UTF16String(UTF8String(KVR_EXAMPLES_DIR "/complete/complete.xml")), nullptr};
    IProducer& host = producer;
    host.BeginProcess(IdSet(), nullptr, nullptr);
    std::string text = WalkScene(producer).text;
    for (char const* const id : {"body", "text-body"})
    {
        auto const* const brep = dynamic_cast<IBrep const*>(host.Load(id));
        EXPECT_TRUE(brep && brep->Body()) << id;
        if (brep && brep->Body())
            text += std::to_string(static_cast<long long>(1e9 * FactsOf(brep->Body()->Shape()).volume));
    }
    return text;
}

TEST_F(ProducerUnderACommaLocale, TheCompleteSceneIsTheSameAsUnderTheClassicOne)
{
    std::string const underComma = AnswersOfTheCompleteScene();
    TearDown();
    EXPECT_EQ(underComma, AnswersOfTheCompleteScene());
    EXPECT_GT(underComma.size(), 5000U);
}

}  // namespace KVR::Test
