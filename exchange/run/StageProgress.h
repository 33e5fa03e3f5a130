#pragma once

#include <Message_ProgressIndicator.hxx>
#include <functional>
#include <utility>

#include "exchange/Progress.h"

namespace KVR
{

/// Is told how much of a stage of work is done, from 0 to 1.
using TellStage = std::function<void(char const* stage, double fraction)>;

/// One that tells of each stage that is begun, and each time that another percent of it is done.
TellStage EachPercent(std::function<void(ProgressReport const&)> tell);

/// Tells of a stage that Open CASCADE is at, each time that another percent of it is done.
class StageProgress : public Message_ProgressIndicator
{
public:
    /// An empty function is nobody.
    StageProgress(char const* stage, TellStage tell) : m_stage(stage), m_tell(std::move(tell)) {}

protected:
    void Show(Message_ProgressScope const& scope, Standard_Boolean isForced) override;

private:
    char const* m_stage;
    TellStage m_tell;
    /// The start of all is no news: work may be some way from it yet.
    int m_percent = 0;
};

}  // namespace KVR
