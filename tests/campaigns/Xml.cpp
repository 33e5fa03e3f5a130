// Documents that attack the parser, each with its verdict, for a host that trusts nobody and by default.

#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/XmlDocuments.h"
#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

namespace
{

std::string Verdict(std::string const& path, bool isToBeRead)
{
    bool isRead = true;
    try
    {
        XMLProducer producer(UTF16String(UTF8String(path)), nullptr);
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    catch (FileException const&)
    {
        isRead = false;
    }
    catch (std::exception const& error)
    {
        return error.what();
    }
    if (isRead != isToBeRead)
        return isRead ? "was read" : "was refused";
    return AskScene(path);
}

}  // namespace

void RunXml(double, Tally& tally)
{
    Test::TempFolder const folder;
    folder.Write("secret", "@secret@");
    std::string const path = folder.NarrowPathOf("scene.xml");
    std::vector<XmlDocument> const documents = XmlDocuments(folder.NarrowPathOf("secret"));
    for (bool const isTrusting : {false, true})
    {
        SetDocumentPolicy(isTrusting ? DocumentPolicy() : DocumentPolicy::Untrusted());
        RunForked(
            tally, documents.size(), 25,
            [&](std::uint64_t input)
            {
                XmlDocument const& document = documents[input];
                if (isTrusting && document.asksNetwork)
                    return std::string();
                WriteBytes(path, document.bytes);
                return Verdict(path, isTrusting ? document.isReadByDefault : document.isReadUntrusted);
            },
            [&](std::uint64_t input) { return (isTrusting ? "by default: " : "untrusted: ") + documents[input].name; });
    }
}

}  // namespace KVR::Campaigns
