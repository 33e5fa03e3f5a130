#pragma once

#include <Message_ProgressIndicator.hxx>
#include <functional>
#include <utility>

namespace KVR
{

/// Tells each time that another percent of a model has been read, from 0 to 1.
class ReadingProgress : public Message_ProgressIndicator
{
public:
    /// An empty function is nobody.
    explicit ReadingProgress(std::function<void(double)> tell) : m_tell(std::move(tell)) {}

protected:
    void Show(Message_ProgressScope const& scope, Standard_Boolean isForced) override;

private:
    std::function<void(double)> m_tell;
    int m_percent = -1;
};

}  // namespace KVR
