#pragma once

#include <memory>
#include <mutex>
#include <stdexcept>

#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"

namespace KVR::Python
{

/// A scene that cannot be read: one sentence, as the program kvr says it.
class SceneError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What in this process reads scenes at the same time as others, or ends them, holds this lock: Xerces-C and the locale
/// belong to the process. Whoever waits for it lets go of the interpreter's lock meanwhile, since the one who has it
/// may want that one for a callback.
class ReadingLock
{
public:
    ReadingLock();

private:
    std::unique_lock<std::recursive_mutex> m_lock;
};

/// A scene file that was read. All that Python has of it shares it, so that it ends with the last of them.
class SceneSource
{
public:
    /// Reads the scene; throws SceneError for one that cannot be read. May be called without the interpreter's lock.
    explicit SceneSource(SceneOptions const& options);
    ~SceneSource();
    SceneSource(SceneSource const&) = delete;
    SceneSource& operator=(SceneSource const&) = delete;

    XMLProducer& Producer() const noexcept { return m_file->Producer(); }
    SceneReading const& Reading() const noexcept { return m_reading; }
    std::string const& Path() const noexcept { return m_file->Options().path; }
    /// The id of the root; throws GeneralException as RootObjectId does when there is none.
    UTF8String RootId() const { return Producer().RootObjectId().Id(); }

private:
    std::unique_ptr<SceneFile> m_file;
    SceneReading m_reading;
};

}  // namespace KVR::Python
