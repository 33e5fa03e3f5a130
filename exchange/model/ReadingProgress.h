#pragma once

#include <Message_ProgressIndicator.hxx>

namespace KVR
{

/// Shows on standard error how far the reading of a model is, on one line that it clears in the end.
class ReadingProgress : public Message_ProgressIndicator
{
public:
    explicit ReadingProgress(bool isShown) : m_isShown(isShown) {}
    ~ReadingProgress() override;

protected:
    void Show(Message_ProgressScope const& scope, Standard_Boolean isForced) override;

private:
    bool m_isShown;
    int m_percent = -1;
};

}  // namespace KVR
