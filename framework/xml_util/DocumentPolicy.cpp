#include "framework/xml_util/DocumentPolicy.h"

#include <mutex>

#include "framework/xml_util/DocumentParser.h"

namespace KVR
{

namespace
{

std::mutex g_mutex;
DocumentPolicy g_policy;
thread_local std::optional<DocumentRefusal> t_refusal;

}  // namespace

void SetDocumentPolicy(DocumentPolicy const& policy) noexcept
{
    std::lock_guard const lock(g_mutex);
    g_policy = policy;
}

DocumentPolicy CurrentDocumentPolicy() noexcept
{
    std::lock_guard const lock(g_mutex);
    return g_policy;
}

std::optional<DocumentRefusal> LastDocumentRefusal() noexcept
{
    return t_refusal;
}

void NoteDocumentRefusal(std::optional<DocumentRefusal> refusal) noexcept
{
    t_refusal = refusal;
}

}  // namespace KVR
