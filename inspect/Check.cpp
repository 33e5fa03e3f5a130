#include "inspect/Check.h"

#include <exception>
#include <new>
#include <numeric>

#include "framework/api/Exception.h"
#include "framework/api/IOUtil.h"
#include "framework/api/IdSet.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "framework/xml_util/DocumentStream.h"
#include "inspect/Accounting.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/DocumentTally.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/rules/GeometryRules.h"
#include "inspect/rules/SideFileRules.h"
#include "inspect/rules/UnitRules.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace KVR
{

namespace
{

class NoElements final : public DocumentReceiver
{
public:
    void Receive(StreamedElement const&) override {}
};

void SetPolicy(CheckOptions const& options)
{
    DocumentPolicy policy = DocumentPolicy::Untrusted();
    if (options.allowDtd)
    {
        policy.documentTypes = true;
        policy.otherDocuments = DocumentPolicy::OtherDocuments::kFiles;
    }
    SetDocumentPolicy(policy);
}

// Says where the document ends to be one.
void AddUnparsed(SceneCheck& check)
{
    if (!FilePtr(UTF8String(check.Path()), "rb"))
    {
        check.AddIn(DocumentRule::kUnreadable, check.Path(), {}, "the document cannot be opened");
        return;
    }
    // A document type is the one thing of those that are refused which the caller may allow.
    bool const hasDocumentType = LastDocumentRefusal() == DocumentRefusal::kDocumentType;
    Finding* const finding = check.AddIn(DocumentRule::kUnreadable, check.Path(), {},
                                         hasDocumentType ? "the document has a document type, which was not allowed, "
                                                           "and nothing is served"
                                                         : "the document cannot be parsed, and nothing is served");
    if (!finding)
        return;
    NoElements elements;
    DocumentStreamEnd const end = StreamDocument(UTF16String(UTF8String(check.Path())), elements);
    finding->line = end.line;
    finding->column = end.column;
}

// Says at which element the reading ended.
void AddUnreadable(SceneCheck& check, std::string readAs)
{
    xercesc::DOMNode const* const element = check.Record().LatestElement();
    check.Add(DocumentRule::kUnreadable, {element}, element ? NameOf(element) : std::string(), std::move(readAs));
}

// Whether the scene was read, to its end.
bool Read(SceneCheck& check, XMLProducer& producer)
{
    try
    {
        // A host mostly asks what the file is before it reads it.
        static_cast<void>(producer.QueryFile());
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        return true;
    }
    catch (FileException const& exception)
    {
        std::string const file(UTF8String(exception.FileName()).View());
        if (file == check.Path() && !check.Root())
            AddUnparsed(check);
        else
            AddUnreadable(check, file + " cannot be read, and nothing is served");
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (std::exception const&)
    {
        AddUnreadable(check, "a side file claims more than it holds, and nothing is served");
    }
    return false;
}

}  // namespace

std::uint64_t Account::Dropped() const
{
    return std::accumulate(dropped.begin(), dropped.end(), std::uint64_t{0},
                           [](std::uint64_t sum, auto const& byRule) { return sum + byRule.second; });
}

bool Account::Agrees() const
{
    return seen == served + defaulted + Dropped() + unread;
}

CheckResult CheckScene(std::string const& path, CheckOptions const& options)
{
    SetPolicy(options);
    XMLProducerOptions producerOptions;
    producerOptions.SetWantRestoreInsecureGMKFiles(options.insecure);
    ReadRecord record;
    XMLProducer producer(UTF16String(UTF8String(path)), &producerOptions);
    SceneCheck check(path, options, producer, record);
    bool isRead = false;
    DocumentTally tally;
    {
        ReadObserverScope const observed(record);
        isRead = Read(check, producer);
    }
    if (isRead)
    {
        tally = CheckDocument(check);

        CheckSideFiles(check);
        CheckGeometry(check);
        CheckUnits(check);
    }
    CheckResult result;
    if (isRead && options.account)
        result.accounts = MakeAccounts(check, tally);
    result.findings = check.TakeFindings();
    return result;
}

}  // namespace KVR
