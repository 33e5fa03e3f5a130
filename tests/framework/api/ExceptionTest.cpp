// Exceptions, and the events that carry them.

#include "framework/api/Exception.h"

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "framework/api/Event.h"

namespace
{

using namespace KVR;

FileException Insecure()
{
    FileException exception;
    exception.SetFileName(L"/scenes/\u00E4.sab");
    exception.SetErrorCode(FileException::kFileErrorCode_InsecureContentRefused);
    exception.SetReporter(kComponentRole_Producer);
    return exception;
}

void ExpectInsecure(Exception const& exception)
{
    auto const* const file = dynamic_cast<FileException const*>(&exception);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->FileName(), UTF16String(L"/scenes/\u00E4.sab"));
    EXPECT_EQ(file->ErrorCode(), FileException::kFileErrorCode_InsecureContentRefused);
    ComponentRoleEnum reporter = kComponentRole_Unknown;
    EXPECT_EQ(file->Reporter(reporter), kIsValueSpecified_Yes);
    EXPECT_EQ(reporter, kComponentRole_Producer);
    EXPECT_NE(std::string(file->what()).find("/scenes/\xC3\xA4.sab"), std::string::npos);
}

TEST(Exception, HasNoReporterUntilSet)
{
    GeneralException exception("m");
    ComponentRoleEnum reporter = kComponentRole_Host;
    EXPECT_EQ(exception.Reporter(reporter), kIsValueSpecified_No);
    EXPECT_EQ(reporter, kComponentRole_Host);
    exception.SetReporter(kComponentRole_Producer);
    EXPECT_EQ(exception.Reporter(reporter), kIsValueSpecified_Yes);
    EXPECT_EQ(int(reporter), 2);
    exception.SetReporter(kComponentRole_Unknown);
    EXPECT_EQ(exception.Reporter(reporter), kIsValueSpecified_Yes) << "an unknown reporter that was set counts";
    EXPECT_EQ(reporter, kComponentRole_Unknown);
}

TEST(GeneralException, IsThrownByValueWithItsMessage)
{
    try
    {
        throw GeneralException("Could not find it.");
    }
    catch (std::exception const& error)
    {
        EXPECT_STREQ(error.what(), "Could not find it.");
        auto const* const general = dynamic_cast<GeneralException const*>(&error);
        ASSERT_NE(general, nullptr);
        EXPECT_EQ(general->Message(), UTF8String("Could not find it."));
    }
}

TEST(GeneralException, ACloneIsWholeAndOutlivesTheOriginal)
{
    auto original = std::make_unique<GeneralException>("message");
    original->SetReporter(kComponentRole_Producer);
    std::unique_ptr<Exception> const clone = original->Clone();
    original.reset();
    EXPECT_STREQ(clone->what(), "message");
    EXPECT_NE(dynamic_cast<GeneralException const*>(clone.get()), nullptr);
    ComponentRoleEnum reporter = kComponentRole_Unknown;
    EXPECT_EQ(clone->Reporter(reporter), kIsValueSpecified_Yes);
    EXPECT_EQ(reporter, kComponentRole_Producer);
}

TEST(FileException, HasNoFileAndCodeZeroUntilSet)
{
    FileException const exception;
    EXPECT_TRUE(exception.FileName().IsEmpty());
    EXPECT_EQ(int(exception.ErrorCode()), 0);
    EXPECT_STRNE(exception.what(), "");
}

TEST(FileException, CodesHaveTheNumbersThatHostsKnow)
{
    EXPECT_EQ(int(FileException::kFileErrorCode_CannotRead), 0);
    EXPECT_EQ(int(FileException::kFileErrorCode_InsecureContentRestored), 15);
    EXPECT_EQ(int(FileException::kFileErrorCode_InsecureContentRefused), 16);
}

TEST(FileException, SaysWhatTheCodeMeansAndNamesTheFile)
{
    FileException exception;
    EXPECT_STREQ(exception.what(), "a file could not be read");
    exception.SetFileName(L"x.sab");
    EXPECT_STREQ(exception.what(), "a file could not be read: x.sab");
    exception.SetErrorCode(FileException::kFileErrorCode_InsecureContentRestored);
    EXPECT_STREQ(exception.what(), "a file with insecure content was read: x.sab");
    exception.SetErrorCode(FileException::kFileErrorCode_InsecureContentRefused);
    EXPECT_STREQ(exception.what(), "a file with insecure content was refused: x.sab");
    exception.SetFileName(UTF16String());
    EXPECT_STREQ(exception.what(), "a file with insecure content was refused");
}

TEST(FileException, IsThrownAndCopiedWhole)
{
    try
    {
        throw Insecure();
    }
    catch (Exception const& error)
    {
        ExpectInsecure(error);
    }
    FileException assigned;
    assigned = Insecure();
    ExpectInsecure(assigned);
}

TEST(FileException, ACloneIsWholeAndOutlivesTheOriginal)
{
    auto original = std::make_unique<FileException>(Insecure());
    std::unique_ptr<Exception> const clone = original->Clone();
    original->SetFileName(L"other");
    original.reset();
    ExpectInsecure(*clone);
}

TEST(ExceptionEvent, CarriesACopyOfTheException)
{
    auto exception = std::make_unique<FileException>(Insecure());
    ExceptionEvent const event(ExceptionEvent::kEventType_Exception, *exception);
    exception.reset();
    EXPECT_EQ(int(event.Type()), 0);
    ExpectInsecure(event.CarriedException());
}

TEST(ExceptionEvent, ACloneOutlivesTheOriginalAndItsException)
{
    auto exception = std::make_unique<FileException>(Insecure());
    auto event = std::make_unique<ExceptionEvent>(ExceptionEvent::kEventType_Exception, *exception);
    std::unique_ptr<Event const> const clone(event->Clone());
    event.reset();
    exception.reset();
    auto const* const carrier = dynamic_cast<ExceptionEvent const*>(clone.get());
    ASSERT_NE(carrier, nullptr);
    EXPECT_EQ(carrier->Type(), ExceptionEvent::kEventType_Exception);
    ExpectInsecure(carrier->CarriedException());
}

class Shouter : public IMessageProvider
{
public:
    UTF16String MessageOf(Exception const& exception) override
    {
        ExpectInsecure(exception);
        return L"INSECURE";
    }
};

TEST(ExceptionEvent, TheMessageIsTheProvidersOrTheExceptionsOwn)
{
    Shouter shouter;
    ExceptionEvent const event(ExceptionEvent::kEventType_Exception, Insecure());
    EXPECT_EQ(event.Message(&shouter), UTF16String(L"INSECURE"));
    EXPECT_EQ(UTF8String(event.Message(nullptr)), UTF8String(event.CarriedException().what()));
    ExceptionEvent const general(ExceptionEvent::kEventType_Exception, GeneralException("sch\xC3\xB6n"));
    EXPECT_EQ(general.Message(nullptr), UTF16String(L"sch\u00F6n"));
}

// Keeps what it is told of, as a host would.
class Keeper : public EventManager
{
public:
    void PostEvent(Event* event) const override
    {
        if (auto const* const carrier = dynamic_cast<ExceptionEvent const*>(event))
            kept.emplace_back(carrier->Clone());
    }

    mutable std::vector<std::unique_ptr<Event const>> kept;
};

TEST(EventManager, AReceiverKeepsClonesOfEventsThatAreDestroyedAfterDelivery)
{
    Keeper keeper;
    EventManager const& manager = keeper;
    {
        FileException const exception = Insecure();
        std::unique_ptr<Event> const event =
            std::make_unique<ExceptionEvent>(ExceptionEvent::kEventType_Exception, exception);
        manager.PostEvent(event.get());
    }
    ASSERT_EQ(keeper.kept.size(), 1U);
    ExpectInsecure(dynamic_cast<ExceptionEvent const&>(*keeper.kept[0]).CarriedException());
}

}  // namespace
