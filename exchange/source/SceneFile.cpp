#include "exchange/source/SceneFile.h"

#include "exchange/source/SideFileCheck.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/DocumentPolicy.h"

namespace KVR
{

namespace
{

XMLProducerOptions& Prepare(XMLProducerOptions& producerOptions, SceneOptions const& options)
{
    DocumentPolicy policy = DocumentPolicy::Untrusted();
    if (options.allowDtd)
    {
        policy.documentTypes = true;
        policy.otherDocuments = DocumentPolicy::OtherDocuments::kFiles;
    }
    SetDocumentPolicy(policy);
    producerOptions.SetWantRestoreInsecureGMKFiles(options.insecure);
    return producerOptions;
}

}  // namespace

SceneFile::SceneFile(SceneOptions const& options, StoreNeeds const& needs)
    : m_sceneOptions(options),
      m_needsGeometry(needs.geometry),
      m_producer(UTF16String(UTF8String(options.path)), &Prepare(m_options, options))
{
    StoreNeeds own = needs;
    own.isWhole = [this](UTF16String const& path)
    { return SideFileCheck::HasNotedSize(m_sceneOptions.path, std::string(UTF8String(path).View())); };
    StoreNeeds::Set(m_options, own);
    m_options.SetUnreadSideFileHandler([this](UTF16String const& path)
                                       { m_unread.emplace_back(UTF8String(path).View()); });
    if (options.prefix)
        m_producer.SetNewObjectIdPrefix(UTF8String(*options.prefix));
}

}  // namespace KVR
