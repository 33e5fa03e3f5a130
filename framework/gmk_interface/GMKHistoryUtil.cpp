#include "framework/gmk_interface/GMKHistoryUtil.h"

#include "framework/kernel/entity.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"

namespace KVR
{

void GMKHistoryUtil::CreateHistoryStream(HISTORY_STREAM*& stream)
{
    stream = new HISTORY_STREAM;
}

void GMKHistoryUtil::DeleteHistoryStream(HISTORY_STREAM* stream) noexcept
{
    delete stream;
}

void GMKHistoryUtil::SetActiveHistoryStream(HISTORY_STREAM* stream) noexcept
{
    gki_global_data().activeStream = stream;
}

HISTORY_STREAM* GMKHistoryUtil::ActiveHistoryStream() noexcept
{
    return gki_global_data().activeStream;
}

void GMKHistoryUtil::CreateSeparateHistoryStream(std::size_t count, ENTITY* const* entities)
{
    HISTORY_STREAM* separate = nullptr;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (!entities[i] || !entities[i]->Stream())
            continue;
        if (!separate)
            separate = entities[i]->Stream()->Split();
        separate->Add(entities[i]);
    }
}

void GMKHistoryUtil::Clear(HISTORY_STREAM* stream) noexcept
{
    if (stream)
        stream->Clear();
}

}  // namespace KVR
