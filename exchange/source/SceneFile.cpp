#include "exchange/source/SceneFile.h"

#include <cstdlib>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

namespace
{

// The parser looks at the variable when it is made: with it a document type declaration is an error, without it the
// parser fetches what the declaration refers to and expands entities without limit.
constexpr char kRefuseDtd[] = "XERCES_DISABLE_DTD";

XMLProducerOptions& Prepare(XMLProducerOptions& producerOptions, SceneOptions const& options)
{
    if (options.allowDtd)
        unsetenv(kRefuseDtd);
    else
        setenv(kRefuseDtd, "1", 1);
    producerOptions.SetWantRestoreInsecureGMKFiles(options.insecure);
    return producerOptions;
}

}  // namespace

SceneFile::SceneFile(SceneOptions const& options)
    : m_sceneOptions(options), m_producer(UTF16String(UTF8String(options.path)), &Prepare(m_options, options))
{
    m_options.SetUnreadSideFileHandler([this](UTF16String const& path)
                                       { m_unread.emplace_back(UTF8String(path).View()); });
    if (options.prefix)
        m_producer.SetNewObjectIdPrefix(UTF8String(*options.prefix));
}

}  // namespace KVR
